#include "app/UiScript.h"
#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "options/IniFile.h"
#include "platform/Controls.h"
#include "rules/RuleEditing.h"
#include "support/DiskLimits.h"
#include "support/ScratchFile.h"
#include "support/TestRig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace velmora;

class RulesPageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void entrySequences_data();
    void entrySequences();
    void eleventhEntryIsRefused();
    void notificationTimeBounds_data();
    void notificationTimeBounds();
    void addMoveSaveAndDeleteReachTheFile();
    void deleteSavesOtherEdits();
    void saveChecksOnlyTheCurrentRule();
    void dirtyPageLocksTheMainButtons();
    void tickInTheListEnablesTheRule();
    void unwritableFileKeepsThePageDirty();
    void savedRuleMarksTheNextCheck();

private:
    // Runs ui lines on the Rules page with one new rule; false on a bad line.
    bool run(const QString& lines);
    const Rule& working(int n) const { return rig->ctx->rules.WorkingRules[n]; }
    QString readBack(const QString& section, const QString& key) const {
        IniFile ini(rig->profiles, QString());
        ini.setConfigName(scratch->path());
        return ini.KeyGet(section, key, "<none>");
    }

    std::unique_ptr<ScratchFile> scratch;
    std::unique_ptr<TestRig> rig;
};

void RulesPageTest::init() {
    scratch = std::make_unique<ScratchFile>("Rules.ini");
    rig = std::make_unique<TestRig>();
    rig->files.programFolder = scratch->folder();
    rig->addAccount(1, "Home");
    rig->settings.set("Settings\\FirstUse", "1");
    QVERIFY(rig->start());
}

bool RulesPageTest::run(const QString& lines) {
    return rig->runScript(lines);
}

const char* const kNewRule = "click tbrMainButtons/Rules\nclick tbrRules/RulesAdd\n";

void RulesPageTest::entrySequences_data() {
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("description");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("redo");
    // RedoCount: the highest count the rule reached.
    QTest::addColumn<int>("highest");
    auto row = [](const char* name, const char* script, const char* description, int count,
                  bool redo, int highest) {
        QTest::newRow(name) << QString(script) << QString(description) << count << redo << highest;
    };
    row("one entry has no join", "set txtCriteria  bob \nclick tbrRuleUpdate/Update\n",
        "From Contains bob ", 1, false, 1);
    row("update, undo, redo gives the same",
        "set txtCriteria a\nclick tbrRuleUpdate/Update\nset txtCriteria b\n"
        "click tbrRuleUpdate/Update\nclick tbrRuleUpdate/Undo\nclick tbrRuleUpdate/Redo\n",
        "From Contains a AND From Contains b ", 2, false, 2);
    row("undo leaves redo on",
        "set txtCriteria a\nclick tbrRuleUpdate/Update\nset txtCriteria b\n"
        "click tbrRuleUpdate/Update\nclick tbrRuleUpdate/Undo\n",
        "From Contains a ", 1, true, 2);
    row("an update after undo overwrites one slot, redo reaches the later",
        "set txtCriteria a\nclick tbrRuleUpdate/Update\nset txtCriteria b\n"
        "click tbrRuleUpdate/Update\nset txtCriteria c\nclick tbrRuleUpdate/Update\n"
        "click tbrRuleUpdate/Undo\nclick tbrRuleUpdate/Undo\nset txtCriteria x\n"
        "click tbrRuleUpdate/Update\nclick tbrRuleUpdate/Redo\n",
        "From Contains a AND From Contains x AND From Contains c ", 3, false, 3);
    row("clear leaves nothing to redo",
        "set txtCriteria a\nclick tbrRuleUpdate/Update\nset txtCriteria b\n"
        "click tbrRuleUpdate/Update\nclick tbrRuleUpdate/Clear\nset txtCriteria c\n"
        "click tbrRuleUpdate/Update\nclick tbrRuleUpdate/Undo\nclick tbrRuleUpdate/Redo\n",
        "From Contains c ", 1, false, 2);
    row("negation and other fields",
        "choose cboWhere Subject\nchoose cboCondition Equals\ncheck chkNot 1\n"
        "set txtCriteria free offer\nclick tbrRuleUpdate/Update\n",
        "Subject Equals NOT free offer ", 1, false, 1);
    row("attachment keeps the empty criteria's blank",
        "set txtCriteria x\nchoose cboWhere Attachment\nclick tbrRuleUpdate/Update\n",
        "Attachment IsPresent  ", 1, false, 1);
    row("an OR rule leaves FLORIDA as it is",
        "choose cboWhere Subject\nset txtCriteria FLORIDA\nclick tbrRuleUpdate/Update\n"
        "choose cboWhere From\nset txtCriteria spam\nchoose cboBoolean OR\n"
        "click tbrRuleUpdate/Update\n",
        "Subject Contains FLORIDA OR From Contains spam ", 2, false, 2);
    row("the join swap is a plain replace: FLORIDA becomes FLANDIDA",
        "choose cboWhere Subject\nset txtCriteria FLORIDA\nclick tbrRuleUpdate/Update\n"
        "choose cboWhere From\nset txtCriteria spam\nchoose cboBoolean OR\n"
        "click tbrRuleUpdate/Update\nchoose cboBoolean AND\n",
        "Subject Contains FLANDIDA AND From Contains spam ", 2, false, 2);
    row("redo keeps the join the entry had",
        "set txtCriteria a\nclick tbrRuleUpdate/Update\nset txtCriteria b\n"
        "click tbrRuleUpdate/Update\nclick tbrRuleUpdate/Undo\nchoose cboBoolean OR\n"
        "click tbrRuleUpdate/Redo\n",
        "From Contains a AND From Contains b ", 2, false, 2);
}

