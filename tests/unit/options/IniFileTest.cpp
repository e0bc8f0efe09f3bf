#include "options/IniFile.h"
#include "platform/qt/IniProfileFiles.h"

#include "support/ScratchFile.h"

#include <QtTest>

#include <malloc.h>

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
    void largeFileCostsAboutItsSize();
    void leadingByteOrderMarkStays_data();
    void leadingByteOrderMarkStays();

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

// A 50 MB Rules file once took 743 MB to read: a string for every line.
void IniFileTest::largeFileCostsAboutItsSize() {
#if defined(__SANITIZE_ADDRESS__)
    QSKIP("the sanitizer's allocator does not count as malloc does");
#endif
    QByteArray text = "[Rules]\r\nRuleCount=1\r\n";
    for (int n = 0; text.size() < 20'000'000; ++n)
        text += "[Rule" + QByteArray::number(n) + "]\r\nName=x\r\n" +
                "Description1=From Contains someone@example.com \r\n";
    text += "[Last]\r\nKey=found\r\n";
    QVERIFY(scratch->write(text));
    const auto allocated = [] {
        const struct mallinfo2 info = mallinfo2();
        return qint64(info.uordblks + info.hblkhd);
    };
    const qint64 before = allocated();
    IniFile ini(profiles, scratch->path());
    QCOMPARE(ini.KeyGet("last", "key", ""), QString("found"));
    QCOMPARE(ini.KeyGet("Rule1000", "Name", ""), QString("x"));
    const qint64 held = allocated() - before;
    qInfo("%lld bytes held for a file of %lld", held, qint64(text.size()));
    QVERIFY2(held < text.size() * 3 / 2, qPrintable(QString::number(held)));
}

// Found by fuzzing: a value or key read on its own lost a U+FEFF it began
// with, as if it were the mark at the start of a file.
void IniFileTest::leadingByteOrderMarkStays_data() {
    QTest::addColumn<bool>("anew");
    QTest::newRow("a key at a time") << false;
    QTest::newRow("written anew") << true;
}

void IniFileTest::leadingByteOrderMarkStays() {
    QFETCH(bool, anew);
    const QString mark(1, QChar(0xFEFF));
    IniFile ini(profiles, scratch->path());
    if (anew)
        ini.StartNew();
    ini.KeySave(mark + "name", "Rule1", "Name");
    ini.KeySave("x", "Rule1", mark + "Key");
    QVERIFY(ini.CommitNew());
    QCOMPARE(ini.KeyGet("Rule1", "Name", ""), mark + "name");
    QCOMPARE(ini.KeyGet("Rule1", mark + "Key", ""), QString("x"));
}

QTEST_GUILESS_MAIN(IniFileTest)
#include "IniFileTest.moc"
