#include "rules/Rules.h"
#include "support/DiskLimits.h"
#include "support/ScratchFile.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class RulesFileTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void exampleFileRoundTripsAndLosesDeletedRules();
    void attachmentEntryKeepsOneBlank();
    void countWithoutSectionGivesDefaultRule();
    void missingFileIsAnEmptySet();
    void failedSaveKeepsTheOldFile();
    void unreadableFileIsPutAside_data();
    void unreadableFileIsPutAside();
    void countsOutOfRangeKeepWhatCanBeRead_data();
    void countsOutOfRangeKeepWhatCanBeRead();
    void thousandRulesSaveAtOnce();
    void handEditedFileKeptAsBak();

private:
    // n rules of ten entries each in the working set.
    static void MakeRules(AppContext& ctx, int n);
    QStringList folderEntries() const {
        // The menu style file is written beside the Rules at every start.
        QStringList entries = QDir(scratch->folder()).entryList(QDir::Files | QDir::Hidden);
        entries.removeAll(QStringLiteral("frmMain.ini"));
        return entries;
    }

    std::unique_ptr<ScratchFile> scratch;
    std::unique_ptr<TestRig> rig;
};

const QByteArray kExample = "[Rules]\r\nRuleCount=2\r\nShow=1\r\nShowNew=0\r\nTime=30\r\n"
                            "[Rule1]\r\nName=Rule1\r\nEnabled=1\r\nAccount=All Accounts\r\n"
                            "Action=2\r\nDescCount=2\r\n"
                            "Description1=Subject Contains free offer \r\n"
                            "Description2=OR From Contains bob \r\n"
                            "[Rule2]\r\nName=Big mail\r\nEnabled=0\r\nAccount=Home\r\nAction=1\r\n"
                            "DescCount=1\r\nDescription1=Size GreaterThan 5000 \r\n";

void RulesFileTest::init() {
    scratch = std::make_unique<ScratchFile>("Rules.ini");
    rig = std::make_unique<TestRig>();
    rig->files.programFolder = scratch->folder();
}

void RulesFileTest::exampleFileRoundTripsAndLosesDeletedRules() {
    QVERIFY(scratch->write(kExample));
    QVERIFY(rig->start());
    AppContext& ctx = *rig->ctx;
    QCOMPARE(ctx.rules.LiveRules.RuleCount, 2);
    QCOMPARE(ctx.rules.LiveRules[1].Description[2], QString("OR From Contains bob "));
    QCOMPARE(ctx.rules.LiveRules[1].Description[0],
             QString("Subject Contains free offer OR From Contains bob "));
    QCOMPARE(ctx.rules.WorkingRules[2].Name, QString("Big mail"));
    QCOMPARE(ctx.rules.WorkingRules[2].RedoCount, 1);
    QCOMPARE(ctx.rules.CurrentRule, 1);
    QCOMPARE(rig->view.caption("lblRulesFileName"), QString("FileName: Rules.ini"));

    QFile::remove(scratch->path());
    WriteRules(ctx, scratch->path());
    QCOMPARE(scratch->read(), kExample);
    QVERIFY(!QFile::exists(scratch->path() + ".new"));

    // A deleted rule leaves no section behind.
    ctx.rules.WorkingRules.RuleCount = 1;
    ctx.rules.WorkingRules[1].Name = QString::fromUtf8("Spam «à la carte»");
    WriteRules(ctx, scratch->path());
    QVERIFY(!scratch->read().contains("[Rule2]"));
    ReadRules(ctx, scratch->path());
    QCOMPARE(ctx.rules.LiveRules.RuleCount, 1);
    QCOMPARE(ctx.rules.LiveRules[1].Name, QString::fromUtf8("Spam «à la carte»"));
}

void RulesFileTest::attachmentEntryKeepsOneBlank() {
    QVERIFY(scratch->write("[Rules]\r\nRuleCount=1\r\n[Rule1]\r\nDescCount=1\r\n"
                           "Description1=Attachment IsPresent  \r\n"));
    QVERIFY(rig->start());
    QCOMPARE(rig->ctx->rules.LiveRules[1].Description[1], QString("Attachment IsPresent "));
    WriteRules(*rig->ctx, scratch->path());
    QVERIFY(scratch->read().contains("Description1=Attachment IsPresent \r\n"));
}

void RulesFileTest::countWithoutSectionGivesDefaultRule() {
    QVERIFY(scratch->write("[Rules]\r\nRuleCount=1\r\n"));
    QVERIFY(rig->start());
    const Rule& r = rig->ctx->rules.LiveRules[1];
    QCOMPARE(r.Name, QString("Rule"));
    QCOMPARE(r.Enabled, 1);
    QCOMPARE(r.Account, QString("All Accounts"));
    QCOMPARE(r.Action, 2);
    QCOMPARE(r.DescCount, 0);
    QCOMPARE(rig->ctx->rules.LiveRules.Time, 30);
}