void RulesPageTest::entrySequences() {
    QFETCH(QString, script);
    QFETCH(QString, description);
    QFETCH(int, count);
    QFETCH(bool, redo);
    QFETCH(int, highest);
    QVERIFY(run(kNewRule + script));
    const Rule& r = working(1);
    QCOMPARE(r.Description[0], description);
    QCOMPARE(r.DescCount, count);
    QCOMPARE(r.RedoCount, highest);
    QCOMPARE(rig->view.text(ctl::txtRuleDescription), description);
    QCOMPARE(rig->view.caption(ctl::lblRuleDescEntries), QString("%1 of 10 Entries").arg(count));
    QCOMPARE(rig->view.isEnabled(Button(ctl::tbrRuleUpdate, "Redo")), redo);
    QCOMPARE(rig->view.isEnabled(Button(ctl::tbrRuleUpdate, "Undo")), count > 0);
    QVERIFY(rig->boxes.boxes.isEmpty());
}

void RulesPageTest::eleventhEntryIsRefused() {
    QString script = kNewRule;
    for (int m = 1; m <= 11; ++m)
        script += QString("set txtCriteria e%1\nclick tbrRuleUpdate/Update\n").arg(m);
    QVERIFY(run(script));
    QCOMPARE(working(1).DescCount, 10);
    QVERIFY(!working(1).Description[0].contains("e11"));
    QCOMPARE(rig->boxes.boxes.size(), 1);
    QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - Maximum Entries"));
    QCOMPARE(rig->boxes.boxes[0].text,
             QString("Maximum Reached!\r\n\r\nThe Maximum number of entries is          \r\n"
                     "limited to 10.\r\n\r\nPlease try adding another Rule\r\n"
                     "using the same conditions.\r\n"));
}

void RulesPageTest::notificationTimeBounds_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("time");
    QTest::newRow("blank gives 1") << "" << 1;
    QTest::newRow("60 gives 59") << "60" << 59;
    QTest::newRow("0 stays") << "0" << 0;
    QTest::newRow("in range") << "45" << 45;
    QTest::newRow("letters are refused") << "ab" << 30;
}

void RulesPageTest::notificationTimeBounds() {
    QFETCH(QString, typed);
    QFETCH(int, time);
    QVERIFY(
        run(kNewRule + QString("check chkRuleNotify 1\nset txtRuleNotifyTime %1\n").arg(typed)));
    QCOMPARE(rig->ctx->rules.WorkingRules.Time, time);
    QCOMPARE(rig->view.text(ctl::txtRuleNotifyTime), QString::number(time));
}

