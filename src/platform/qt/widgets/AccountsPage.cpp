#include "platform/qt/widgets/AccountsPage.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/OptionsPage.h"
#include "platform/qt/widgets/PageParts.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QTabBar>
#include <QToolBar>

namespace velmora {

namespace {

// The sheet of the account's fields. The colour boxes float over it at the
// Colour button; the pointer moving over the sheet itself, away from them,
// is reported while they show, so that they go again.
class AccountSheet : public QFrame {
public:
    explicit AccountSheet(const EventReporter& reporter) : reporter(reporter) {
        setFrameShape(QFrame::StyledPanel);
        setMouseTracking(true);
    }

    void floatBoxes(QWidget* choices, QWidget* at) {
        boxes = choices;
        anchor = at;
        boxes->setParent(this);
        boxes->setAutoFillBackground(true);
        boxes->installEventFilter(this);
    }

protected:
    void mouseMoveEvent(QMouseEvent* event) override {
        QFrame::mouseMoveEvent(event);
        if (boxes && boxes->isVisible() && !boxes->geometry().contains(event->position().toPoint()))
            reporter([](MainViewEvents& events) { events.FramePointer(ctl::fraAcnt); });
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == boxes && event->type() == QEvent::Show) {
            boxes->adjustSize();
            boxes->move(anchor->mapTo(this, QPoint(0, 0)));
            boxes->raise();
        }
        return false;
    }

private:
    EventReporter reporter;
    QWidget* boxes = nullptr;
    QWidget* anchor = nullptr;
};

// A bar of the page's own buttons, which carry captions only.
QToolBar* SmallBar(WidgetControls& controls, const QString& toolbar) {
    return PageParts::SmallBar(controls, toolbar, AccountPageButtons(), false);
}

QLineEdit* TextBox(WidgetControls& controls, const QString& name) {
    auto* box = new QLineEdit;
    controls.add(box, name);
    return box;
}

QCheckBox* CheckBox(WidgetControls& controls, const QString& name) {
    auto* box = new QCheckBox;
    controls.add(box, name);
    return box;
}

QLabel* Label(WidgetControls& controls, const QString& name) {
    auto* label = new QLabel;
    controls.add(label, name);
    return label;
}

// A caption in front of an input; screen readers name the input by it.
QLabel* Buddy(const QString& caption, QWidget* input) {
    auto* label = new QLabel(caption);
    label->setBuddy(input);
    input->setAccessibleName(QString(caption).remove(QLatin1Char(':')));
    return label;
}

} // namespace

AccountsPage::AccountsPage(WidgetControls& controls)
    : tabs(controls, ctl::TabStripAcnts, QStringLiteral("Accounts")) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 1), layout);
    auto* top = new QHBoxLayout;
    top->addWidget(PageParts::FramedToolbar(controls, ctl::fraAcntToolBar, ctl::tbrAcnts), 1);
    top->addWidget(SmallBar(controls, ctl::tbrMoveAccounts));
    layout->addLayout(top);
    auto* tabbed = new QVBoxLayout;
    tabbed->setSpacing(0);
    tabbed->addWidget(tabs.widget());

    auto* sheet = new AccountSheet(controls.report());
    controls.add(sheet, ctl::fraAcnt);
    fields = sheet;
    auto* form = new QGridLayout(sheet);
    form->setColumnStretch(1, 1);
    form->setColumnStretch(2, 1);
    int row = 0;
    form->addWidget(CheckBox(controls, ctl::chkAcntEnabled), row++, 1, 1, 2);
    const auto field = [&](const QString& caption, const QString& name, int span) {
        QLineEdit* box = TextBox(controls, name);
        form->addWidget(Buddy(caption, box), row, 0);
        form->addWidget(box, row++, 1, 1, span);
        return box;
    };
    field(QStringLiteral("Account:"), ctl::txtAcntName, 1);
    field(QStringLiteral("Server:"), ctl::txtAcntServer, 2);
    form->addWidget(CheckBox(controls, ctl::chkAcntSecure), row++, 1, 1, 2);
    field(QStringLiteral("Port:"), ctl::txtAcntPort, 1)->setMaximumWidth(120);
    field(QStringLiteral("Login ID:"), ctl::txtAcntLoginID, 2);
    field(QStringLiteral("Password:"), ctl::txtAcntPassword, 2)->setEchoMode(QLineEdit::Password);

    // The account's colour, and the boxes to choose it from.
    auto* colour = new QFrame;
    colour->setFrameShape(QFrame::Box);
    colour->setFixedSize(60, 22);
    controls.add(colour, ctl::txtAcntColour);
    auto* colourRow = new QHBoxLayout;
    colourRow->addWidget(colour);
    QToolBar* colourBar = SmallBar(controls, ctl::tbrColour);
    colourRow->addWidget(colourBar);
    auto* choices = new QGroupBox;
    controls.add(choices, ctl::fraColourBox);
    auto* swatches = new QHBoxLayout(choices);
    for (int box = 1; box <= ctl::ColourBoxes; ++box) {
        auto* swatch = new PageParts::ColourBox(26, 26);
        controls.add(swatch, Element(ctl::lblColourBox, box));
        swatches->addWidget(swatch);
    }
    sheet->floatBoxes(choices, colourBar);
    colourRow->addStretch(1);
    form->addWidget(Buddy(QStringLiteral("Colour:"), colour), row, 0);
    form->addLayout(colourRow, row++, 1, 1, 2);

    QLineEdit* client = TextBox(controls, ctl::txtAcntClient);
    form->addWidget(Buddy(QStringLiteral("Email Client:"), client), row, 0);
    form->addWidget(client, row, 1);
    form->addWidget(OptionsPage::ButtonBar(controls, Element(ctl::tbrClient, 1)), row++, 2);
    auto* clientState = new QHBoxLayout;
    clientState->addWidget(Label(controls, ctl::lblClientName));
    clientState->addWidget(Label(controls, ctl::lblAcntRunSize));
    clientState->addStretch(1);
    form->addLayout(clientState, row++, 1, 1, 2);
    QLineEdit* sound = TextBox(controls, ctl::txtAcntSound);
    form->addWidget(Buddy(QStringLiteral("Sound:"), sound), row, 0);
    form->addWidget(sound, row, 1);
    form->addWidget(OptionsPage::ButtonBar(controls, Element(ctl::tbrSound, 1)), row++, 2);
    form->addWidget(Label(controls, ctl::lblSoundName), row++, 1, 1, 2);
    auto* soundState = new QHBoxLayout;
    soundState->addWidget(CheckBox(controls, ctl::chkAcntSoundOn));
    soundState->addWidget(Label(controls, ctl::lblAcntPlaySound));
    soundState->addStretch(1);
    form->addLayout(soundState, row++, 1, 1, 2);
    form->setRowStretch(row, 1);

    tabbed->addWidget(sheet, 1);
    layout->addLayout(tabbed, 1);
    layout->addWidget(PageParts::PageButtonRow(controls, 1));
}

} // namespace velmora
