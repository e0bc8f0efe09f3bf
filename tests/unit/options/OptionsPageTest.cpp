#include "context/PageCalls.h"
#include "options/ClientChoice.h"
#include "options/MenuColours.h"
#include "options/OptionsEditing.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace velmora;

class OptionsPageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void numericBoxesCorrectThemselves_data();
    void numericBoxesCorrectThemselves();
    void quietPeriodSpinsSetTheirPart();
    void firstDifferenceFollowsTheTableOrder_data();
    void firstDifferenceFollowsTheTableOrder();
    void changingBackClearsDirty();
    void savedThemeReachesTreeAndFile_data();
    void savedThemeReachesTreeAndFile();
    void cancelledThemeChangesNothing();
    void userColoursComeFromTheDialog();
    void clientValidity_data();
    void clientValidity();
    void clientTestPrecedence_data();
    void clientTestPrecedence();
    void soundTestIgnoresTheSwitches();
    void unwritableSettingsKeepThePageDirty();
};

namespace {

const QString O = QStringLiteral("Settings\\Options\\");

struct Page {
    QTemporaryDir dir;
    std::unique_ptr<TestRig> rig = std::make_unique<TestRig>();

    explicit Page(const QHash<QString, QString>& stored = {}) {
        rig->files.programFolder = dir.path();
        rig->settings.set("Settings\\FirstUse", "1");
        for (auto it = stored.constBegin(); it != stored.constEnd(); ++it)
            rig->settings.set(O + it.key(), it.value());
        rig->start();
        StartOptionsPage(ctx());
    }
    AppContext& ctx() { return *rig->ctx; }
    StateView& view() { return rig->view; }
    void set(const QString& control, const QString& text) {
        view().setText(control, text);
        QVERIFY(OptionsControlChanged(ctx(), control));
    }
    void check(const QString& control, int value) {
        view().setChecked(control, value);
        QVERIFY(OptionsControlChanged(ctx(), control));
    }
    void option(const QString& array, int index) {
        view().setOptionIndex(array, index);
        QVERIFY(OptionsControlChanged(ctx(), Element(array, index)));
    }
    bool dirty() { return view().isEnabled(Element(ctl::tbrButtons, ctl::SaveOptions)); }
    void save() { SaveOptionsPage(ctx()); }
    // A file of the test's own, executable or not.
    QString file(const QString& name, bool executable = false, const QByteArray& text = {}) {
        const QString path = dir.filePath(name);
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(text);
        f.close();
        if (executable)
            f.setPermissions(f.permissions() | QFile::ExeOwner);
        rig->files.existing.insert(path);
        return path;
    }
    QString styleFile() {
        QFile f(dir.filePath("frmMain.ini"));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
};

QString StyleFileText(qint32 top, qint32 middle, qint32 bottom) {
    return QStringLiteral("[Menu]\r\nMenuStyle=4\r\n[New3D]\r\nNew3DColor1=%1\r\nNew3DColor2=%2\r\n"
                          "New3DColor3=%3\r\n")
        .arg(top)
        .arg(middle)
        .arg(bottom);
}

} // namespace

void OptionsPageTest::numericBoxesCorrectThemselves_data() {
    QTest::addColumn<QString>("hours");
    QTest::addColumn<QString>("minutes");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("minutesAfter");
    QTest::addColumn<int>("minutesTop");

    QTest::newRow("blank timeout is 1") << "0"
                                        << "30"
                                        << "txtConnectTimeOut"
                                        << ""
                                        << "1"
                                        << "30" << 59;
    QTest::newRow("timeout above 120") << "0"
                                       << "30"
                                       << "txtConnectTimeOut"
                                       << "500"
                                       << "120"
                                       << "30" << 59;
    QTest::newRow("blank delay") << "0"
                                 << "30"
                                 << "txtStartUpDelay"
                                 << ""
                                 << "0"
                                 << "30" << 59;
    QTest::newRow("delay above 59") << "0"
                                    << "30"
                                    << "txtStartUpDelay"
                                    << "60"
                                    << "59"
                                    << "30" << 59;
    QTest::newRow("message time above 59") << "0"
                                           << "30"
                                           << "txtMsgBoxTime"
                                           << "99"
                                           << "59"
                                           << "30" << 59;
    QTest::newRow("13 hours pins minutes") << "1"
                                           << "30"
                                           << "txtHours"
                                           << "13"
                                           << "12"
                                           << "0" << 0;
    QTest::newRow("12 to 0 hours") << "12"
                                   << "0"
                                   << "txtHours"
                                   << "0"
                                   << "0"
                                   << "1" << 59;
    QTest::newRow("blank hours") << "3"
                                 << "15"
                                 << "txtHours"
                                 << ""
                                 << "0"
                                 << "15" << 59;
    QTest::newRow("hours no number") << "3"
                                     << "15"
                                     << "txtHours"
                                     << "x"
                                     << "3"
                                     << "15" << 59;
    QTest::newRow("blank minutes, no hours") << "0"
                                             << "30"
                                             << "txtMinutes"
                                             << ""
                                             << "1"
                                             << "1" << 59;
    QTest::newRow("blank minutes, hours") << "2"
                                          << "30"
                                          << "txtMinutes"
                                          << ""
                                          << "0"
                                          << "0" << 59;
    QTest::newRow("minutes above 59") << "2"
                                      << "30"
                                      << "txtMinutes"
                                      << "75"
                                      << "59"
                                      << "59" << 59;
    QTest::newRow("minutes at 12 hours") << "12"
                                         << "0"
                                         << "txtMinutes"
                                         << "30"
                                         << "0"
                                         << "0" << 0;
    QTest::newRow("0 minutes typed stays") << "0"
                                           << "30"
                                           << "txtMinutes"
                                           << "0"
                                           << "0"
                                           << "0" << 59;
}

void OptionsPageTest::numericBoxesCorrectThemselves() {
    QFETCH(QString, hours);
    QFETCH(QString, minutes);
    QFETCH(QString, box);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(QString, minutesAfter);
    QFETCH(int, minutesTop);
    Page p({{"UseInterval", "1"}, {"Hours", hours}, {"Minutes", minutes}});
    p.set(box, typed);
    QCOMPARE(p.view().text(box), shown);
    QCOMPARE(p.view().text(ctl::txtMinutes), minutesAfter);
    QCOMPARE(p.view().control(ctl::txtMinutes).maximum, minutesTop);
}

void OptionsPageTest::quietPeriodSpinsSetTheirPart() {
    Page p({{"NoCheck", "1"}, {"NoCheckTimeBegin", "22:15"}, {"NoCheckTimeEnd", "06:00"}});
    p.set(Element(ctl::updNoCheck, 0), "7");
    p.set(Element(ctl::updNoCheck, 3), "45");
    QCOMPARE(p.view().text(Element(ctl::txtNoCheckTime, 0)), QString("07:15"));
    QCOMPARE(p.view().text(Element(ctl::txtNoCheckTime, 1)), QString("06:45"));
    p.set(Element(ctl::updNoCheck, 1), "30");
    QCOMPARE(p.view().text(Element(ctl::txtNoCheckTime, 1)), QString("23:45"));
    p.save();
    QCOMPARE(p.rig->settings.get(O + "NoCheckTimeBegin"), QString("07:15"));
    QCOMPARE(p.rig->settings.get(O + "NoCheckTimeEnd"), QString("23:45"));
}

void OptionsPageTest::firstDifferenceFollowsTheTableOrder_data() {
    QTest::addColumn<QStringList>("changed");
    QTest::addColumn<QString>("first");
    QTest::newRow("none") << QStringList{} << QString();
    QTest::newRow("start-up before timeout")
        << QStringList{"ConnectTimeOut", "RunStartUp"} << "RunStartUp";
    QTest::newRow("minutes before theme") << QStringList{"DTheme", "Minutes"} << "Minutes";
    QTest::newRow("colours after sound") << QStringList{"TopColour", "PlaySound"} << "PlaySound";
    QTest::newRow("client before sound")
        << QStringList{"DefaultSound", "DefaultClient"} << "DefaultClient";
    QTest::newRow("sort order after sort column")
        << QStringList{"SortOrder", "SortColumn"} << "SortColumn";
}

void OptionsPageTest::firstDifferenceFollowsTheTableOrder() {
    QFETCH(QStringList, changed);
    QFETCH(QString, first);
    const Options record;
    Options working = record;
    for (const QString& key : changed) {
        const QString now = record.valueText(key);
        working.setValueText(key, now == "1" ? "0" : now + (Options::key(key).text ? "x" : "1"));
    }
    QCOMPARE(FirstDifference(working, record), first);
    // Texts compare exactly: a change of case is a change.
    working = record;
    working.DefaultClient = "a";
    Options other = record;
    other.DefaultClient = "A";
    QCOMPARE(FirstDifference(working, other), QString("DefaultClient"));
}

void OptionsPageTest::changingBackClearsDirty() {
    Page p;
    QVERIFY(!p.dirty());
    QVERIFY(p.view().isEnabled(ctl::tbrMainButtons));
    p.set(ctl::txtConnectTimeOut, "25");
    QVERIFY(p.dirty());
    QVERIFY(!p.view().isEnabled(ctl::tbrMainButtons));
    p.set(ctl::txtConnectTimeOut, "10");
    QVERIFY(!p.dirty());
    // Sound off shows in the tray at once; the record waits for Save.
    p.check(ctl::chkPlaySound, 0);
    QCOMPARE(p.view().caption(ctl::mnuTraySounds), QString("Soun&ds - Off|#SoundOff"));
    QCOMPARE(p.ctx().options.PlaySound, 1);
    CancelOptionsEdit(p.ctx());
    QVERIFY(!p.dirty());
    QCOMPARE(p.view().checked(ctl::chkPlaySound), 1);
}

void OptionsPageTest::savedThemeReachesTreeAndFile_data() {
    QTest::addColumn<int>("theme");
    QTest::addColumn<QList<qint32>>("colours");
    QTest::newRow("Blue") << 0 << QList<qint32>{16766894, 16777215, 16744448};
    QTest::newRow("Green") << 2 << QList<qint32>{12117984, 14024703, 8368803};
}

void OptionsPageTest::savedThemeReachesTreeAndFile() {
    QFETCH(int, theme);
    QFETCH(QList<qint32>, colours);
    Page p;
    // Written at start-up with the defaults, whatever was there.
    QCOMPARE(p.styleFile(), StyleFileText(10072511, 15724527, 5733521));
    p.option(ctl::opt3DTheme, theme);
    QVERIFY(p.dirty());
    p.save();
    QVERIFY(!p.dirty());
    QCOMPARE(p.rig->settings.get(O + "DTheme"), QString::number(theme));
    QCOMPARE(p.rig->settings.get(O + "TopColour"), QString::number(colours[0]));
    QCOMPARE(p.rig->settings.get(O + "MiddleColour"), QString::number(colours[1]));
    QCOMPARE(p.rig->settings.get(O + "BottomColour"), QString::number(colours[2]));
    QCOMPARE(p.styleFile(), StyleFileText(colours[0], colours[1], colours[2]));
    // User Colours now start from the preset just saved.
    p.option(ctl::opt3DTheme, UserTheme);
    QCOMPARE(qint32(p.view().colour(ctl::lbl3DTopColour)), colours[0]);
    QVERIFY(p.view().isVisible(Element(ctl::lblMenuColours, 6)));
}

void OptionsPageTest::cancelledThemeChangesNothing() {
    Page p;
    const QString file = p.styleFile();
    p.option(ctl::opt3DTheme, 0);
    QCOMPARE(p.view().colour(ctl::lbl3DTopColour), 0xFFD7AEu);
    CancelOptionsEdit(p.ctx());
    QCOMPARE(p.styleFile(), file);
    QVERIFY(!p.rig->settings.has(O + "DTheme"));
    QCOMPARE(p.view().optionIndex(ctl::opt3DTheme), 5);
    QCOMPARE(p.view().colour(ctl::lbl3DTopColour), 0x99B1BFu);
}

void OptionsPageTest::userColoursComeFromTheDialog() {
    Page p;
    p.rig->headless.dialogs.colourAnswers = {"0x123456", "cancel"};
    // Without User Colours a box takes no click.
    OptionsLinkClick(p.ctx(), ctl::lbl3DTopColour);
    QVERIFY(p.rig->headless.dialogs.requests.isEmpty());
    p.option(ctl::opt3DTheme, UserTheme);
    OptionsLinkClick(p.ctx(), ctl::lbl3DMiddleColour);
    OptionsLinkClick(p.ctx(), ctl::lbl3DBottomColour);
    QCOMPARE(p.view().colour(ctl::lbl3DMiddleColour), 0x123456u);
    QCOMPARE(p.view().colour(ctl::lbl3DBottomColour), 0x577C91u);
    p.save();
    QCOMPARE(p.rig->settings.get(O + "MiddleColour"), QString::number(0x123456));
    QVERIFY(p.styleFile().contains(QString("New3DColor2=%1").arg(0x123456)));
}

void OptionsPageTest::clientValidity_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("executable");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<bool>("valid");
    QTest::newRow("program") << "mailer" << true << true << true;
    QTest::newRow("plain file") << "notes" << false << true << false;
    QTest::newRow("desktop entry") << "mail.desktop" << false << true << true;
    QTest::newRow("desktop entry in capitals") << "MAIL.DESKTOP" << false << true << true;
    QTest::newRow("desktop entry.txt") << "mail.desktop.txt" << false << true << false;
    QTest::newRow("missing desktop entry") << "gone.desktop" << false << false << false;
    QTest::newRow("missing program") << "gone" << true << false << false;
}

