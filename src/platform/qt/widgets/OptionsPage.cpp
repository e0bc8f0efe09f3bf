#include "platform/qt/widgets/OptionsPage.h"

#include "platform/Controls.h"
#include "platform/qt/DesktopEntryIcons.h"
#include "platform/qt/widgets/PageParts.h"
#include "platform/qt/widgets/Pictures.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSpinBox>
#include <QStackedLayout>
#include <QStyleOptionFocusRect>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <functional>

namespace velmora {

namespace {

// A label that opens what it names: a flat button, so the keyboard and
// screen readers reach it like any other.
QPushButton* Link(WidgetControls& controls, const QString& name) {
    auto* link = new QPushButton;
    link->setFlat(true);
    link->setCursor(Qt::PointingHandCursor);
    link->setStyleSheet(QStringLiteral("QPushButton { color: palette(link); text-decoration: "
                                       "underline; text-align: left; }"));
    controls.add(link, name);
    return link;
}

// The About section's ways out: the home page, the support address, the
// ReadMe and the check for updates.
QWidget* AboutLinks(WidgetControls& controls) {
    auto* about = new QWidget;
    auto* layout = new QVBoxLayout(about);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(Link(controls, ctl::lblAboutWebSite), 0, Qt::AlignLeft);
    layout->addWidget(Link(controls, ctl::lblAboutEmail), 0, Qt::AlignLeft);
    layout->addWidget(PageParts::Toolbar(controls, ctl::tbrOptAbout));
    return about;
}

// Builds the controls of one section.
struct Builder {
    WidgetControls& controls;

    QCheckBox* check(const QString& name) {
        auto* box = new QCheckBox;
        controls.add(box, name);
        return box;
    }
    QLabel* label(const QString& name) {
        auto* l = new QLabel;
        l->setWordWrap(true);
        controls.add(l, name);
        return l;
    }
    QSpinBox* spin(const QString& name) {
        auto* s = new QSpinBox;
        s->setMaximumWidth(80);
        controls.add(s, name);
        return s;
    }
    QLineEdit* text(const QString& name) {
        auto* t = new QLineEdit;
        controls.add(t, name);
        return t;
    }
    // An input with its caption in front; screen readers name it by that.
    QLabel* buddy(const QString& caption, QWidget* input) {
        auto* l = new QLabel(caption);
        l->setBuddy(input);
        input->setAccessibleName(QString(caption).remove(QLatin1Char(':')).trimmed());
        return l;
    }
    // An option array in its own group, so its buttons exclude each other
    // and no other.
    QGroupBox* options(const QString& array, int count, const QString& title,
                       Qt::Orientation direction = Qt::Vertical, const QString& frame = {}) {
        auto* group = new QGroupBox(title);
        if (!frame.isEmpty())
            controls.add(group, frame);
        QBoxLayout* layout =
            direction == Qt::Vertical ? static_cast<QBoxLayout*>(new QVBoxLayout) : new QHBoxLayout;
        group->setLayout(layout);
        for (int i = 0; i < count; ++i) {
            auto* button = new QRadioButton;
            controls.add(button, Element(array, i));
            layout->addWidget(button);
        }
        layout->addStretch(1);
        return group;
    }
};

QWidget* Section(QVBoxLayout*& layout) {
    auto* section = new QWidget;
    layout = new QVBoxLayout(section);
    layout->setContentsMargins(6, 6, 6, 6);
    return section;
}

QWidget* StartUpSection(Builder& b) {
    QVBoxLayout* l = nullptr;
    QWidget* s = Section(l);
    l->addWidget(b.check(ctl::chkRunStartUp));
    l->addWidget(b.label(ctl::lblRunStartUp));
    l->addWidget(b.check(ctl::chkEmailCheckStartUp));
    auto* delay = new QHBoxLayout;
    QSpinBox* seconds = b.spin(ctl::txtStartUpDelay);
    delay->addWidget(b.buddy(QStringLiteral("Delay for"), seconds));
    delay->addWidget(seconds);
    delay->addWidget(new QLabel(QStringLiteral("seconds.")));
    delay->addStretch(1);
    l->addLayout(delay);
    l->addWidget(b.label(ctl::lblEmailCheckStartUp));
    l->addWidget(b.check(ctl::chkMinimizeStartUp));
    l->addWidget(b.label(ctl::lblMinimizeStartUp));
    l->addStretch(1);
    return s;
}

// A quiet-period box: a click before its colon picks the hours, from the
// minutes on the minutes; Up and Down then turn that part's spin, and the
// part stays picked while the logic rewrites the box.
class PartPicker : public QObject {
public:
    PartPicker(QLineEdit* box, QSpinBox* hours, QSpinBox* minutes)
        : QObject(box), box(box), hours(hours), minutes(minutes) {
        box->installEventFilter(this);
        connect(box, &QLineEdit::cursorPositionChanged, this, [this](int, int now) {
            if (!selecting && this->box->hasFocus())
                pick(now < 3);
        });
        for (QSpinBox* spin : {hours, minutes}) {
            connect(spin, &QSpinBox::valueChanged, this, [this] {
                if (this->box->hasFocus())
                    QTimer::singleShot(0, this, [this] { pick(hoursPart); });
            });
        }
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        // The first click also brings the focus, after the caret moved.
        if (event->type() == QEvent::MouseButtonRelease) {
            pick(box->cursorPosition() < 3);
            return false;
        }
        if (event->type() != QEvent::KeyPress)
            return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Up && key != Qt::Key_Down)
            return false;
        (hoursPart ? hours : minutes)->stepBy(key == Qt::Key_Up ? 1 : -1);
        return true;
    }

private:
    void pick(bool hoursWanted) {
        hoursPart = hoursWanted;
        selecting = true;
        box->setSelection(hoursWanted ? 0 : 3, 2);
        selecting = false;
    }

