#include "platform/qt/widgets/RulesPage.h"

#include "platform/Controls.h"
#include "platform/qt/widgets/PageParts.h"
#include "platform/qt/widgets/WidgetControls.h"

#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

namespace velmora {

namespace {

// The dark red of a rule that is not enabled.
const QColor kNotEnabled(192, 0, 0);

// A row of the page's own small buttons, each showing its action.
QWidget* SmallBar(WidgetControls& controls, const QString& toolbar) {
    auto* bar = new QWidget;
    controls.add(bar, toolbar);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    for (const ToolbarButton& b : RulePageButtons()) {
        if (b.toolbar != toolbar)
            continue;
        auto* action = new QAction(b.key, bar);
        controls.add(action, Button(toolbar, b.key));
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        row->addWidget(button);
    }
    row->addStretch(1);
    return bar;
}

template <typename Widget> Widget* Named(WidgetControls& controls, const QString& name) {
    auto* widget = new Widget;
    controls.add(widget, name);
    return widget;
}

// A caption in front of an input; screen readers name the input by it.
QLabel* Buddy(QLabel* label, QWidget* input, const QString& name) {
    label->setBuddy(input);
    input->setAccessibleName(name);
    return label;
}

QLabel* Buddy(const QString& caption, QWidget* input) {
    return Buddy(new QLabel(caption), input, QString(caption).remove(QLatin1Char(':')));
}

} // namespace

RulesPage::RulesPage(WidgetControls& controls) : controls(controls) {
    QBoxLayout* layout = nullptr;
    page = PageParts::Frame(controls, Element(ctl::fraMain, 2), layout);
    layout->addWidget(PageParts::FramedToolbar(controls, ctl::fraRulesToolbar, ctl::tbrRules));
    auto* fileName = Named<QLabel>(controls, ctl::lblRulesFileName);
    fileName->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(fileName);

    auto* body = new QHBoxLayout;
    // The rules, in the order they are tried, each with its check box.
    auto* rules = Named<QGroupBox>(controls, ctl::fraRules);
    rules->setTitle(QStringLiteral("Rules"));
    auto* rulesLayout = new QVBoxLayout(rules);
    list = Named<QListWidget>(controls, ctl::lstRules);
    list->setAccessibleName(QStringLiteral("Rules"));
    rulesLayout->addWidget(list, 1);
    rulesLayout->addWidget(SmallBar(controls, ctl::tbrMoveRules));
    // Never seen: it carries the list's check boxes to and from the logic.
    ticks = Named<QLineEdit>(controls, ctl::lstRulesEnabled);
    ticks->setAccessibleName(QStringLiteral("Rules enabled"));
    ticks->setParent(rules);
    ticks->setGeometry(0, 0, 0, 0);
    ticks->setFocusPolicy(Qt::NoFocus);
    body->addWidget(rules, 1);

    auto* right = new QVBoxLayout;
    auto* rule = Named<QGroupBox>(controls, ctl::fraRule);
    ruleFrame = rule;
    auto* form = new QGridLayout(rule);
    form->setColumnStretch(1, 1);
    int row = 0;
    auto* name = Named<QLineEdit>(controls, ctl::txtRuleName);
    form->addWidget(
        Buddy(Named<QLabel>(controls, ctl::lblRuleName), name, QStringLiteral("Rule Name")), row,
        0);
    form->addWidget(name, row++, 1, 1, 3);
    auto* account = Named<QComboBox>(controls, ctl::cboRuleAccount);
    form->addWidget(
        Buddy(Named<QLabel>(controls, ctl::lblRuleAccount), account, QStringLiteral("Account")),
        row, 0);
    form->addWidget(account, row++, 1, 1, 3);

    // One entry is built from a join, a field, a comparison and a text.
    auto* entry = new QHBoxLayout;
    auto* boolean = Named<QComboBox>(controls, ctl::cboBoolean);
    auto* where = Named<QComboBox>(controls, ctl::cboWhere);
    auto* condition = Named<QComboBox>(controls, ctl::cboCondition);
    entry->addWidget(Buddy(QStringLiteral("Join:"), boolean));
    entry->addWidget(boolean);
    entry->addWidget(Buddy(QStringLiteral("Field:"), where));
    entry->addWidget(where);
    entry->addWidget(Buddy(QStringLiteral("Condition:"), condition));
    entry->addWidget(condition);
    entry->addWidget(Named<QCheckBox>(controls, ctl::chkNot));
    entry->addStretch(1);
    form->addLayout(entry, row++, 0, 1, 4);
    auto* criteria = Named<QLineEdit>(controls, ctl::txtCriteria);
    auto* criteriaLabel = Named<QLabel>(controls, ctl::lblCriteria);
    form->addWidget(Buddy(criteriaLabel, criteria, QStringLiteral("Criteria")), row++, 0, 1, 4);
    form->addWidget(criteria, row++, 0, 1, 4);
    form->addWidget(SmallBar(controls, ctl::tbrRuleUpdate), row++, 0, 1, 4);
    auto* description = Named<QPlainTextEdit>(controls, ctl::txtRuleDescription);
    description->setReadOnly(true);
    auto* descriptionCaption = Named<QLabel>(controls, ctl::lblRuleDescription);
    descriptionLabel = descriptionCaption;
    form->addWidget(Buddy(descriptionCaption, description, QStringLiteral("Rule Description")), row,
                    0, 1, 2);
    form->addWidget(Named<QLabel>(controls, ctl::lblRuleDescEntries), row++, 2, 1, 2,
                    Qt::AlignRight);
    form->addWidget(description, row++, 0, 1, 4);
    right->addWidget(rule, 1);

    auto* lower = new QHBoxLayout;
    auto* action = Named<QGroupBox>(controls, ctl::fraAction);
    actionFrame = action;
    auto* actions = new QVBoxLayout(action);
    for (int n = 0; n <= 3; ++n) {
        // Element 0 stands for "none"; the logic hides it.
        actions->addWidget(Named<QRadioButton>(controls, Element(ctl::optRuleAction, n)));
    }
    lower->addWidget(action, 1);
    auto* notify = Named<QGroupBox>(controls, ctl::fraNotify);
    auto* notifyLayout = new QVBoxLayout(notify);
    notifyLayout->addWidget(Named<QCheckBox>(controls, ctl::chkRuleNotify));
    notifyLayout->addWidget(Named<QCheckBox>(controls, ctl::chkRuleNotifyNew));
    auto* time = new QHBoxLayout;
    auto* seconds = Named<QLineEdit>(controls, ctl::txtRuleNotifyTime);
    seconds->setValidator(new QIntValidator(0, 99, seconds));
    seconds->setMaximumWidth(48);
    time->addWidget(Buddy(Named<QLabel>(controls, ctl::lblRuleNotifyTime), seconds,
                          QStringLiteral("Show for seconds")));
    time->addWidget(seconds);
    // The arrows beside the box, and the Up and Down keys in it, step it.
    secondsBox = seconds;
    seconds->installEventFilter(this);
    for (const int step : {1, -1}) {
        auto* arrow = new QToolButton;
        arrow->setArrowType(step > 0 ? Qt::UpArrow : Qt::DownArrow);
        arrow->setAccessibleName(step > 0 ? QStringLiteral("More seconds")
                                          : QStringLiteral("Fewer seconds"));
        arrow->setFocusPolicy(Qt::NoFocus);
        arrow->setAutoRepeat(true);
        connect(arrow, &QToolButton::clicked, this, [this, step] { stepSeconds(step); });
        time->addWidget(arrow);
    }
    time->addWidget(new QLabel(QStringLiteral("seconds.")));
    time->addStretch(1);
    notifyLayout->addLayout(time);
    lower->addWidget(notify, 1);
    right->addLayout(lower);
    body->addLayout(right, 2);
    layout->addLayout(body, 1);
    layout->addWidget(PageParts::PageButtonRow(controls, 2));

    // The list's check boxes travel as a text of ones and zeros, which the
    // logic sets before the items.
    connect(list->model(), &QAbstractItemModel::rowsInserted, this, [this] { showTicks(); });
    connect(list, &QListWidget::itemChanged, this, [this] { ticked(); });
    rule->installEventFilter(this);
}

bool RulesPage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == secondsBox && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            stepSeconds(key == Qt::Key_Up ? 1 : -1);
            return true;
        }
    }
    // The frame's caption says whether the rule is enabled.
    if (watched == ruleFrame && event->type() == QEvent::DynamicPropertyChange)
        showEnabledColour();
    return QObject::eventFilter(watched, event);
}