void OptionsPageTest::clientValidity() {
    QFETCH(QString, name);
    QFETCH(bool, executable);
    QFETCH(bool, exists);
    QFETCH(bool, valid);
    Page p;
    const QString path = p.file(name, executable);
    if (!exists) {
        QFile::remove(path);
        p.rig->files.existing.remove(path);
    }
    QCOMPARE(IsValidClient(p.rig->files, path), valid);
    // A folder is no client, whatever its name.
    QDir(p.dir.path()).mkdir("folder.desktop");
    QVERIFY(!IsValidClient(p.rig->files, p.dir.filePath("folder.desktop")));
}

void OptionsPageTest::clientTestPrecedence_data() {
    QTest::addColumn<bool>("defaultValid");
    QTest::addColumn<bool>("accountValid");
    QTest::addColumn<int>("item");
    QTest::addColumn<QString>("started");
    QTest::addColumn<int>("state");
    QTest::newRow("default wins on the Accounts page") << true << true << 1 << "default" << 1;
    QTest::newRow("default over a broken account") << true << false << 1 << "default" << 1;
    QTest::newRow("account's own, always normal") << false << true << 1 << "account" << 1;
    QTest::newRow("neither") << false << false << 1 << "" << 0;
    QTest::newRow("Defaults page, valid default") << true << false << 0 << "default" << 1;
    QTest::newRow("Defaults page, no default") << false << true << 0 << "" << 0;
}

