#include "rules/RuleFiles.h"
#include "app/UiScript.h"
#include "app/frmMainEvents.h"
#include "options/IniFile.h"
#include "platform/Controls.h"
#include "support/DiskLimits.h"
#include "support/ScratchFile.h"
#include "support/TestRig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace velmora;

class RuleFilesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void prefixRule_data();
    void prefixRule();
    void renameWritesANewFileAndKeepsTheOld();
    void cancelledRenameChangesNothing();
    void renameOverAnotherFileAsksFirst_data();
    void renameOverAnotherFileAsksFirst();
    void namesLeavingTheFolderAreRefused_data();
    void namesLeavingTheFolderAreRefused();
    void importWidensAccountRules_data();
    void importWidensAccountRules();
    void importWithoutRulesFails_data();
    void importWithoutRulesFails();
    void unwritableCopyLeavesTheOldRules();

private:
    bool run(const QString& lines);
    // The Rules files; the menu style file written at every start is not one.
    QStringList folderEntries() const {
        QStringList entries = QDir(scratch->folder()).entryList(QDir::Files, QDir::Name);
        entries.removeAll(QStringLiteral("frmMain.ini"));
        return entries;
    }

    std::unique_ptr<ScratchFile> scratch;
    std::unique_ptr<TestRig> rig;
};

const QByteArray kRules = "[Rules]\r\nRuleCount=1\r\nShow=1\r\nShowNew=0\r\nTime=30\r\n"
                          "[Rule1]\r\nName=Mine\r\nEnabled=1\r\nAccount=All Accounts\r\n"
                          "Action=2\r\nDescCount=1\r\nDescription1=From Contains bob \r\n";

void RuleFilesTest::init() {
    scratch = std::make_unique<ScratchFile>("Rules.ini");
    QVERIFY(scratch->write(kRules));
    rig = std::make_unique<TestRig>();
    rig->files.programFolder = scratch->folder();
    rig->addAccount(1, "Home");
    rig->settings.set("Settings\\FirstUse", "1");
    QVERIFY(rig->start());
}

bool RuleFilesTest::run(const QString& lines) {
    return rig->runScript("click tbrMainButtons/Rules\n" + lines);
}

void RuleFilesTest::prefixRule_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("prefixed");
    QTest::addColumn<QString>("renamed");
    auto row = [](const char* typed, const char* prefixed, const char* renamed) {
        QTest::newRow(typed) << QString(typed) << QString(prefixed) << QString(renamed);
    };
    row("Rules", "Rules", "Rules.ini");
    row("Rules.ini", "Rules.ini", "Rules.ini");
    row("Bob", "RulesBob", "RulesBob.ini");
    row("RulesBob.ini", "RulesBob.ini", "RulesBob.ini");
    row("MyRules.ini", "RulesMy.ini", "RulesMy.ini");
    row("Bob.INI", "RulesBob.INI", "RulesBob.INI.ini");
    row("rules", "Rulesrules", "Rulesrules.ini");
    row("", "Rules", "Rules.ini");
    // Five "Rules" go, then four "Rule": the sixth and fifth stay.
    row("RulesRulesRulesRulesRulesRulesX", "RulessX", "RulessX.ini");
    row("RuleRuleRuleRuleRuleA", "RulesRuleA", "RulesRuleA.ini");
    // One pass over the text as given; the "Rule" the removal made goes next.
    row("RuRulesles", "Ruless", "Ruless.ini");
}

void RuleFilesTest::prefixRule() {
    QFETCH(QString, typed);
    QFETCH(QString, prefixed);
    QFETCH(QString, renamed);
    QCOMPARE(RulesPrefix(typed), prefixed);
    QCOMPARE(RenamedRulesFile(typed), renamed);
}

void RuleFilesTest::renameWritesANewFileAndKeepsTheOld() {
    QVERIFY(run("set txtRuleName Edited\nrulefile Bob\nclick tbrRules/RulesRename\n"));
    const auto& form = *rig->windows.ruleFile;
    QCOMPARE(form.showings, 1);
    QCOMPARE(form.folder, scratch->folder());
    QCOMPARE(form.currentName, QString("Rules.ini"));
    QVERIFY(form.intro.startsWith("Changing the Rules FileName will allow multiple users"));
    QVERIFY(form.destroyed);
    QCOMPARE(folderEntries(), (QStringList{"Rules.ini", "RulesBob.ini"}));
    QCOMPARE(scratch->read(), kRules);
    QCOMPARE(rig->ctx->options.RulesIniFileName, QString("RulesBob.ini"));
    QCOMPARE(rig->settings.get("Settings\\Options\\RulesIniFileName"), QString("RulesBob.ini"));
    QCOMPARE(rig->view.caption(ctl::lblRulesFileName), QString("FileName: RulesBob.ini"));
    // The unsaved edit went with the rules into the new file.
    IniFile ini(rig->profiles, QString());
    ini.setConfigName(scratch->folder() + "/RulesBob.ini");
    QCOMPARE(ini.KeyGet("Rule1", "Name", ""), QString("Edited"));
    QCOMPARE(rig->ctx->rules.LiveRules[1].Name, QString("Edited"));
}

