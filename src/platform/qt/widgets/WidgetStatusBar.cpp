#include "platform/qt/widgets/WidgetStatusBar.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/Pictures.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QStatusBar>
#include <utility>

namespace velmora {

namespace {

const char* const kPicture = "velmoraPicture";
constexpr int kPictureSize = 16;

// What each panel holds, for screen readers.
const char* const kPanelNames[5] = {"Status", "Messages", "Last check", "Next check", "Time"};

} // namespace

WidgetStatusBar::WidgetStatusBar(QStatusBar* bar, EventReporter report)
    : bar(bar), report(std::move(report)) {
    bar->setSizeGripEnabled(true);
    bar->setMouseTracking(true);
    bar->installEventFilter(this);
    for (int i = 0; i < 5; ++i) {
        auto* frame = new QWidget;
        frames[i] = frame;
        // The panels leave pointer moves and tip requests to the bar.
        frame->setMouseTracking(true);
        frame->setObjectName(QStringLiteral("StatusPanel%1").arg(i + 1));
        frame->setAccessibleName(QLatin1String(kPanelNames[i]));
        auto* layout = new QHBoxLayout(frame);
        layout->setContentsMargins(4, 0, 4, 0);
        layout->setSpacing(4);
        panels[i].picture = new QLabel;
        panels[i].picture->setFixedSize(kPictureSize, kPictureSize);
        panels[i].picture->hide();
        panels[i].text = new QLabel;
        panels[i].text->setTextFormat(Qt::PlainText);
        panels[i].text->setAccessibleDescription(QLatin1String(kPanelNames[i]));
        layout->addWidget(panels[i].picture);
        layout->addWidget(panels[i].text, 1);
        if (i == 1) {
            progressBar = new QProgressBar;
            progressBar->setObjectName(QStringLiteral("StatusProgress"));
            progressBar->setAccessibleName(QStringLiteral("Retrieval progress"));
            progressBar->setMaximumWidth(200);
            progressBar->setTextVisible(false);
            // Nothing retrieved yet reads 0, not the bar's own -1.
            progressBar->setValue(0);
            progressBar->hide();
            bar->addWidget(progressBar);
        }
        // The status text takes what the others leave, and on a narrow
        // window gives way first.
        if (i == 0)
            panels[i].text->setMinimumWidth(1);
        bar->addWidget(frame, i == 0 ? 1 : 0);
    }
}

int WidgetStatusBar::panelAt(const QPoint& point) const {
    // A panel reaches from its left edge to the next one's; the last ends
    // at its own right edge.
    for (int i = 4; i >= 0; --i) {
        const QRect r = frames[i]->geometry();
        if (point.x() >= r.left())
            return i == 4 && point.x() > r.right() ? 0 : i + 1;
    }
    return 0;
}

bool WidgetStatusBar::eventFilter(QObject* watched, QEvent* event) {
    // The bar's tip is set for the panel under the pointer just before Qt
    // shows it.
    if (watched == bar &&
        (event->type() == QEvent::MouseMove || event->type() == QEvent::ToolTip)) {
        const QPoint at = event->type() == QEvent::MouseMove
                              ? static_cast<QMouseEvent*>(event)->position().toPoint()
                              : static_cast<QHelpEvent*>(event)->pos();
        const int panel = panelAt(at);
        report([panel](MainViewEvents& events) { events.StatusBarPointer(panel); });
    }
    return QObject::eventFilter(watched, event);
}

const WidgetStatusBar::Panel& WidgetStatusBar::at(int panel) const {
    if (panel < 1 || panel > 5)
        throw UnknownControl(QStringLiteral("the status bar has no panel %1").arg(panel));
    return panels[panel - 1];
}

void WidgetStatusBar::setPanelText(int panel, const QString& text) {
    at(panel).text->setText(text);
}

QString WidgetStatusBar::panelText(int panel) const {
    return at(panel).text->text();
}

void WidgetStatusBar::setPanelPicture(int panel, const QString& imageKey) {
    QLabel* picture = at(panel).picture;
    picture->setProperty(kPicture, imageKey);
    picture->setPixmap(Pictures::Keyed(imageKey).pixmap(kPictureSize, kPictureSize));
    picture->setAccessibleName(imageKey);
    picture->setVisible(!imageKey.isEmpty());
}

QString WidgetStatusBar::panelPicture(int panel) const {
    return at(panel).picture->property(kPicture).toString();
}

void WidgetStatusBar::setToolTip(const QString& tip) {
    bar->setToolTip(tip);
}

QString WidgetStatusBar::toolTip() const {
    return bar->toolTip();
}

void WidgetStatusBar::setProgressVisible(bool visible) {
    progressBar->setVisible(visible);
}

bool WidgetStatusBar::isProgressVisible() const {
    return !progressBar->isHidden();
}

void WidgetStatusBar::setProgress(int minimum, int maximum, int value) {
    progressBar->setRange(minimum, maximum);
    progressBar->setValue(qBound(minimum, value, qMax(minimum, maximum)));
}

int WidgetStatusBar::progress() const {
    return progressBar->value();
}

} // namespace velmora