    QLineEdit* box;
    QSpinBox* hours;
    QSpinBox* minutes;
    bool hoursPart = true;
    bool selecting = false;
};

QWidget* AutoCheckSection(Builder& b) {
    QVBoxLayout* l = nullptr;
    QWidget* s = Section(l);
    l->addWidget(b.check(ctl::chkUseInterval));
    auto* every = new QHBoxLayout;
    QSpinBox* hours = b.spin(ctl::txtHours);
    QSpinBox* minutes = b.spin(ctl::txtMinutes);
    QLabel* first = b.label(Element(ctl::lblInterval, 0));
    first->setWordWrap(false);
    first->setBuddy(hours);
    hours->setAccessibleName(QStringLiteral("Check for Email every hours"));
    QLabel* second = b.label(Element(ctl::lblInterval, 1));
    second->setWordWrap(false);
    second->setBuddy(minutes);
    minutes->setAccessibleName(QStringLiteral("minutes"));
    every->addWidget(first);
    every->addWidget(hours);
    every->addWidget(second);
    every->addWidget(minutes);
    QLabel* third = b.label(Element(ctl::lblInterval, 2));
    third->setWordWrap(false);
    every->addWidget(third);
    every->addStretch(1);
    l->addLayout(every);
    l->addWidget(b.label(ctl::lblUseInterval));

    auto* quiet = new QGridLayout;
    quiet->addWidget(b.check(ctl::chkNoCheck), 0, 0, 1, 5);
    for (int box = 0; box < 2; ++box) {
        QLineEdit* time = b.text(Element(ctl::txtNoCheckTime, box));
        time->setReadOnly(true);
        time->setMaximumWidth(70);
        const QString caption = box == 0 ? QStringLiteral("From") : QStringLiteral("to");
        quiet->addWidget(b.buddy(caption, time), 1 + box, 0);
        quiet->addWidget(time, 1 + box, 1);
        QSpinBox* h = b.spin(Element(ctl::updNoCheck, box));
        QSpinBox* m = b.spin(Element(ctl::updNoCheck, box + 2));
        quiet->addWidget(b.buddy(caption + QStringLiteral(" hour"), h), 1 + box, 2);
        quiet->addWidget(h, 1 + box, 3);
        quiet->addWidget(b.buddy(caption + QStringLiteral(" minute"), m), 1 + box, 4);
        quiet->addWidget(m, 1 + box, 5);
        new PartPicker(time, h, m);
    }
    quiet->setColumnStretch(6, 1);
    l->addLayout(quiet);

    l->addWidget(b.check(ctl::chkShowEmailMsgBox));
    l->addWidget(b.options(ctl::optShowEmail, 3, QString()));
    auto* time = new QHBoxLayout;
    QSpinBox* seconds = b.spin(ctl::txtMsgBoxTime);
    time->addWidget(b.buddy(QStringLiteral("Show  Auto Check Message for"), seconds));
    time->addWidget(seconds);
    time->addWidget(new QLabel(QStringLiteral("seconds.")));
    time->addStretch(1);
    l->addLayout(time);
    l->addWidget(new QLabel(QStringLiteral("Note: 0 seconds keeps Auto Check Message open "
                                           "indefinitely.")));
    l->addStretch(1);
    return s;
}

QWidget* DefaultsSection(Builder& b) {
    QVBoxLayout* l = nullptr;
    QWidget* s = Section(l);
    auto* grid = new QGridLayout;
    QLineEdit* client = b.text(ctl::txtDefaultClient);
    grid->addWidget(b.buddy(QStringLiteral("Default Email Client:"), client), 0, 0);
    grid->addWidget(client, 0, 1);
    grid->addWidget(OptionsPage::ButtonBar(b.controls, Element(ctl::tbrClient, 0)), 0, 2);
    grid->addWidget(b.options(ctl::optRunSize, 2, QString(), Qt::Horizontal), 1, 1);
    QLineEdit* sound = b.text(ctl::txtDefaultSound);
    grid->addWidget(b.buddy(QStringLiteral("Default Sound:"), sound), 2, 0);
    grid->addWidget(sound, 2, 1);
    grid->addWidget(OptionsPage::ButtonBar(b.controls, Element(ctl::tbrSound, 0)), 2, 2);
    grid->addWidget(b.check(ctl::chkPlaySound), 3, 1);
    for (int i = 0; i < 3; ++i)
        grid->addWidget(b.label(Element(ctl::lblSoundInfo, i)), 4 + i, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    l->addLayout(grid);
    auto* timeout = new QHBoxLayout;
    QSpinBox* seconds = b.spin(ctl::txtConnectTimeOut);
    timeout->addWidget(b.buddy(QStringLiteral("Connection TimeOut"), seconds));
    timeout->addWidget(seconds);
    timeout->addWidget(new QLabel(QStringLiteral("Default is 10 seconds.")));
    timeout->addStretch(1);
    l->addLayout(timeout);
    for (const auto& name : {ctl::chkQuickCheck, ctl::chkDeleteConfirmation, ctl::chkCloseButton,
                             ctl::chkSuppressConnectErrors, ctl::chkSuppressRetrieveErrors})
        l->addWidget(b.check(name));
    l->addStretch(1);
    return s;
}

bool DesktopDrawsTrayMenu() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface() &&
           bus.interface()->isServiceRegistered(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

QWidget* MenuColoursSection(Builder& b) {
    QVBoxLayout* l = nullptr;
    QWidget* s = Section(l);
    for (int i = 0; i < 3; ++i)
        l->addWidget(b.label(Element(ctl::lblMenuColours, i)));
    auto* row = new QHBoxLayout;
    row->addWidget(b.options(ctl::opt3DTheme, 7, QStringLiteral("3D Colour Themes")));
    auto* boxes = new QVBoxLayout;
    const std::pair<QLatin1String, const char*> colours[] = {
        {ctl::lbl3DTopColour, "Top Colour"},
        {ctl::lbl3DMiddleColour, "Middle Colour"},
        {ctl::lbl3DBottomColour, "Bottom Colour"}};
    for (const auto& [name, caption] : colours) {
        auto* box = new PageParts::ColourBox(44, 26);
        b.controls.add(box, name);
        box->setAccessibleName(QString::fromLatin1(caption));
        auto* line = new QHBoxLayout;
        line->addWidget(box);
        line->addWidget(b.buddy(QString::fromLatin1(caption), box));
        line->addStretch(1);
        boxes->addLayout(line);
    }
    boxes->addWidget(b.label(Element(ctl::lblMenuColours, 6)));
    boxes->addStretch(1);
    row->addLayout(boxes, 1);
    l->addLayout(row);
    // Where the desktop draws the tray's menu itself, the colours reach only
    // the menus drawn here.
    if (DesktopDrawsTrayMenu()) {
        auto* note = new QLabel(QStringLiteral(
            "This desktop draws the System Tray menu itself: the colours show in the Email "
            "Messages window's menu."));
        note->setWordWrap(true);
        l->addWidget(note);
    }
    l->addStretch(1);
    return s;
}

QWidget* MiscellaneousSection(Builder& b) {
    QVBoxLayout* l = nullptr;
    QWidget* s = Section(l);
    l->addWidget(b.check(ctl::chkShowNewOnly));
    l->addWidget(b.check(ctl::chkRestoreColWidth));
    auto* style = new QHBoxLayout;
    style->addWidget(b.check(ctl::chkButtonStyle));
    style->addWidget(b.options(ctl::optApplyStyle, 4, QStringLiteral("Apply to"), Qt::Horizontal,
                               ctl::fraApplyStyle));
    style->addStretch(1);
    l->addLayout(style);
    auto* tips = new QGroupBox(QStringLiteral("Allow Email Message ToolTips on the following..."));
    auto* tipRow = new QHBoxLayout(tips);
    for (const auto& name : {ctl::chkFromToolTips, ctl::chkToToolTips, ctl::chkSubjectToolTips})
        tipRow->addWidget(b.check(name));
    tipRow->addStretch(1);
    l->addWidget(tips);
    l->addWidget(b.check(ctl::chkMessageSort));
    auto* sort = new QGroupBox;
    b.controls.add(sort, ctl::fraSort);
    auto* sortRow = new QHBoxLayout(sort);
    sortRow->addWidget(b.options(ctl::optSortColumn, 6, QStringLiteral("Sort Column")));
    sortRow->addWidget(b.options(ctl::optSortOrder, 2, QStringLiteral("Sort Order")));
    sortRow->addStretch(1);
    l->addWidget(sort);
    QToolBar* misc = OptionsPage::ButtonBar(b.controls, ctl::tbrOptMisc);
    misc->setToolButtonStyle(Qt::ToolButtonTextOnly);
    l->addWidget(misc);
    l->addStretch(1);
    return s;
}

// A hidden box through which the logic hands the page a request. Setting
// it from the logic raises no signal of its own, but the line inside an
// editable combo box still reports; the box is cleared after each request,
// so the same request twice is heard twice.
QComboBox* RequestBox(WidgetControls& controls, const QString& name,
                      std::function<void(const QString&)> handle) {
    auto* box = new QComboBox;
    box->setEditable(true);
    controls.add(box, name);
    QObject::connect(box->lineEdit(), &QLineEdit::textChanged, box,
                     [box, handle = std::move(handle)](const QString& text) {
                         if (text.isEmpty())
                             return;
                         handle(text);
                         box->lineEdit()->clear();
                     });
    return box;
}

QColor FromBgr(qint64 bgr) {
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

} // namespace

OptionsPage::OptionsPage(WidgetControls& controls) : controls(controls) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 3), layout);
    Builder b{controls};