void RuleFilesTest::cancelledRenameChangesNothing() {
    QVERIFY(run("rulefile cancel\nclick tbrRules/RulesRename\n"));
    QCOMPARE(rig->windows.ruleFile->showings, 1);
    QCOMPARE(folderEntries(), QStringList{"Rules.ini"});
    QCOMPARE(rig->ctx->options.RulesIniFileName, QString("Rules.ini"));
}

void RuleFilesTest::renameOverAnotherFileAsksFirst_data() {
    QTest::addColumn<QString>("answer");
    QTest::newRow("No keeps Bob's rules") << "No";
    QTest::newRow("Yes replaces them") << "Yes";
}

void RuleFilesTest::renameOverAnotherFileAsksFirst() {
    QFETCH(QString, answer);
    const QString bob = scratch->folder() + "/RulesBob.ini";
    const QByteArray bobs = "[Rules]\r\nRuleCount=0\r\n";
    {
        QFile f(bob);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(bobs);
    }
    QVERIFY(run("answer " + answer + "\nrulefile Bob\nclick tbrRules/RulesRename\n"));
    QCOMPARE(rig->boxes.boxes.size(), 1);
    QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - Rules FileName Exists"));
    QFile f(bob);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const bool replaced = answer == "Yes";
    QCOMPARE(f.readAll() == bobs, !replaced);
    QCOMPARE(rig->ctx->options.RulesIniFileName, QString(replaced ? "RulesBob.ini" : "Rules.ini"));
}

void RuleFilesTest::namesLeavingTheFolderAreRefused_data() {
    QTest::addColumn<QString>("typed");
    QTest::newRow("parent") << "../../etc/passwd";
    QTest::newRow("slash") << "a/b";
    QTest::newRow("backslash") << "a\\b";
    QTest::newRow("dots") << "..";
}

void RuleFilesTest::namesLeavingTheFolderAreRefused() {
    QFETCH(QString, typed);
    const QDir parent = QFileInfo(scratch->folder()).dir();
    const QStringList before = parent.entryList(QDir::Files);
    QVERIFY(run("rulefile " + typed + "\nclick tbrRules/RulesRename\n"));
    QCOMPARE(rig->boxes.boxes.size(), 1);
    QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - Rules FileName Error"));
    QVERIFY(rig->boxes.boxes[0].text.contains("'" + typed + "'"));
    QCOMPARE(folderEntries(), QStringList{"Rules.ini"});
    QCOMPARE(parent.entryList(QDir::Files), before);
    QCOMPARE(rig->ctx->options.RulesIniFileName, QString("Rules.ini"));
    QCOMPARE(rig->settings.get("Settings\\Options\\RulesIniFileName"), QString());
}

void RuleFilesTest::importWidensAccountRules_data() {
    QTest::addColumn<QString>("secondAccount");
    QTest::addColumn<bool>("widened");
    QTest::newRow("an account's rule") << "Work" << true;
    QTest::newRow("all for all accounts") << "All Accounts" << false;
}

