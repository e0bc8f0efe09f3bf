#include "accounts/AccountStore.h"
#include "platform/qt/QtSettingsStore.h"
#include "support/FakeFiles.h"
#include "support/SandboxEnvironment.h"

#include <QtTest>

using namespace velmora;

class AccountStoreTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void everyFieldRoundTripsThroughTheSettingsFile_data();
    void everyFieldRoundTripsThroughTheSettingsFile();
    void emptyStoreGivesTheDefaults();
    void resizeKeepsRowsAndForgetsIncomplete();
    void placeholderRowAndWorkingCopy();
    void clientAndSoundValidity_data();
    void clientAndSoundValidity();

private:
    std::unique_ptr<SandboxEnvironment> sandbox;
};

void AccountStoreTest::initTestCase() {
    sandbox = std::make_unique<SandboxEnvironment>();
}

void AccountStoreTest::everyFieldRoundTripsThroughTheSettingsFile_data() {
    QTest::addColumn<QString>("text");
    // The store's own escapes are SettingsFileTest's; these are the texts an
    // account's fields could lose on the way.
    QTest::newRow("plain") << "pop.example.com";
    QTest::newRow("blanks around") << "  pass word  ";
    QTest::newRow("backslashes and brackets") << R"(C:\Mail\[x]=y;#z)";
    QTest::newRow("empty") << "";
    QTest::newRow("long") << QString(3000, QChar('x')) + "end";
}

// Written through the real settings file, then read back from a copy of
// that file, so the text passes the file format both ways. Account 1 beside
// it keeps keys of its own.
void AccountStoreTest::everyFieldRoundTripsThroughTheSettingsFile() {
    QFETCH(QString, text);
    AccountStore written;
    written.ResizeAccounts(10);
    Account& a = written[10];
    a.AcntEnabled = 0;
    a.AcntName = a.AcntServer = a.AcntPort = a.AcntLoginID = a.AcntPassword = text;
    a.AcntClient = a.AcntSound = text;
    a.AcntSecure = 1;
    a.AcntColour = 16777215;
    a.AcntColourIndex = 6;
    a.AcntSoundOn = 0;
    written[1].AcntName = "One";
    QtSettingsStore store;
    written.SaveAccountFields(store, 1);
    written.SaveAccountFields(store, 10);

    const QString copy = sandbox->root() + "/copy.conf";
    QFile::remove(copy);
    QVERIFY(QFile::copy(QtSettingsStore::FileName("Kestrum\\Velmora"), copy));
    QtSettingsStore fromCopy(copy);
    AccountStore read;
    read.ResizeAccounts(10);
    read.LoadAccount(fromCopy, 1);
    read.LoadAccount(fromCopy, 10);
    QCOMPARE(read[1].AcntName, QString("One"));
    QCOMPARE(fromCopy.GetSetting("Kestrum\\Velmora", "Settings", "AcntNum", "0"), QString("0"));

    const Account& b = read[10];
    for (const AccountStore::Field& f : AccountStore::fields()) {
        if (f.acntText)
            QCOMPARE(b.*f.acntText, a.*f.acntText);
        else
            QCOMPARE(b.*f.acntNumber, a.*f.acntNumber);
    }
}

void AccountStoreTest::emptyStoreGivesTheDefaults() {
    QtSettingsStore store(sandbox->root() + "/empty.conf");
    AccountStore acc;
    acc.ResizeAccounts(3);
    acc.LoadAccount(store, 3);
    QCOMPARE(acc[3].AcntEnabled, 1);
    QCOMPARE(acc[3].AcntName, QString("New Account"));
    QCOMPARE(acc[3].AcntServer, QString());
    QCOMPARE(acc[3].AcntPort, QString("110"));
    QCOMPARE(acc[3].AcntColour, 255);
    QCOMPARE(acc[3].AcntColourIndex, 5);
    QCOMPARE(acc[3].AcntSoundOn, 1);
    QVERIFY(!QFile::exists(sandbox->root() + "/empty.conf"));
}

void AccountStoreTest::resizeKeepsRowsAndForgetsIncomplete() {
    AccountStore acc;
    acc.ResizeAccounts(2);
    acc[2].AcntName = "Work";
    acc[2].AcntMsgCount = 7;
    acc[2].AcntIncomplete = true;
    acc.ResizeAccounts(3);
    QCOMPARE(acc[2].AcntName, QString("Work"));
    QCOMPARE(acc[2].AcntMsgCount, 7);
    QVERIFY(!acc[2].AcntIncomplete);
    QCOMPARE(acc[3].AcntName, QString());
    acc.ResizeAccounts(1);
    acc.ResizeAccounts(2);
    QCOMPARE(acc[2].AcntName, QString());
}

void AccountStoreTest::placeholderRowAndWorkingCopy() {
    AccountStore acc;
    acc.ResizeAccounts(1);
    acc.BlankAccountRow();
    QCOMPARE(acc[0].AcntPort, QString()); // blank, unlike a new account's "110"
    QCOMPARE(acc[0].AcntColour, 255);
    QCOMPARE(acc[0].AcntColourIndex, 5);
    QCOMPARE(acc[0].AcntSoundOn, 1);

    acc[1].AcntName = "Home";
    acc[1].AcntPassword = " secret ";
    acc[1].AcntColour = 65280;
    acc.CopyAccountToEdit(1);
    QCOMPARE(acc.edit(1).EditName, QString("Home"));
    QCOMPARE(acc.edit(1).EditPassword, QString(" secret "));
    QCOMPARE(acc.edit(1).EditColour, 65280);
}

void AccountStoreTest::clientAndSoundValidity_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<bool>("valid");
    auto row = [](const char* name, const char* path, const char* extension, bool exists,
                  bool valid) {
        QTest::newRow(name) << path << extension << exists << valid;
    };
    row("wav", "/snd/new.wav", ".wav", true, true);
    row("capitals count", "/snd/NEW.WAV", ".wav", true, true);
    row("missing file", "/snd/new.wav", ".wav", false, false);
    row("wrong ending", "/snd/new.wav.txt", ".wav", true, false);
    row("blank", "", ".exe", false, false);
}

void AccountStoreTest::clientAndSoundValidity() {
    QFETCH(QString, path);
    QFETCH(QString, extension);
    QFETCH(bool, exists);
    QFETCH(bool, valid);
    FakeFiles files;
    if (exists)
        files.existing.insert(path);
    QCOMPARE(IsValidFile(files, path, extension), valid);
}

QTEST_GUILESS_MAIN(AccountStoreTest)
#include "AccountStoreTest.moc"