    auto* body = new QHBoxLayout;
    auto* tree = new QListWidget;
    tree->setAccessibleName(QStringLiteral("Options"));
    tree->setMaximumWidth(170);
    controls.add(tree, ctl::TreeView);
    body->addWidget(tree);

    auto* right = new QVBoxLayout;
    auto* title = new QLabel;
    QFont big = title->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    title->setFont(big);
    controls.add(title, ctl::lblOptionsTitle);
    right->addWidget(title);
    auto* sheet = new QFrame;
    sheet->setFrameShape(QFrame::StyledPanel);
    auto* sections = new QVBoxLayout(sheet);
    QWidget* built[6] = {StartUpSection(b),     AutoCheckSection(b),     DefaultsSection(b),
                         MenuColoursSection(b), MiscellaneousSection(b), AboutLinks(controls)};
    for (int node = 1; node <= 6; ++node) {
        QBoxLayout* holderLayout = nullptr;
        QWidget* holder = PageParts::Frame(controls, Element(ctl::fraOptions, node), holderLayout);
        holderLayout->addWidget(built[node - 1]);
        sections->addWidget(holder, 1);
    }
    right->addWidget(sheet, 1);
    body->addLayout(right, 1);
    layout->addLayout(body, 1);

    // The request boxes sit in a hidden holder: the user never sees them,
    // and their own visibility stays the logic's to set.
    auto* requests = new QWidget;
    auto* requestLayout = new QHBoxLayout(requests);
    requestLayout->addWidget(
        RequestBox(controls, ctl::picClientIcon, [this](const QString& r) { clientIcon(r); }));
    requestLayout->addWidget(
        RequestBox(controls, ctl::txtMenuStyleFile, [this](const QString& r) { menuStyle(r); }));
    requestLayout->addWidget(
        RequestBox(controls, ctl::txtButtonStyle, [this](const QString& r) { buttonStyle(r); }));
    requests->setVisible(false);
    layout->addWidget(requests);
    layout->addWidget(PageParts::PageButtonRow(controls, 3));
}

