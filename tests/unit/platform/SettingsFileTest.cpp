#include "app/CommandLine.h"
#include "options/Setting.h"
#include "platform/qt/QtSettingsStore.h"
#include "platform/qt/SettingsText.h"
#include "platform/qt/XdgAutoStart.h"
#include "support/DiskLimits.h"
#include "support/SandboxEnvironment.h"
#include "support/TestRig.h"

#include <QSettings>
#include <QtTest>

using namespace velmora;

// The settings file and the logon entry on disk.
class SettingsFileTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void fileLiesAtTheFixedPath();
    void optionsLieUnderTheirSectionDeleteTakesOneKey();
    void logonEntryWrittenAndRemoved();
    void logonEntryFailureIsTold();
    void valuesRoundTrip_data();
    void valuesRoundTrip();
    void byteOrderMarkIsWrittenBack();
    void failedWriteKeepsTheFileAndIsToldOnce();
    void unreadableFileIsPutAside_data();
    void unreadableFileIsPutAside();
    void handEditsStay();
    void privateWhateverTheUmask();

    // Each case on a settings folder of its own.
    void init() { QDir(sandbox->configHome()).removeRecursively(); }

private:
    QString settingsPath() const { return sandbox->configHome() + "/Kestrum/Velmora.conf"; }
    static QByteArray Read(const QString& path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }
    static bool Write(const QString& path, const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
    }
    // A program on the real settings store, boxes recorded by the rig.
    struct Program {
        TestRig rig;
        QtSettingsStore store;
        std::unique_ptr<AppContext> ctx;
        Program() {
            Services services = rig.ctx->svc;
            services.settings = &store;
            ctx = std::make_unique<AppContext>(services);
            ctx->view = &rig.view;
        }
    };

    std::unique_ptr<SandboxEnvironment> sandbox;
    const QString app = "Kestrum\\Velmora";
};

void SettingsFileTest::initTestCase() {
    sandbox = std::make_unique<SandboxEnvironment>();
}

void SettingsFileTest::fileLiesAtTheFixedPath() {
    const QString path = settingsPath();
    QCOMPARE(QtSettingsStore::FileName(app), path);
    QtSettingsStore store;
    QCOMPARE(store.GetSetting(app, "Settings", "AcntNum", "0"), QString("0"));
    QVERIFY(!QFile::exists(path)); // reading writes nothing
    store.SaveSetting(app, "Settings", "AcntPassword1", "secret");
    QVERIFY(QFile::exists(path));
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

void SettingsFileTest::logonEntryFailureIsTold() {
    // A file where the folder should be: the entry cannot be made.
    const QString folder = sandbox->configHome() + "/autostart";
    QVERIFY(Write(folder, "x"));
    const FileProblem problem = XdgAutoStart("/usr/bin/velmora").SetRunAtStartUp();
    QCOMPARE(problem.kind, FileProblem::NotWritten);
    QCOMPARE(problem.file, folder + "/velmora.desktop");
    QVERIFY(!problem.reason.isEmpty());
    QVERIFY(QFileInfo(folder).isFile());
}

// Files written by the QSettings of earlier versions must read the same,
// and ours must read the same in QSettings.
void SettingsFileTest::valuesRoundTrip_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("qsettingsToo");
    auto row = [](const char* name, const QString& value, bool qsettingsToo = true) {
        QTest::newRow(name) << value << qsettingsToo;
    };
    row("plain", "pop.example.com");
    row("empty", "");
    row("blanks at both ends", "  my pass  ");
    row("list and comment signs", "a,b;c=d, e");
    row("quote and backslash", "say \"hi\" C:\\Mail\\");
    row("leading @", "@Invalid()");
    row("line breaks and tab", "one\r\ntwo\tthree");
    row("control, then a hex digit", QString("x") + QChar(1) + "ab" + QChar(0x7f) + "c");
    row("beyond ASCII", QString::fromUtf8("Grüße 中文 \xF0\x9F\x98\x80"));
    row("NUL inside", QString("a") + QChar(0) + "b");
    // Found by fuzzing: a U+FEFF right after an escape, or first in a value,
    // was taken for a byte order mark and dropped. QSettings drops it too.
    const QChar mark(0xFEFF);
    row("mark first", QString(mark) + "pass", false);
    row("mark after an escape", QString("s") + QChar(0) + QChar(0) + mark + "x", false);
    row("mark after a quote", QString(" ") + mark, false);
}