void RulesFileTest::missingFileIsAnEmptySet() {
    QVERIFY(rig->start());
    const RuleSet& live = rig->ctx->rules.LiveRules;
    QCOMPARE(live.RuleCount, 0);
    QCOMPARE(live.Show, 0);
    QCOMPARE(live.ShowNew, 0);
    QCOMPARE(live.Time, 30);
    QCOMPARE(rig->ctx->rules.CurrentRule, 0);
    QVERIFY(!QFile::exists(scratch->path()));
}

void RulesFileTest::MakeRules(AppContext& ctx, int n) {
    RuleSet& working = ctx.rules.WorkingRules;
    working.RuleCount = n;
    working.rules.resize(n + 1);
    for (int r = 1; r <= n; ++r) {
        Rule& rule = working[r];
        rule.Name = QStringLiteral("Rule number %1").arg(r);
        rule.Enabled = r % 2;
        rule.Account = "All Accounts";
        rule.Action = 1 + r % 3;
        rule.DescCount = MaxRuleEntries;
        for (int m = 1; m <= MaxRuleEntries; ++m)
            rule.Description[m] = QStringLiteral("%1Subject Contains offer %2-%3 ")
                                      .arg(m == 1 ? "" : "OR ")
                                      .arg(r)
                                      .arg(m);
    }
}

// A full disk once left half the rules behind, the last cut mid-rule.
void RulesFileTest::failedSaveKeepsTheOldFile() {
    QVERIFY(scratch->write(kExample));
    QVERIFY(rig->start());
    AppContext& ctx = *rig->ctx;
    MakeRules(ctx, 300);
    {
        FileSizeLimit full(4096);
        WriteRules(ctx, scratch->path());
    }
    QCOMPARE(scratch->read(), kExample);
    QCOMPARE(folderEntries(), QStringList{"Rules.ini"});
    QCOMPARE(rig->boxes.boxes.size(), 1);
    const RecordedBoxes::Box box = rig->boxes.boxes[0];
    QCOMPARE(box.title, QString("Velmora - File Not Saved"));
    QVERIFY2(box.text.contains(scratch->path() + "\r\n"), qPrintable(box.text));
    QVERIFY2(box.text.contains("File too large"), qPrintable(box.text));
    // The rules in force are the ones the user saved, file or not.
    QCOMPARE(ctx.rules.LiveRules.RuleCount, 300);
}

void RulesFileTest::unreadableFileIsPutAside_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason"); // blank: the file is read as it is
    QTest::newRow("binary") << QByteArray("\x7f"
                                          "ELF\x02\x01\x01\0\0\0",
                                          10)
                            << "binary data";
    QTest::newRow("a letter, not rules")
        << QByteArray("Dear Sir,\nplease find enclosed\n") << "no [Section] lines";
    QTest::newRow("another profile file")
        << QByteArray("[Menu]\r\nMenuStyle=4\r\n") << "no [Rules] section";
    QTest::newRow("section not closed")
        << QByteArray("[Rules\r\nRuleCount=1\r\n") << "line 1 opens a section";
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("comments only") << QByteArray("; nothing yet\r\n\r\n") << "";
    QTest::newRow("byte order mark first") << QByteArray("\xEF\xBB\xBF[Rules]\r\nShow=1\r\n") << "";
}

void RulesFileTest::unreadableFileIsPutAside() {
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    QVERIFY(scratch->write(text));
    QVERIFY(rig->start());
    QCOMPARE(rig->ctx->rules.LiveRules.RuleCount, 0);
    if (reason.isEmpty()) {
        QCOMPARE(rig->boxes.boxes.size(), 0);
        QCOMPARE(folderEntries(), QStringList{"Rules.ini"});
        return;
    }
    const QStringList entries = folderEntries();
    QCOMPARE(entries.size(), 1);
    QVERIFY2(entries[0].startsWith("Rules.ini.unreadable-20"), qPrintable(entries[0]));
    const QString aside = scratch->folder() + '/' + entries[0];
    QFile kept(aside);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), text);
    QCOMPARE(rig->boxes.boxes.size(), 1);
    const RecordedBoxes::Box box = rig->boxes.boxes[0];
    QCOMPARE(box.title, QString("Velmora - File Could Not Be Read"));
    QVERIFY2(box.text.startsWith(scratch->path() + " could not be read; it was kept as " +
                                 entries[0] + " beside it."),
             qPrintable(box.text));
    QVERIFY2(box.text.contains(reason), qPrintable(box.text));

    // The next save makes a new file and leaves the one put aside alone.
    MakeRules(*rig->ctx, 1);
    WriteRules(*rig->ctx, scratch->path());
    QVERIFY(scratch->read().startsWith("[Rules]\r\nRuleCount=1\r\n"));
    kept.seek(0);
    QCOMPARE(kept.readAll(), text);
}