void RulesPage::showEnabledColour() {
    const bool off = controls.caption(ctl::fraRule) == QLatin1String("Rule: Not Enabled");
    // Only the frames' titles change; the inputs inside keep their colours.
    const QString sheet =
        off ? QStringLiteral("QGroupBox::title { color: %1; }").arg(kNotEnabled.name()) : QString();
    ruleFrame->setStyleSheet(sheet);
    actionFrame->setStyleSheet(sheet);
    QPalette palette = ruleFrame->palette();
    if (off)
        palette.setColor(QPalette::WindowText, kNotEnabled);
    descriptionLabel->setPalette(palette);
}

void RulesPage::stepSeconds(int step) {
    if (!secondsBox->isEnabled())
        return;
    const int value = std::clamp(secondsBox->text().toInt() + step, 0, 59);
    secondsBox->setText(QString::number(value));
    controls.report()(
        [](MainViewEvents& events) { events.ValueChanged(QString(ctl::txtRuleNotifyTime)); });
}

void RulesPage::showTicks() {
    if (showingTicks)
        return;
    showingTicks = true;
    const QString text = ticks->text();
    const QSignalBlocker block(list);
    for (int i = 0; i < list->count(); ++i) {
        QListWidgetItem* item = list->item(i);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(i < text.size() && text[i] == QLatin1Char('1') ? Qt::Checked
                                                                           : Qt::Unchecked);
    }
    showingTicks = false;
}

void RulesPage::ticked() {
    if (showingTicks)
        return;
    QString text;
    for (int i = 0; i < list->count(); ++i)
        text += list->item(i)->checkState() == Qt::Checked ? QLatin1Char('1') : QLatin1Char('0');
    showingTicks = true;
    ticks->setText(text);
    showingTicks = false;
    controls.report()(
        [](MainViewEvents& events) { events.ValueChanged(QString(ctl::lstRulesEnabled)); });
}

} // namespace velmora