QToolBar* OptionsPage::ButtonBar(WidgetControls& controls, const QString& toolbar) {
    return PageParts::SmallBar(controls, toolbar, OptionPageButtons(), true);
}

void OptionsPage::clientIcon(const QString& request) {
    const QString key = request.section(QLatin1Char('|'), 0, 0);
    const QString path = request.section(QLatin1Char('|'), 1);
    if (key.startsWith(QLatin1String("MailClient"))) {
        if (path.isEmpty()) {
            clientIcons.remove(key);
        } else {
            const QIcon icon = DesktopEntryIcons::ClientIcon(path);
            clientIcons.insert(key,
                               icon.isNull() ? Pictures::Keyed(QStringLiteral("FolderX")) : icon);
        }
    }
    showClientIcons();
}

void OptionsPage::showClientIcons() {
    // The buttons and the menu entry that can show a client, by the key the
    // logic gave each.
    const QString buttons[] = {
        Element(ctl::tbrButtons, ctl::StartEmailClient),
        Button(Element(ctl::tbrClient, 0), QStringLiteral("Test")),
        Button(Element(ctl::tbrClient, 1), QStringLiteral("Test")),
    };
    for (const QString& name : buttons) {
        const auto it = clientIcons.constFind(controls.image(name));
        if (it == clientIcons.constEnd())
            continue;
        QObject* control = controls.find(name);
        if (auto* action = qobject_cast<QAction*>(control))
            action->setIcon(*it);
        else if (auto* button = qobject_cast<QAbstractButton*>(control))
            button->setIcon(*it);
    }
    const auto it =
        clientIcons.constFind(WidgetControls::MenuImage(controls.caption(ctl::mnuTrayRunClient)));
    if (it != clientIcons.constEnd()) {
        if (auto* action = qobject_cast<QAction*>(controls.find(ctl::mnuTrayRunClient)))
            action->setIcon(*it);
    }
}

