#include "platform/qt/QtSettingsStore.h"
#include "platform/qt/XdgAutoStart.h"
#include "support/SandboxEnvironment.h"

#include <QtTest>

#include <sys/stat.h>

using namespace velmora;

// The settings file and the logon entry on disk.
class SettingsFileTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void fileLiesAtTheFixedPathOwnerOnly();
    void optionsLieUnderTheirSectionDeleteTakesOneKey();
    void logonEntryWrittenAndRemoved();
    void logonEntryFailsInSilence();

private:
    std::unique_ptr<SandboxEnvironment> sandbox;
    const QString app = "Kestrum\\Velmora";
};

void SettingsFileTest::initTestCase() {
    sandbox = std::make_unique<SandboxEnvironment>();
}

void SettingsFileTest::fileLiesAtTheFixedPathOwnerOnly() {
    const QString path = sandbox->configHome() + "/Kestrum/Velmora.conf";
    QCOMPARE(QtSettingsStore::FileName(app), path);
    QtSettingsStore store;
    QCOMPARE(store.GetSetting(app, "Settings", "AcntNum", "0"), QString("0"));
    QVERIFY(!QFile::exists(path)); // reading writes nothing
    store.SaveSetting(app, "Settings", "AcntPassword1", "secret");
    QVERIFY(QFile::exists(path));
    struct stat info {};
    QCOMPARE(stat(QFile::encodeName(path).constData(), &info), 0);
    QCOMPARE(info.st_mode & 0777, mode_t(0600));
}

void SettingsFileTest::optionsLieUnderTheirSectionDeleteTakesOneKey() {
    QtSettingsStore store;
    store.SaveSetting(app, "Settings\\Options", "Minutes", "45");
    QFile file(QtSettingsStore::FileName(app));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY2(text.contains("[Settings]"), qPrintable(text));
    QVERIFY2(text.contains("Options\\Minutes=45"), qPrintable(text));
    QCOMPARE(store.GetSetting(app, "Settings\\Options", "Minutes", "30"), QString("45"));
    QCOMPARE(store.GetSetting(app, "Settings", "Minutes", "30"), QString("30"));

    store.SaveSetting(app, "Settings", "AcntName7", "Seven");
    store.SaveSetting(app, "Settings", "AcntName8", "Eight");
    store.DeleteSetting(app, "Settings", "AcntName7");
    QCOMPARE(store.GetSetting(app, "Settings", "AcntName7", "gone"), QString("gone"));
    QCOMPARE(store.GetSetting(app, "Settings", "AcntName8", "gone"), QString("Eight"));
}

void SettingsFileTest::logonEntryWrittenAndRemoved() {
    XdgAutoStart entry("/opt/my apps/velmora");
    const QString path = sandbox->configHome() + "/autostart/velmora.desktop";
    QCOMPARE(XdgAutoStart::EntryPath(), path);
    entry.SetRunAtStartUp();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY(text.startsWith("[Desktop Entry]\n"));
    QVERIFY2(text.contains("Exec=\"/opt/my apps/velmora\"\n"), qPrintable(text));
    file.close();
    entry.ClearRunAtStartUp();
    QVERIFY(!QFile::exists(path));
    entry.ClearRunAtStartUp(); // nothing there: still no failure
}

void SettingsFileTest::logonEntryFailsInSilence() {
    // A file where the folder should be: the entry cannot be made.
    const QString folder = sandbox->configHome() + "/autostart";
    QDir(folder).removeRecursively();
    QFile blocker(folder);
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    XdgAutoStart("/usr/bin/velmora").SetRunAtStartUp();
    QVERIFY(QFileInfo(folder).isFile());
    QFile::remove(folder);
}

QTEST_GUILESS_MAIN(SettingsFileTest)
#include "SettingsFileTest.moc"
