#include "rules/Rules.h"
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

private:
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

QTEST_GUILESS_MAIN(RulesFileTest)
#include "RulesFileTest.moc"