void RulesPageTest::addMoveSaveAndDeleteReachTheFile() {
    QVERIFY(run(QString(kNewRule) +
                "set txtRuleName Spam words\nset txtCriteria viagra\nclick tbrRuleUpdate/Update\n"
                "option optRuleAction 1\nclick tbrButtons(9)\n"
                "click tbrRules/RulesAdd\nchoose cboRuleAccount Home\n"
                "choose cboWhere Size\nchoose cboCondition GreaterThan\nset txtCriteria 500\n"
                "click tbrRuleUpdate/Update\nclick tbrMoveButtons(1)/Up\nclick tbrButtons(9)\n"));
    QCOMPARE(readBack("Rules", "RuleCount"), QString("2"));
    QCOMPARE(readBack("Rule1", "Name"), QString("Rule2"));
    QCOMPARE(readBack("Rule1", "Account"), QString("Home"));
    QCOMPARE(readBack("Rule1", "Description1"), QString("Size GreaterThan 500"));
    QCOMPARE(readBack("Rule2", "Name"), QString("Spam words"));
    QCOMPARE(readBack("Rule2", "Action"), QString("1"));
    QCOMPARE(rig->ctx->rules.CurrentRule, 1);
    QVERIFY(!rig->view.isEnabled(Button(ctl::tbrMoveRules, "Up")));
    QVERIFY(rig->view.isEnabled(Button(ctl::tbrMoveRules, "Down")));

    // No: nothing goes. Yes: the rule and its section go at once.
    QVERIFY(run("answer No\nclick tbrRules/RulesDelete\n"));
    QCOMPARE(readBack("Rules", "RuleCount"), QString("2"));
    QVERIFY(run("answer Yes\nclick tbrRules/RulesDelete\n"));
    QCOMPARE(rig->boxes.boxes.last().title, QString("Delete Rule - Proceed With Caution"));
    QVERIFY(rig->boxes.boxes.last().text.contains("Rule Name:  'Rule2'\r\n"));
    QCOMPARE(readBack("Rules", "RuleCount"), QString("1"));
    QCOMPARE(readBack("Rule1", "Name"), QString("Spam words"));
    QVERIFY(!scratch->read().contains("[Rule2]"));
    QCOMPARE(rig->view.items(ctl::lstRules), QStringList{"Spam words"});
}

void RulesPageTest::deleteSavesOtherEdits() {
    QVERIFY(run(QString(kNewRule) + "set txtCriteria a\nclick tbrRuleUpdate/Update\n"
                                    "click tbrRules/RulesAdd\nset txtCriteria b\n"
                                    "click tbrRuleUpdate/Update\nchoose lstRules 0\n"
                                    "set txtRuleName renamed\nchoose lstRules 1\n"
                                    "answer Yes\nclick tbrRules/RulesDelete\n"));
    QCOMPARE(readBack("Rules", "RuleCount"), QString("1"));
    QCOMPARE(readBack("Rule1", "Name"), QString("renamed"));
    QVERIFY(!RulesDirty(*rig->ctx));
}

void RulesPageTest::saveChecksOnlyTheCurrentRule() {
    // The current rule has no entries: refused.
    QVERIFY(run(QString(kNewRule) + "click tbrButtons(9)\n"));
    QCOMPARE(rig->boxes.boxes.last().title, QString("Velmora - Rule Description Error"));
    QCOMPARE(rig->view.focus, QString(ctl::txtCriteria));
    // A blank name: refused, the list row shows blank.
    QVERIFY(run("set txtCriteria a\nclick tbrRuleUpdate/Update\nset txtRuleName \n"
                "click tbrButtons(9)\n"));
    QCOMPARE(rig->boxes.boxes.last().title, QString("Velmora - Rule Name Error"));
    QCOMPARE(rig->view.items(ctl::lstRules), QStringList{""});
    QVERIFY(!QFile::exists(scratch->path()));
    // Another rule without entries is saved as it is.
    QVERIFY(run("set txtRuleName named\nclick tbrRules/RulesAdd\nchoose lstRules 0\n"
                "click tbrButtons(9)\n"));
    QCOMPARE(rig->boxes.boxes.size(), 2);
    QCOMPARE(readBack("Rules", "RuleCount"), QString("2"));
    QCOMPARE(readBack("Rule2", "DescCount"), QString("0"));
}