void RuleFilesTest::importWidensAccountRules() {
    QFETCH(QString, secondAccount);
    QFETCH(bool, widened);
    ScratchFile elsewhere("Backup.ini");
    QVERIFY(elsewhere.write("[Rules]\r\nRuleCount=2\r\n[Rule1]\r\nName=One\r\nDescCount=1\r\n"
                            "Description1=Subject Contains win\r\n[Rule2]\r\nName=Two\r\n"
                            "Account=" +
                            secondAccount.toUtf8() +
                            "\r\nDescCount=1\r\nDescription1=Size GreaterThan 5\r\n"));
    QVERIFY(run("file " + elsewhere.path() + "\nclick tbrRules/RulesImport\n"));
    const ScriptedDialogs::Request asked = rig->headless.dialogs.requests.value(0);
    QCOMPARE(asked.kind, QString("open"));
    QCOMPARE(asked.filter, QString("(*.ini)"));
    QCOMPARE(asked.initialPath, scratch->folder());

    QCOMPARE(folderEntries(), (QStringList{"Rules.ini", "RulesBackup.ini"}));
    QCOMPARE(scratch->read(), kRules);
    QCOMPARE(rig->ctx->options.RulesIniFileName, QString("RulesBackup.ini"));
    QCOMPARE(rig->settings.get("Settings\\Options\\RulesIniFileName"), QString("RulesBackup.ini"));
    const RuleSet& live = rig->ctx->rules.LiveRules;
    QCOMPARE(live.RuleCount, 2);
    QCOMPARE(live[2].Account, QString("All Accounts"));
    QCOMPARE(rig->ctx->rules.WorkingRules[2].Account, QString("All Accounts"));
    IniFile ini(rig->profiles, QString());
    ini.setConfigName(scratch->folder() + "/RulesBackup.ini");
    QCOMPARE(ini.KeyGet("Rule2", "Account", ""), QString("All Accounts"));
    QCOMPARE(rig->view.items(ctl::lstRules), (QStringList{"One", "Two"}));

    QCOMPARE(rig->boxes.boxes.size(), 1);
    const RecordedBoxes::Box box = rig->boxes.boxes[0];
    QCOMPARE(box.title, QString("Velmora - Rule Import Successful"));
    QString text = "The Rule File has been successfully imported.          \r\n\r\n";
    if (widened)
        text += "Some Account modifications were made to\r\n"
                "ensure compatibility with your current Accounts.\r\n"
                "You may need to adjust these.\r\n\r\n";
    QCOMPARE(box.text, text);
}

void RuleFilesTest::importWithoutRulesFails_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no rules") << QByteArray("[Rules]\r\nRuleCount=0\r\n");
    QTest::newRow("not a number") << QByteArray("[Rules]\r\nRuleCount=many\r\n");
    QTest::newRow("not a Rules file") << QByteArray("Dear Sir,\n");
}

void RuleFilesTest::importWithoutRulesFails() {
    QFETCH(QByteArray, content);
    ScratchFile elsewhere("Other.ini");
    QVERIFY(elsewhere.write(content));
    QVERIFY(run("file " + elsewhere.path() + "\nclick tbrRules/RulesImport\n"));
    QCOMPARE(rig->boxes.boxes.size(), 1);
    QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - Rule Import Failed"));
    QCOMPARE(rig->boxes.boxes[0].text,
             QString("Rule Import Failed.\r\n\r\nThe Imported Rule File does not appear "
                     "          \r\nto be the correct format or it does not\r\n"
                     "contain any Rules.\r\n\r\nTry Help for further information.\r\n"));
    QCOMPARE(elsewhere.read(), content);
    QCOMPARE(folderEntries(), QStringList{"Rules.ini"});
    QCOMPARE(rig->ctx->rules.LiveRules[1].Name, QString("Mine"));
}

// The imported rules cannot be written: the box says so, and the file and
// the rules in use stay the old ones.
void RuleFilesTest::unwritableCopyLeavesTheOldRules() {
    ScratchFile elsewhere("Backup.ini");
    QVERIFY(elsewhere.write("[Rules]\r\nRuleCount=1\r\n[Rule1]\r\nName=Imported\r\n"));
    rig->headless.dialogs.fileAnswers.append(elsewhere.path());
    {
        FileSizeLimit full(8);
        ImportRules(*rig->ctx);
    }
    QCOMPARE(rig->boxes.boxes.size(), 1);
    QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - File Not Saved"));
    QVERIFY(rig->boxes.boxes[0].text.contains(scratch->folder() + "/RulesBackup.ini"));
    QCOMPARE(folderEntries(), QStringList{"Rules.ini"});
    QCOMPARE(rig->ctx->options.RulesIniFileName, QString("Rules.ini"));
    QCOMPARE(rig->settings.get("Settings\\Options\\RulesIniFileName"), QString("Rules.ini"));
    QCOMPARE(rig->view.caption(ctl::lblRulesFileName), QString("FileName: Rules.ini"));
    QCOMPARE(rig->ctx->rules.LiveRules[1].Name, QString("Mine"));
    QCOMPARE(rig->view.items(ctl::lstRules), QStringList{"Mine"});
}

QTEST_GUILESS_MAIN(RuleFilesTest)
#include "RuleFilesTest.moc"