// A count out of range used to drop every rule or entry it counted.
void RulesFileTest::countsOutOfRangeKeepWhatCanBeRead_data() {
    QTest::addColumn<QString>("ruleCount");
    QTest::addColumn<QString>("descCount");
    QTest::addColumn<int>("rules");
    QTest::addColumn<int>("entries");
    QTest::addColumn<QString>("line"); // blank: no box
    const QString rules = "[Rules] RuleCount=%1: 2 rules were read";
    const QString entries = "[Rule1] DescCount=%1: 3 entries were read";
    auto row = [](const char* name, const char* ruleCount, const char* descCount, int ruleRows,
                  int entryRows, const QString& line) {
        QTest::newRow(name) << QString(ruleCount) << QString(descCount) << ruleRows << entryRows
                            << line;
    };
    row("in range", "2", "3", 2, 3, "");
    row("more rules than sections", "3", "3", 3, 3, "");
    row("negative rule count", "-3", "3", 2, 3, rules.arg(-3));
    row("rule count past 16 bits", "100000", "3", 2, 3, rules.arg(100000));
    row("rule count no number", "many", "3", 2, 3, rules.arg("many"));
    row("entry count past 16 bits", "2", "100000", 2, 3, entries.arg(100000));
    row("negative entry count", "2", "-1", 2, 3, entries.arg(-1));
    row("entry count past ten", "2", "11", 2, 3, entries.arg(11));
}

void RulesFileTest::countsOutOfRangeKeepWhatCanBeRead() {
    QFETCH(QString, ruleCount);
    QFETCH(QString, descCount);
    QFETCH(int, rules);
    QFETCH(int, entries);
    QFETCH(QString, line);
    QVERIFY(scratch->write(QStringLiteral("[Rules]\r\nRuleCount=%1\r\n"
                                          "[Rule1]\r\nName=First\r\nDescCount=%2\r\n"
                                          "Description1=From Contains a \r\n"
                                          "Description2=OR From Contains b \r\n"
                                          "Description3=OR From Contains c \r\n"
                                          "[Rule2]\r\nName=Second\r\n")
                               .arg(ruleCount, descCount)
                               .toUtf8()));
    QVERIFY(rig->start());
    const RuleSet& live = rig->ctx->rules.LiveRules;
    QCOMPARE(live.RuleCount, rules);
    QCOMPARE(live[1].Name, QString("First"));
    QCOMPARE(live[2].Name, QString("Second"));
    QCOMPARE(live[1].DescCount, entries);
    QCOMPARE(live[1].Description[3], QString("OR From Contains c "));
    if (line.isEmpty()) {
        QCOMPARE(rig->boxes.boxes.size(), 0);
        return;
    }
    QCOMPARE(rig->boxes.boxes.size(), 1);
    QCOMPARE(rig->boxes.boxes[0].title, QString("Velmora - Rules File Counts"));
    QVERIFY2(rig->boxes.boxes[0].text.contains(scratch->path() + "\r\n\r\n" + line + "\r\n"),
             qPrintable(rig->boxes.boxes[0].text));
}

// Each key once rewrote the whole file: 1000 rules took seconds.
void RulesFileTest::thousandRulesSaveAtOnce() {
    QVERIFY(rig->start());
    AppContext& ctx = *rig->ctx;
    MakeRules(ctx, 1000);
    QElapsedTimer clock;
    clock.start();
    WriteRules(ctx, scratch->path());
    const qint64 took = clock.elapsed();
    qInfo("1000 rules of 10 entries saved in %lld ms", took);
    QVERIFY2(took < 500, qPrintable(QString::number(took)));
    QCOMPARE(rig->boxes.boxes.size(), 0);
    ReadRules(ctx, scratch->path());
    QCOMPARE(ctx.rules.LiveRules.RuleCount, 1000);
    QCOMPARE(ctx.rules.LiveRules[1000].Description[10],
             QString("OR Subject Contains offer 1000-10 "));
}

// The file is written anew, which loses what a person added by hand: the
// old file is kept once as Rules.ini.bak.
void RulesFileTest::handEditedFileKeptAsBak() {
    const QByteArray edited = "; rules for the family account\r\n" + kExample;
    QVERIFY(scratch->write(edited));
    QVERIFY(rig->start());
    WriteRules(*rig->ctx, scratch->path());
    QCOMPARE(scratch->read(), kExample);
    QFile backup(scratch->path() + ".bak");
    QVERIFY(backup.open(QIODevice::ReadOnly));
    QCOMPARE(backup.readAll(), edited);
    // Nothing made by hand is left, so the next save keeps the backup.
    rig->ctx->rules.WorkingRules.RuleCount = 1;
    WriteRules(*rig->ctx, scratch->path());
    backup.seek(0);
    QCOMPARE(backup.readAll(), edited);
    QCOMPARE(rig->boxes.boxes.size(), 0);
}

QTEST_GUILESS_MAIN(RulesFileTest)
#include "RulesFileTest.moc"
