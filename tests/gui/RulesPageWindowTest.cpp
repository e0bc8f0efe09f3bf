#include "app/frmMainEvents.h"
#include "platform/Controls.h"
#include "platform/qt/widgets/MainWindow.h"
#include "platform/qt/widgets/RuleFileWindow.h"
#include "support/ScratchFile.h"
#include "support/TestRig.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

using namespace velmora;

class RulesPageWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void inputsAreNamedByTheirLabels();
    void buildingAnEntryByHand();
    void tickInTheListTurnsTheRuleOff();
    void ruleFileDialogOpensWithItsTextSelected();
    void secondsStepWithinTheirBounds();
    void tickOnAnotherRuleByMouse();

private:
    void trigger(const QString& name) {
        auto* action = window->findChild<QAction*>(name);
        QVERIFY2(action && action->isEnabled(), qPrintable(name));
        action->trigger();
    }

    std::unique_ptr<ScratchFile> scratch;
    std::unique_ptr<TestRig> rig;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<frmMainEvents> events;
};

void RulesPageWindowTest::init() {
    window.reset();
    scratch = std::make_unique<ScratchFile>("Rules.ini");
    rig = std::make_unique<TestRig>();
    rig->files.programFolder = scratch->folder();
    rig->addAccount(1, "Home");
    rig->settings.set("Settings\\FirstUse", "1");
    window = std::make_unique<MainWindow>();
    window->setTaskbarFallback(false);
    rig->ctx->view = window.get();
    events = std::make_unique<frmMainEvents>(*rig->ctx);
    window->setEvents(events.get());
    QVERIFY(rig->start());
    window->show();
    trigger(Button(ctl::tbrMainButtons, "Rules"));
    trigger(Button(ctl::tbrRules, "RulesAdd"));
}

void RulesPageWindowTest::inputsAreNamedByTheirLabels() {
    const QList<QLabel*> labels = window->findChildren<QLabel*>();
    for (const auto& name :
         {ctl::txtRuleName, ctl::cboRuleAccount, ctl::cboBoolean, ctl::cboWhere, ctl::cboCondition,
          ctl::txtCriteria, ctl::txtRuleDescription, ctl::txtRuleNotifyTime}) {
        auto* input = window->findChild<QWidget*>(name);
        QVERIFY2(input, qPrintable(name));
        const bool labelled = std::any_of(labels.begin(), labels.end(), [&](QLabel* l) {
            return l->buddy() == input && !l->text().isEmpty();
        });
        QVERIFY2(labelled, qPrintable(name));
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(input);
        QVERIFY2(!a->text(QAccessible::Name).isEmpty(), qPrintable(name));
    }
    QAccessibleInterface* list =
        QAccessible::queryAccessibleInterface(window->findChild<QListWidget*>(ctl::lstRules));
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->text(QAccessible::Name), QString("Rules"));
    QAccessibleInterface* spam = QAccessible::queryAccessibleInterface(
        window->findChild<QWidget*>(Element(ctl::optRuleAction, 2)));
    QCOMPARE(spam->role(), QAccessible::RadioButton);
    QCOMPARE(spam->text(QAccessible::Name), QString("Mark as Spam   (Delete Later)"));
    QVERIFY(
        !window->findChild<QWidget*>(Element(ctl::optRuleAction, 0))->isVisibleTo(window.get()));
}

void RulesPageWindowTest::buildingAnEntryByHand() {
    auto* update = window->findChild<QAction*>(Button(ctl::tbrRuleUpdate, "Update"));
    QVERIFY(!update->isEnabled());
    auto* criteria = window->findChild<QLineEdit*>(ctl::txtCriteria);
    QTest::keyClicks(criteria, "bob");
    QVERIFY(update->isEnabled());
    trigger(Button(ctl::tbrRuleUpdate, "Update"));
    QCOMPARE(rig->ctx->rules.WorkingRules[1].Description[0], QString("From Contains bob "));
    QCOMPARE(window->findChild<QLabel*>(ctl::lblRuleDescEntries)->text(),
             QString("1 of 10 Entries"));
    // The page is dirty: only Save and Cancel lead away.
    QVERIFY(window->findChild<QAction*>(Element(ctl::tbrButtons, ctl::SaveRules))->isEnabled());
    QVERIFY(!window->findChild<QWidget*>(ctl::fraMainButtons)->isEnabled());
}