QString OptionsPage::MenuStyleSheet(const QString& styleFile) {
    QSettings file(styleFile, QSettings::IniFormat);
    bool ok[3] = {};
    const qint64 top = file.value(QStringLiteral("New3D/New3DColor1")).toLongLong(&ok[0]);
    const qint64 middle = file.value(QStringLiteral("New3D/New3DColor2")).toLongLong(&ok[1]);
    const qint64 bottom = file.value(QStringLiteral("New3D/New3DColor3")).toLongLong(&ok[2]);
    if (!ok[0] || !ok[1] || !ok[2])
        return {};
    const QString t = FromBgr(top).name();
    const QString m = FromBgr(middle).name();
    const QString b = FromBgr(bottom).name();
    // The 3D gradient: the top colour fades through the middle into the
    // bottom; the chosen entry takes the bottom colour.
    return QStringLiteral("QMenu { background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 %1, "
                          "stop:0.5 %2, stop:1 %3); border: 1px solid %3; color: black; }"
                          "QMenu::item { padding: 4px 24px 4px 28px; background: transparent; }"
                          "QMenu::item:selected { background: %3; color: white; }"
                          "QMenu::item:disabled { color: gray; }"
                          "QMenu::separator { height: 1px; background: %3; margin: 3px 6px; }")
        .arg(t, m, b);
}

void OptionsPage::menuStyle(const QString& styleFile) {
    const QString sheet = MenuStyleSheet(styleFile);
    for (const auto& name : {ctl::mnuTrayPopMenu, ctl::mnuEmailPopMenu}) {
        if (auto* menu = qobject_cast<QMenu*>(controls.find(name)))
            menu->setStyleSheet(sheet);
    }
}

void OptionsPage::buttonStyle(const QString& groups) {
    const QStringList raised = groups.split(QLatin1Char(' '));
    if (raised.size() != 3)
        return;
    const auto style = [&](const QString& toolbar, bool up) {
        if (auto* bar = qobject_cast<QToolBar*>(controls.find(toolbar))) {
            for (QToolButton* button : bar->findChildren<QToolButton*>())
                button->setAutoRaise(!up);
        }
    };
    const bool upper = raised[0] == QLatin1String("1");
    const bool intermediate = raised[1] == QLatin1String("1");
    const bool lower = raised[2] == QLatin1String("1");
    for (const auto& bar : {ctl::tbrMainButtons, ctl::tbrEmail, ctl::tbrAcnts, ctl::tbrRules})
        style(bar, upper);
    for (const QString& bar :
         {Element(ctl::tbrClient, 0), Element(ctl::tbrClient, 1), Element(ctl::tbrSound, 0),
          Element(ctl::tbrSound, 1), QString(ctl::tbrColour), QString(ctl::tbrMoveAccounts),
          QString(ctl::tbrOptMisc), QString(ctl::tbrOptAbout)})
        style(bar, intermediate);
    // The rows of page buttons are toolbars without names of their own.
    for (const PageButton& b : PageButtonTable()) {
        if (auto* action =
                qobject_cast<QAction*>(controls.find(Element(ctl::tbrButtons, b.index)))) {
            for (QObject* shown : action->associatedObjects()) {
                if (auto* button = qobject_cast<QToolButton*>(shown))
                    button->setAutoRaise(!lower);
            }
        }
    }
}

} // namespace velmora