void OptionsPageTest::clientTestPrecedence() {
    QFETCH(bool, defaultValid);
    QFETCH(bool, accountValid);
    QFETCH(int, item);
    QFETCH(QString, started);
    QFETCH(int, state);
    QTemporaryDir files;
    const QString mine = files.filePath("mine.desktop");
    const QString theirs = files.filePath("theirs.desktop");
    Page p({{"DefaultClient", defaultValid ? mine : "/nowhere/mail.desktop"}, {"RunSize", "1"}});
    p.rig->files.existing = {mine, theirs};
    QFile(mine).open(QIODevice::WriteOnly);
    QFile(theirs).open(QIODevice::WriteOnly);
    p.ctx().accounts.edit(p.ctx().accounts.AcntCurrent).EditClient =
        accountValid ? theirs : "/nowhere/else";
    if (item == 0)
        p.view().setText(ctl::txtDefaultClient, defaultValid ? mine : QString());
    TestClient(p.ctx(), item);
    const auto& requests = p.rig->headless.shell.requests;
    if (started.isEmpty()) {
        QVERIFY(requests.isEmpty());
        QCOMPARE(p.rig->boxes.boxes.size(), 1);
        QCOMPARE(p.rig->boxes.boxes[0].title, QString("Velmora - Email Client Error"));
        QVERIFY(p.rig->boxes.boxes[0].text.contains("filename" + QString(20, ' ') + "\r\n"));
        return;
    }
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests[0].target, started == "default" ? mine : theirs);
    QCOMPARE(requests[0].windowState, state);
    QVERIFY(p.rig->boxes.boxes.isEmpty());
}

