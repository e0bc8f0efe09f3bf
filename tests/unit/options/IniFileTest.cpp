#include "options/IniFile.h"
#include "platform/qt/IniProfileFiles.h"

#include "support/ScratchFile.h"

#include <QtTest>

using namespace velmora;

class IniFileTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void notApplicableKeepsTheStoredPart();
    void longValuesComeBackWhole_data();
    void longValuesComeBackWhole();
    void writeKeepsForeignLinesInOrder();
    void unwritableFolderFailsInSilence();
    void readsSeeWhatOthersWrite();

private:
    std::unique_ptr<ScratchFile> scratch;
    IniProfileFiles profiles;
};

void IniFileTest::init() {
    scratch = std::make_unique<ScratchFile>("Rules.ini");
}

void IniFileTest::notApplicableKeepsTheStoredPart() {
    IniFile ini(profiles, "/elsewhere");
    QCOMPARE(ini.ConfigName(), QString("/elsewhere"));
    ini.setConfigName(scratch->path());
    ini.setSection("Menu");
    ini.KeySave("4", "NA", "MenuStyle");
    QCOMPARE(scratch->read(), QByteArray("[Menu]\r\nMenuStyle=4\r\n"));
    QCOMPARE(ini.KeyGet("NA", "Missing", "d"), QString("d"));
    // Both "NA": the same key again, with the new default.
    QCOMPARE(ini.KeyGet("NA", "NA", "x"), QString("x"));
    QCOMPARE(ini.KeyGet("menu", "menustyle", "x"), QString("4"));
    ini.KeySave("NA", "NA", "Other");
    QCOMPARE(ini.KeyGet("Menu", "Other", ""), QString("4"));
}

void IniFileTest::longValuesComeBackWhole_data() {
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("back");
    QTest::newRow("255") << 255 << 255;
    QTest::newRow("300") << 300 << 300;
    QTest::newRow("2047") << 2047 << 2047;
    QTest::newRow("3000 is cut") << 3000 << 2047;
}

void IniFileTest::longValuesComeBackWhole() {
    QFETCH(int, length);
    QFETCH(int, back);
    IniFile ini(profiles, scratch->path());
    const QString value = QString::fromUtf8("é") + QString(length - 1, QChar('v'));
    ini.KeySave(value, "Rule1", "Name");
    QCOMPARE(ini.KeyGet("Rule1", "Name", ""), value.left(back));
}

void IniFileTest::writeKeepsForeignLinesInOrder() {
    QVERIFY(
        scratch->write("; made by hand\r\n[Rules]\r\nRuleCount = 1 \r\nno equals sign here\r\n\r\n"
                       "[rule1]\r\nName=Old\r\n"));
    IniFile ini(profiles, scratch->path());
    QCOMPARE(ini.KeyGet("Rules", "RuleCount", ""), QString("1"));
    ini.KeySave("New", "Rule1", "Name");
    ini.KeySave("1", "RULE1", "Enabled");
    ini.KeySave("0", "Rules", "Show");
    ini.KeySave("x", "Rule2", "Name");
    QCOMPARE(scratch->read(),
             QByteArray("; made by hand\r\n[Rules]\r\nRuleCount = 1 \r\n"
                        "no equals sign here\r\nShow=0\r\n\r\n"
                        "[rule1]\r\nName=New\r\nEnabled=1\r\n[Rule2]\r\nName=x\r\n"));
}

void IniFileTest::unwritableFolderFailsInSilence() {
    // A file stands where the folder should be.
    QVERIFY(scratch->write("x"));
    IniFile ini(profiles, scratch->path() + "/inside.ini");
    ini.KeySave("1", "Rules", "RuleCount");
    QCOMPARE(scratch->read(), QByteArray("x"));
    QCOMPARE(ini.KeyGet("Rules", "RuleCount", "0"), QString("0"));
}

// The file is kept between reads, yet a change made by another program
// shows at the next one; of two sections of one name the first counts.
void IniFileTest::readsSeeWhatOthersWrite() {
    QVERIFY(scratch->write("[A]\r\nk=1\r\n[Ä]\r\nk=5\r\n[a]\r\nk=2\r\n"));
    IniFile ini(profiles, scratch->path());
    QCOMPARE(ini.KeyGet("a", "k", ""), QString("1"));
    QCOMPARE(ini.KeyGet(QString::fromUtf8("ä"), "k", ""), QString("5"));
    QVERIFY(scratch->write("[B]\r\nk=3\r\n[a]\r\nk=4\r\n"));
    QCOMPARE(ini.KeyGet("A", "k", ""), QString("4"));
    QCOMPARE(ini.KeyGet("b", "K", ""), QString("3"));
    QVERIFY(QFile::remove(scratch->path()));
    QCOMPARE(ini.KeyGet("A", "k", "gone"), QString("gone"));
}

QTEST_GUILESS_MAIN(IniFileTest)
#include "IniFileTest.moc"