void RulesPageWindowTest::tickInTheListTurnsTheRuleOff() {
    auto* list = window->findChild<QListWidget*>(ctl::lstRules);
    QCOMPARE(list->count(), 1);
    QListWidgetItem* item = list->item(0);
    QCOMPARE(item->checkState(), Qt::Checked);
    item->setCheckState(Qt::Unchecked);
    QCOMPARE(rig->ctx->rules.WorkingRules[1].Enabled, 0);
    auto* frame = window->findChild<QGroupBox*>(ctl::fraRule);
    QCOMPARE(frame->title(), QString("Rule: Not Enabled"));
    QVERIFY(frame->styleSheet().contains("#c00000"));
    QCOMPARE(list->item(0)->checkState(), Qt::Unchecked);
    list->item(0)->setCheckState(Qt::Checked);
    QCOMPARE(rig->ctx->rules.WorkingRules[1].Enabled, 1);
    QVERIFY(frame->styleSheet().isEmpty());
}

void RulesPageWindowTest::ruleFileDialogOpensWithItsTextSelected() {
    RuleFileWindow form;
    form.setNewName("Rules");
    QString selected;
    bool focused = false;
    QTimer::singleShot(0, [&] {
        auto* text = form.dialog()->findChild<QLineEdit*>("txtRuleFileName");
        selected = text->selectedText();
        focused = form.dialog()->focusWidget() == text;
        text->setText("Bob");
        form.dialog()->findChild<QPushButton*>("Save")->click();
    });
    QString typed;
    QVERIFY(form.exec(typed));
    QCOMPARE(selected, QString("Rules"));
    QVERIFY(focused);
    QCOMPARE(typed, QString("Bob"));

    QTimer::singleShot(0, [&] { form.dialog()->findChild<QPushButton*>("Cancel")->click(); });
    QVERIFY(!form.exec(typed));
}

void RulesPageWindowTest::secondsStepWithinTheirBounds() {
    auto* seconds = window->findChild<QLineEdit*>(ctl::txtRuleNotifyTime);
    QVERIFY(!seconds->isEnabled());
    window->findChild<QCheckBox*>(ctl::chkRuleNotify)->click();
    QVERIFY(seconds->isEnabled());
    QTest::keyClick(seconds, Qt::Key_Up);
    QCOMPARE(rig->ctx->rules.WorkingRules.Time, 31);
    seconds->setText("59");
    QTest::keyClick(seconds, Qt::Key_Up);
    QCOMPARE(seconds->text(), QString("59"));
    QCOMPARE(rig->ctx->rules.WorkingRules.Time, 59);
    seconds->setText("0");
    QTest::keyClick(seconds, Qt::Key_Down);
    QCOMPARE(rig->ctx->rules.WorkingRules.Time, 0);
}

// A click on the box of a rule that is not the current one selects that
// rule and turns it off, in one click.
void RulesPageWindowTest::tickOnAnotherRuleByMouse() {
    trigger(Button(ctl::tbrRules, "RulesAdd"));
    auto* list = window->findChild<QListWidget*>(ctl::lstRules);
    list->setCurrentRow(0);
    QCOMPARE(rig->ctx->rules.CurrentRule, 1);
    QStyleOptionViewItem option;
    option.initFrom(list);
    option.rect = list->visualItemRect(list->item(1));
    option.features |= QStyleOptionViewItem::HasCheckIndicator;
    const QRect box =
        list->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, list);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, box.center());
    QCOMPARE(rig->ctx->rules.CurrentRule, 2);
    QCOMPARE(rig->ctx->rules.WorkingRules[2].Enabled, 0);
    QCOMPARE(rig->ctx->rules.WorkingRules[1].Enabled, 1);
    QCOMPARE(list->item(1)->checkState(), Qt::Unchecked);
}

QTEST_MAIN(RulesPageWindowTest)
#include "RulesPageWindowTest.moc"
