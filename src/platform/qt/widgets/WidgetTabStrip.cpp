#include "platform/qt/widgets/WidgetTabStrip.h"

#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QTabBar>

namespace velmora {

namespace {

// Account names are the user's: an ampersand in one is no mnemonic.
QString Shown(const QString& caption) {
    return QString(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString Unshown(const QString& text) {
    return QString(text).replace(QLatin1String("&&"), QLatin1String("&"));
}

// Reports the left button going down on a tab and coming up again, so the
// logic can tell a held press from a click.
class PressWatcher : public QObject {
public:
    PressWatcher(QTabBar* bar, EventReporter report, QString name)
        : QObject(bar), bar(bar), report(std::move(report)), name(std::move(name)) {
        bar->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonPress &&
            event->type() != QEvent::MouseButtonRelease)
            return false;
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton)
            return false;
        if (event->type() == QEvent::MouseButtonRelease) {
            report([this](MainViewEvents& events) { events.TabRelease(name); });
            return false;
        }
        const int tab = bar->tabAt(mouse->position().toPoint()) + 1;
        if (tab > 0)
            report([this, tab](MainViewEvents& events) { events.TabPress(name, tab); });
        return false;
    }

private:
    QTabBar* bar;
    EventReporter report;
    QString name;
};

// What a dragged tab carries: the strip and the tab's number.
constexpr char kTabMime[] = "application/x-velmora-tab";

// Takes a tab dragged from the same strip and reports the tab it was let
// go over; a drag from elsewhere is refused, so the pointer says so.
class DropWatcher : public QObject {
public:
    DropWatcher(QTabBar* bar, EventReporter report, QString name)
        : QObject(bar), bar(bar), report(std::move(report)), name(std::move(name)) {
        bar->setAcceptDrops(true);
        bar->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove &&
            event->type() != QEvent::Drop)
            return false;
        auto* drop = static_cast<QDropEvent*>(event);
        const QStringList carried =
            QString::fromUtf8(drop->mimeData()->data(QLatin1String(kTabMime))).split(' ');
        if (carried.size() != 2 || carried[0] != name) {
            drop->ignore();
            return true;
        }
        drop->acceptProposedAction();
        if (event->type() != QEvent::Drop)
            return true;
        // Beside the tabs the drop reports tab 0, which changes nothing.
        const int over = bar->tabAt(drop->position().toPoint()) + 1;
        const int from = carried[1].toInt();
        report([this, from, over](MainViewEvents& events) { events.TabDrop(name, from, over); });
        return true;
    }

private:
    QTabBar* bar;
    EventReporter report;
    QString name;
};

} // namespace

WidgetTabStrip::WidgetTabStrip(WidgetControls& controls, const QString& name, const QString& role)
    : bar(new QTabBar) {
    bar->setExpanding(false);
    bar->setUsesScrollButtons(true);
    bar->setElideMode(Qt::ElideRight);
    bar->setIconSize(QSize(20, 20));
    bar->setAccessibleName(role);
    controls.add(bar, name);
    // Only the user's selections get here: the logic's are made with the
    // bar's signals blocked.
    QObject::connect(bar, &QTabBar::currentChanged, bar,
                     [report = controls.report(), name](int index) {
                         if (index >= 0)
                             report([&name](MainViewEvents& events) { events.TabClick(name); });
                     });
    new PressWatcher(bar, controls.report(), name);
    new DropWatcher(bar, controls.report(), name);
}

void WidgetTabStrip::beginDrag() {
    const int index = bar->currentIndex();
    if (index < 0)
        return;
    auto* data = new QMimeData;
    data->setData(QLatin1String(kTabMime),
                  (bar->objectName() + QLatin1Char(' ') + QString::number(index + 1)).toUtf8());
    auto* drag = new QDrag(bar);
    drag->setMimeData(data);
    drag->setPixmap(bar->grab(bar->tabRect(index)));
    // Where it may land and what a drop does belong to the strip's owner.
    drag->exec(Qt::MoveAction);
}

int WidgetTabStrip::index(int tab) const {
    return tab >= 1 && tab <= bar->count() ? tab - 1 : -1;
}

void WidgetTabStrip::name(int index) {
    // A tab without a caption (no account yet) still needs a spoken name.
    const QString text = Unshown(bar->tabText(index)).trimmed();
    bar->setAccessibleTabName(index, text.isEmpty() ? QStringLiteral("No account") : text);
}

void WidgetTabStrip::clear() {
    const QSignalBlocker block(bar);
    while (bar->count() > 0)
        bar->removeTab(bar->count() - 1);
}

void WidgetTabStrip::addTab(const QString& caption, const QString& imageKey) {
    const QSignalBlocker block(bar);
    const int added = bar->addTab(Pictures::Keyed(imageKey), Shown(caption));
    bar->setTabData(added, imageKey);
    name(added);
}

int WidgetTabStrip::count() const {
    return bar->count();
}

void WidgetTabStrip::setCaption(int tab, const QString& caption) {
    if (const int i = index(tab); i >= 0) {
        bar->setTabText(i, Shown(caption));
        name(i);
    }
}

QString WidgetTabStrip::caption(int tab) const {
    const int i = index(tab);
    return i >= 0 ? Unshown(bar->tabText(i)) : QString();
}

void WidgetTabStrip::setImage(int tab, const QString& imageKey) {
    if (const int i = index(tab); i >= 0) {
        bar->setTabIcon(i, Pictures::Keyed(imageKey));
        bar->setTabData(i, imageKey);
    }
}

QString WidgetTabStrip::image(int tab) const {
    const int i = index(tab);
    return i >= 0 ? bar->tabData(i).toString() : QString();
}

void WidgetTabStrip::select(int tab) {
    const QSignalBlocker block(bar);
    if (const int i = index(tab); i >= 0)
        bar->setCurrentIndex(i);
}

int WidgetTabStrip::selected() const {
    return bar->currentIndex() + 1;
}

} // namespace velmora