// Found by fuzzing: a file that began with a byte order mark lost it when
// written, so a first key that begins with U+FEFF then read as the mark and
// the file as damaged.
void SettingsFileTest::byteOrderMarkIsWrittenBack() {
    const QByteArray file = "\xEF\xBB\xBF\xEF\xBB\xBF=3\r\n";
    QVERIFY(SettingsText::Problem(file).isEmpty());
    SettingsText text(file);
    text.setValue("Settings/AcntName1", "Home");
    const QByteArray written = text.bytes();
    QVERIFY2(SettingsText::Problem(written).isEmpty(), written.constData());
    QCOMPARE(SettingsText(written).value(QString(QChar(0xFEFF))), QString("3"));
    QCOMPARE(SettingsText(written).value("Settings/AcntName1"), QString("Home"));
}

void SettingsFileTest::valuesRoundTrip() {
    QFETCH(QString, value);
    QFETCH(bool, qsettingsToo);
    {
        QtSettingsStore ours;
        ours.SaveSetting(app, "Settings", "AcntPassword1", value);
        ours.SaveSetting(app, "Settings\\Options", "DefaultClient", value);
    }
    if (!qsettingsToo) {
        QtSettingsStore again;
        QCOMPARE(again.GetSetting(app, "Settings", "AcntPassword1", "?"), value);
        QCOMPARE(again.GetSetting(app, "Settings\\Options", "DefaultClient", "?"), value);
        return;
    }
    {
        QSettings qt(settingsPath(), QSettings::IniFormat);
        QCOMPARE(qt.status(), QSettings::NoError);
        QCOMPARE(qt.value("Settings/AcntPassword1").toString(), value);
        QCOMPARE(qt.value("Settings/Options/DefaultClient").toString(), value);
    }
    QVERIFY(QFile::remove(settingsPath()));
    {
        QSettings qt(settingsPath(), QSettings::IniFormat);
        qt.setValue("Settings/AcntPassword1", value);
        qt.setValue("Settings/Options/DefaultClient", value);
    }
    QtSettingsStore ours;
    QCOMPARE(ours.GetSetting(app, "Settings", "AcntPassword1", "?"), value);
    QCOMPARE(ours.GetSetting(app, "Settings\\Options", "DefaultClient", "?"), value);
}

// QSettings renamed a cut file over the old one and said NoError.
void SettingsFileTest::failedWriteKeepsTheFileAndIsToldOnce() {
    Program program;
    SettingsStore& store = program.store;
    setting::saveText(store, setting::SectionSettings, "AcntNum", "1");
    setting::saveText(store, setting::SectionSettings, "AcntName1", "Home");
    const QByteArray before = Read(settingsPath());
    {
        FileSizeLimit full(rlim_t(before.size() + 10));
        setting::saveText(store, setting::SectionSettings, "AcntPassword1", QString(200, 'p'));
        setting::saveText(store, setting::SectionOptions, "Minutes", QString(200, '5'));
    }
    QCOMPARE(Read(settingsPath()), before);
    QCOMPARE(QDir(QFileInfo(settingsPath()).path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{"Velmora.conf"});
    QList<RecordedBoxes::Box>& boxes = program.rig.boxes.boxes;
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes[0].title, QString("Velmora - File Not Saved"));
    QVERIFY2(boxes[0].text.contains(settingsPath() + "\r\n"), qPrintable(boxes[0].text));
    QVERIFY2(boxes[0].text.contains("File too large"), qPrintable(boxes[0].text));
    // The store reads what the file holds.
    QCOMPARE(setting::readText(store, setting::SectionSettings, "AcntPassword1", "none"),
             QString("none"));

    // A write that succeeds ends the failure; the next one is told again.
    setting::saveText(store, setting::SectionSettings, "AcntLoginID1", "me");
    QCOMPARE(setting::readText(store, setting::SectionSettings, "AcntLoginID1", ""), QString("me"));
    {
        FileSizeLimit full(10);
        setting::saveText(store, setting::SectionSettings, "AcntServer1", "pop.example");
    }
    QCOMPARE(boxes.size(), 2);
}

