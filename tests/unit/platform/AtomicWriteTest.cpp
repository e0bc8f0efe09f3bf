#include "platform/qt/AtomicWrite.h"
#include "platform/qt/LocalFiles.h"
#include "support/DiskLimits.h"
#include "support/SandboxEnvironment.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// The one writer every file of the user's goes through.
class AtomicWriteTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void failedWriteLeavesTheOldFile_data();
    void failedWriteLeavesTheOldFile();
    void filesAndFoldersArePrivateWhateverTheUmask();
    void putAsideNeverOverwrites();
    void staleTemporaries_data();
    void staleTemporaries();
    void startTidiesOnlyWhenAlone();

private:
    std::unique_ptr<SandboxEnvironment> sandbox;
};

void AtomicWriteTest::initTestCase() {
    sandbox = std::make_unique<SandboxEnvironment>();
}

QByteArray Read(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

// A full disk part-way through: small writes once failed unseen at the
// flush, large ones as a short count.
void AtomicWriteTest::failedWriteLeavesTheOldFile_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("limit");
    QTest::newRow("cut inside Qt's write buffer") << 5000 << 1000;
    QTest::newRow("cut past Qt's write buffer") << 200000 << 50000;
    QTest::newRow("not one byte fits") << 500 << 0;
}

void AtomicWriteTest::failedWriteLeavesTheOldFile() {
    QFETCH(int, size);
    QFETCH(int, limit);
    QTemporaryDir dir;
    const QString path = dir.filePath("Rules.ini");
    const QByteArray old = "[Rules]\r\nRuleCount=0\r\n";
    QCOMPARE(WriteFileAtomically(path, old), QString());
    QString reason;
    {
        FileSizeLimit full(rlim_t(limit + 0));
        reason = WriteFileAtomically(path, QByteArray(size, 'x'));
    }
    QVERIFY2(reason.contains("too large", Qt::CaseInsensitive), qPrintable(reason));
    QCOMPARE(Read(path), old);
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"Rules.ini"});
    // Room again: the same write goes through.
    QCOMPARE(WriteFileAtomically(path, QByteArray(size, 'x')), QString());
    QCOMPARE(Read(path).size(), size);
}

void AtomicWriteTest::filesAndFoldersArePrivateWhateverTheUmask() {
    QTemporaryDir dir;
    QVERIFY(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner |
                                                  QFile::ExeOwner | QFile::ReadOther |
                                                  QFile::ExeOther));
    UmaskScope open(0);
    const QString file = dir.filePath("a/b/Velmora.conf");
    QCOMPARE(WriteFileAtomically(file, "secret"), QString());
    QCOMPARE(ModeOf(QFile::encodeName(file)), 0600);
    QCOMPARE(ModeOf(QFile::encodeName(dir.filePath("a/b"))), 0700);
    QCOMPARE(ModeOf(QFile::encodeName(dir.filePath("a"))), 0700);
    // A folder that was there keeps its mode; a file we replace is ours.
    QCOMPARE(ModeOf(QFile::encodeName(dir.path())), 0705);
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    QCOMPARE(WriteFileAtomically(file, "secret 2"), QString());
    QCOMPARE(ModeOf(QFile::encodeName(file)), 0600);

    // The temporary message folder too.
    LocalFiles files(dir.path());
    QCOMPARE(ModeOf(QFile::encodeName(files.TempFolder())), 0700);
    QCOMPARE(ModeOf(QFile::encodeName(files.ProgramFolder())), 0700);
}

void AtomicWriteTest::putAsideNeverOverwrites() {
    QTemporaryDir dir;
    const QString path = dir.filePath("Velmora.conf");
    const QDateTime when(QDate(2024, 3, 5), QTime(7, 8, 9));
    QStringList kept;
    for (const QByteArray text : {"first", "second"}) {
        QCOMPARE(WriteFileAtomically(path, text), QString());
        kept << PutAsideUnreadable(path, when, nullptr);
    }
    QCOMPARE(kept, QStringList({path + ".unreadable-20240305-070809",
                                path + ".unreadable-20240305-070809-2"}));
    QCOMPARE(Read(kept[0]), QByteArray("first"));
    QCOMPARE(Read(kept[1]), QByteArray("second"));
    QVERIFY(!QFile::exists(path));
    QString reason;
    QCOMPARE(PutAsideUnreadable(path, when, &reason), QString());
    QVERIFY(!reason.isEmpty());
}

void AtomicWriteTest::staleTemporaries_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("stale");
    QTest::newRow("QSaveFile's") << "Rules.ini.Ab3xYz" << true;
    QTest::newRow("older writer's hidden one") << ".Rules.ini.abcdef" << true;
    QTest::newRow("older rules writer's") << "Rules.ini.new" << true;
    QTest::newRow("its hidden temporary") << ".Rules.ini.new.aB1cD2" << true;
    QTest::newRow("a lock left by QSettings") << "Rules.ini.lock" << true;
    QTest::newRow("a person's backup") << "Rules.ini.backup" << false;
    QTest::newRow("a person's dated copy") << "Rules.ini.202401" << false;
    QTest::newRow("our own backup") << "Rules.ini.bak" << false;
    QTest::newRow("a file put aside") << "Rules.ini.unreadable-20240101-101010" << false;
    QTest::newRow("another file's") << "Other.ini.Ab3xYz" << false;
    QTest::newRow("seven characters") << "Rules.ini.Ab3xYz7" << false;
}

void AtomicWriteTest::staleTemporaries() {
    QFETCH(QString, entry);
    QFETCH(bool, stale);
    QCOMPARE(IsStaleTemporary(entry, "Rules.ini"), stale);

    QTemporaryDir dir;
    for (const QString& name : {QString("Rules.ini"), entry})
        QCOMPARE(WriteFileAtomically(dir.filePath(name), "x"), QString());
    RemoveStaleTemporaries(dir.path(), {"Rules.ini"});
    QVERIFY(QFile::exists(dir.filePath("Rules.ini")));
    QCOMPARE(QFile::exists(dir.filePath(entry)), !stale);
}

// Another instance may be writing: a second start must not take its
// temporaries.
void AtomicWriteTest::startTidiesOnlyWhenAlone() {
    for (const bool alone : {true, false}) {
        TestRig rig;
        rig.instance.otherInstanceRuns = !alone;
        QCOMPARE(rig.start(), alone);
        QCOMPARE(rig.files.tidied, alone ? 1 : 0);
    }
    // What the desktop program tidies: the program folder and the files
    // named beside it.
    LocalFiles files("/install");
    const QString settings = sandbox->configHome() + "/Kestrum/Velmora.conf";
    files.TidyBeside(settings);
    const QStringList leftovers = {files.ProgramFolder() + "/Rules.ini.Qw3rTy",
                                   files.ProgramFolder() + "/.frmMain.ini.abc123",
                                   settings + ".Zx9cVb"};
    for (const QString& path : leftovers)
        QCOMPARE(WriteFileAtomically(path, "half"), QString());
    files.RemoveStaleTemporaries();
    for (const QString& path : leftovers)
        QVERIFY2(!QFile::exists(path), qPrintable(path));
}

QTEST_GUILESS_MAIN(AtomicWriteTest)
#include "AtomicWriteTest.moc"
