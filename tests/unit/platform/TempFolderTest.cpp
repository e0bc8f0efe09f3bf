#include "platform/qt/LocalFiles.h"
#include "support/SandboxEnvironment.h"

#include <QtTest>

#include <unistd.h>

using namespace velmora;

// The per-user temporary folder is removed at the end only when empty.
class TempFolderTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void removedAtEndOnlyWhenEmpty_data();
    void removedAtEndOnlyWhenEmpty();
    void madeAgainWhenAnotherRunRemovedIt();
    void folderOfAnotherRunIsLeftAlone();
};

namespace {

QString SharedFolder() {
    return QDir::tempPath() + QStringLiteral("/velmora-%1").arg(getuid());
}

void WriteFile(const QString& path) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("kept");
}

} // namespace

void TempFolderTest::removedAtEndOnlyWhenEmpty_data() {
    QTest::addColumn<bool>("nameTaken");
    QTest::addColumn<bool>("withFile");
    QTest::addColumn<bool>("remains");
    QTest::newRow("shared, empty") << false << false << false;
    QTest::newRow("shared, holding a file") << false << true << true;
    QTest::newRow("private stand-in, empty") << true << false << false;
    QTest::newRow("private stand-in, holding a file") << true << true << true;
}

void TempFolderTest::removedAtEndOnlyWhenEmpty() {
    QFETCH(bool, nameTaken);
    QFETCH(bool, withFile);
    QFETCH(bool, remains);
    SandboxEnvironment sandbox;
    // A plain file under our name makes the folder a private one of this run.
    if (nameTaken)
        WriteFile(SharedFolder());
    QString folder;
    {
        LocalFiles files("/install");
        folder = files.TempFolder();
        QVERIFY(QFileInfo(folder).isDir());
        QCOMPARE(folder == SharedFolder(), !nameTaken);
        if (withFile)
            WriteFile(folder + "/saved.eml");
    }
    QCOMPARE(QFileInfo::exists(folder), remains);
    if (withFile) {
        QFile kept(folder + "/saved.eml");
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("kept"));
    }
    if (nameTaken)
        QVERIFY(QFileInfo(SharedFolder()).isFile());
}

void TempFolderTest::madeAgainWhenAnotherRunRemovedIt() {
    SandboxEnvironment sandbox;
    LocalFiles first("/install");
    const QString folder = first.TempFolder();
    {
        LocalFiles second("/install");
        QCOMPARE(second.TempFolder(), folder);
    }
    QVERIFY(!QFileInfo::exists(folder));
    QCOMPARE(first.TempFolder(), folder);
    QVERIFY(QFileInfo(folder).isDir());
    QCOMPARE(QFileInfo(folder).permissions() & 0x0077, QFileDevice::Permissions());
}

void TempFolderTest::folderOfAnotherRunIsLeftAlone() {
    SandboxEnvironment sandbox;
    QVERIFY(QDir().mkpath(SharedFolder()));
    { LocalFiles unused("/install"); }
    QVERIFY(QFileInfo(SharedFolder()).isDir());
}

QTEST_GUILESS_MAIN(TempFolderTest)
#include "TempFolderTest.moc"