void OptionsPageTest::soundTestIgnoresTheSwitches() {
    Page p({{"PlaySound", "0"}});
    const QString wave = p.file("Ding.WAV");
    // The box's text counts before it is saved.
    p.set(ctl::txtDefaultSound, wave);
    TestSound(p.ctx(), 0);
    QCOMPARE(p.rig->sounds.played, QStringList{wave});
    p.set(ctl::txtDefaultSound, p.dir.filePath("missing.wav"));
    TestSound(p.ctx(), 0);
    QCOMPARE(p.rig->sounds.played.size(), 1);
    QCOMPARE(p.rig->boxes.boxes.size(), 1);
    QCOMPARE(p.rig->boxes.boxes[0].title, QString("Velmora - Sound Error"));
}

void OptionsPageTest::unwritableSettingsKeepThePageDirty() {
    Page p;
    p.set(ctl::txtConnectTimeOut, "42");
    // A file that cannot be written: the writes change nothing.
    struct Unwritable : SettingsStore {
        explicit Unwritable(SettingsStore& inner) : inner(inner) {}
        QString GetSetting(const QString& a, const QString& s, const QString& k,
                           const QString& d) override {
            return inner.GetSetting(a, s, k, d);
        }
        void SaveSetting(const QString&, const QString&, const QString&, const QString&) override {}
        void DeleteSetting(const QString&, const QString&, const QString&) override {}
        SettingsStore& inner;
    } unwritable(p.rig->settings);
    p.ctx().svc.settings = &unwritable;
    p.save();
    p.ctx().svc.settings = &p.rig->settings;
    QCOMPARE(p.ctx().options.ConnectTimeOut, 10);
    QVERIFY(p.dirty());
    QCOMPARE(p.view().text(ctl::txtConnectTimeOut), QString("42"));
}

QTEST_GUILESS_MAIN(OptionsPageTest)
#include "OptionsPageTest.moc"