void RulesPageTest::dirtyPageLocksTheMainButtons() {
    QVERIFY(run(kNewRule));
    const QString save = Element(ctl::tbrButtons, ctl::SaveRules);
    const QString cancel = Element(ctl::tbrButtons, ctl::CancelRules);
    QVERIFY(rig->view.isEnabled(save));
    QVERIFY(!rig->view.isEnabled(ctl::fraMainButtons));
    QVERIFY(run("click tbrButtons(10)\n"));
    QCOMPARE(rig->ctx->rules.WorkingRules.RuleCount, 0);
    QVERIFY(!rig->view.isEnabled(save));
    QVERIFY(!rig->view.isEnabled(cancel));
    QVERIFY(rig->view.isEnabled(ctl::fraMainButtons));
    QCOMPARE(rig->view.caption(ctl::fraRule), QString("Rule: None"));
}

void RulesPageTest::tickInTheListEnablesTheRule() {
    QVERIFY(run(QString(kNewRule) + "set txtCriteria a\nclick tbrRuleUpdate/Update\n"
                                    "click tbrRules/RulesAdd\nset lstRulesEnabled 01\n"));
    QCOMPARE(working(1).Enabled, 0);
    QCOMPARE(working(2).Enabled, 1);
    QCOMPARE(rig->ctx->rules.CurrentRule, 1);
    QCOMPARE(rig->view.caption(ctl::fraRule), QString("Rule: Not Enabled"));
    QCOMPARE(rig->view.text(ctl::txtRuleDescription), QString("From Contains a "));
}

void RulesPageTest::unwritableFileKeepsThePageDirty() {
    QVERIFY(run(QString(kNewRule) + "set txtCriteria a\nclick tbrRuleUpdate/Update\n"));
    {
        FileSizeLimit full(8);
        QVERIFY(!StoreRules(*rig->ctx));
    }
    QCOMPARE(rig->boxes.boxes.size(), 1);
    QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - File Not Saved"));
    QVERIFY(rig->boxes.boxes[0].text.contains(scratch->path()));
    QCOMPARE(rig->ctx->rules.LiveRules.RuleCount, 0);
    QVERIFY(RulesDirty(*rig->ctx));
    QVERIFY(rig->view.isEnabled(Element(ctl::tbrButtons, ctl::SaveRules)));
    QCOMPARE(working(1).Description[0], QString("From Contains a "));
    // With room again the same save goes through.
    QVERIFY(run("click tbrButtons(9)\n"));
    QCOMPARE(readBack("Rule1", "Description1"), QString("From Contains a"));
    QVERIFY(!RulesDirty(*rig->ctx));
}

// A rule built on the page, saved, and used by the check that follows;
// unsaved edits are not.
void RulesPageTest::savedRuleMarksTheNextCheck() {
    rig->mailbox("Home").mail = {"FLORIDA", "plain", "other"};
    QVERIFY(run(QString(kNewRule) +
                "choose cboWhere Subject\nset txtCriteria FLORIDA\nclick tbrRuleUpdate/Update\n"
                "choose cboWhere From\nset txtCriteria spam\nchoose cboBoolean OR\n"
                "click tbrRuleUpdate/Update\noption optRuleAction 2\nclick tbrButtons(9)\n"
                "click tbrRules/RulesAdd\nset txtCriteria example.com\n"
                "click tbrRuleUpdate/Update\noption optRuleAction 1\n"));
    QCOMPARE(readBack("Rule1", "Description1"), QString("Subject Contains FLORIDA"));
    QCOMPARE(readBack("Rule1", "Description2"), QString("OR From Contains spam"));
    QCOMPARE(readBack("Rule1", "Action"), QString("2"));
    // The page is dirty: a check runs on the rules as saved.
    QVERIFY(RulesDirty(*rig->ctx));
    CheckAllAccounts(*rig->ctx);
    const MessageStore& m = rig->ctx->messages;
    QVERIFY(m.at(1, 1).Spam);
    QVERIFY(!m.at(1, 1).Delete);
    QVERIFY(!m.at(1, 2).Spam);
    QVERIFY(!m.at(1, 2).Delete);
}

QTEST_GUILESS_MAIN(RulesPageTest)
#include "RulesPageTest.moc"