void SettingsFileTest::unreadableFileIsPutAside_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    QTest::newRow("binary") << QByteArray("\x01\x02garbage\xff\xfe\n") << "binary data";
    QTest::newRow("words, no keys")
        << QByteArray("[Settings]\nAcntNum=2\nsome notes here\n") << "line 3 is neither";
    QTest::newRow("group not closed")
        << QByteArray("[Settings\nAcntNum=3\n") << "line 1 opens a group";
    QTest::newRow("value without key") << QByteArray("[Settings]\n=3\n") << "without a key";
}

// Garbage once read as no accounts at all, and the first save wrote over it.
void SettingsFileTest::unreadableFileIsPutAside() {
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    QVERIFY(Write(settingsPath(), text));
    Program program;
    QString printed, said;
    QTextStream out(&printed);
    QTextStream errors(&said);
    QCOMPARE(RunCommandLine(*program.ctx, program.rig.view, program.rig.headless, {"accounts"}, out,
                            errors),
             0);
    QCOMPARE(program.ctx->accounts.AcntNum, 0);
    const QStringList entries = QDir(QFileInfo(settingsPath()).path()).entryList(QDir::Files);
    QCOMPARE(entries.size(), 1);
    QVERIFY2(entries[0].startsWith("Velmora.conf.unreadable-20"), qPrintable(entries[0]));
    const QString aside = QFileInfo(settingsPath()).path() + '/' + entries[0];
    QCOMPARE(Read(aside), text);
    QVERIFY2(said.startsWith("[Velmora - File Could Not Be Read]\n" + settingsPath() +
                             " could not be read; it was kept as " + entries[0]),
             qPrintable(said));
    QVERIFY2(said.contains(reason), qPrintable(said));

    // Told once; a save makes a new file beside the one put aside.
    setting::saveInt(program.store, setting::SectionSettings, "FirstUse", 1);
    QCOMPARE(program.rig.boxes.boxes.size(), 0);
    QCOMPARE(Read(settingsPath()), QByteArray("[Settings]\nFirstUse=1\n"));
    QCOMPARE(Read(aside), text);
}

// QSettings dropped comments and reordered what a person wrote; the editor's
// byte order mark stays too.
void SettingsFileTest::handEditsStay() {
    const QByteArray edited = "\xEF\xBB\xBF; my accounts, edited by hand\n"
                              "[Settings]\n"
                              "AcntNum = 1\n"
                              "AcntName1=Home   ; the family account\n"
                              "\n"
                              "# options below\n"
                              "Options\\Minutes=15\n";
    QVERIFY(Write(settingsPath(), edited));
    QtSettingsStore store;
    QCOMPARE(setting::readText(store, setting::SectionSettings, "AcntName1", ""), QString("Home"));
    QCOMPARE(setting::readInt(store, setting::SectionSettings, "AcntNum", 0), 1);
    setting::saveInt(store, setting::SectionOptions, "Minutes", 45);
    setting::saveText(store, setting::SectionSettings, "AcntServer1", "pop.example");
    QCOMPARE(Read(settingsPath()), QByteArray("\xEF\xBB\xBF; my accounts, edited by hand\n"
                                              "[Settings]\n"
                                              "AcntNum = 1\n"
                                              "AcntName1=Home   ; the family account\n"
                                              "\n"
                                              "# options below\n"
                                              "Options\\Minutes=45\n"
                                              "AcntServer1=pop.example\n"));
}

void SettingsFileTest::privateWhateverTheUmask() {
    UmaskScope open(0);
    QtSettingsStore store;
    setting::saveText(store, setting::SectionSettings, "AcntPassword1", "secret");
    QCOMPARE(ModeOf(QFile::encodeName(settingsPath())), 0600);
    QCOMPARE(ModeOf(QFile::encodeName(sandbox->configHome() + "/Kestrum")), 0700);
    QCOMPARE(XdgAutoStart("/usr/bin/velmora").SetRunAtStartUp().kind, FileProblem::None);
    QCOMPARE(ModeOf(QFile::encodeName(XdgAutoStart::EntryPath())), 0600);
    QCOMPARE(ModeOf(QFile::encodeName(sandbox->configHome() + "/autostart")), 0700);
}

QTEST_GUILESS_MAIN(SettingsFileTest)
#include "SettingsFileTest.moc"
