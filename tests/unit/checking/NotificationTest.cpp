#include "checking/CheckCycle.h"
#include "checking/frmMessage.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class NotificationTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void showEmail_data();
    void showEmail();
    void defaultSoundPlaysOnce();
    void accountLines_data();
    void accountLines();
    void countdownClosesOneTickAfterZero();
};

void NotificationTest::showEmail_data() {
    QTest::addColumn<int>("showEmail");
    QTest::addColumn<QString>("outcome"); // nothing, new, failed
    QTest::addColumn<QString>("headline");
    QTest::addColumn<QString>("sound");
    // A sound goes with every message shown, and with nothing else.
    auto row = [](const char* name, int showEmail, const char* outcome, const char* headline = "",
                  const char* sound = "/snd/home.wav") {
        QTest::newRow(name) << showEmail << outcome << headline << (*headline ? sound : "");
    };
    row("0, nothing: silence", 0, "nothing");
    row("0, new", 0, "new", "1 New Message(s) found at 10:15 AM");
    row("0, failed", 0, "failed");
    row("1, nothing", 1, "nothing");
    row("1, new", 1, "new", "1 Message(s) found at 10:15 AM");
    row("2, nothing", 2, "nothing", "No Message(s) found at 10:15 AM");
    row("2, failed: the error sound", 2, "failed", "No Message(s) found at 10:15 AM",
        "/install/Sounds/Error.wav");
}

void NotificationTest::showEmail() {
    QFETCH(int, showEmail);
    QFETCH(QString, outcome);
    QFETCH(QString, headline);
    QFETCH(QString, sound);
    TestRig rig;
    rig.settings.set("Settings\\FirstUse", "1");
    rig.addAccount(1, "Home");
    rig.settings.set("Settings\\AcntSound1", "/snd/home.wav");
    rig.files.existing.insert("/snd/home.wav");
    rig.settings.set("Settings\\Options\\ShowEmailMsgBox", "1");
    rig.settings.set("Settings\\Options\\ShowEmail", QString::number(showEmail));
    FakeMailbox& box = rig.mailbox("Home");
    if (outcome == "new")
        box.mail.append("a");
    if (outcome == "failed")
        box.connectFailure = 10061;
    QVERIFY(rig.start());
    AutoCheckAccounts(*rig.ctx);
    QCOMPARE(rig.ctx->check.AutoCheckHeadline, headline);
    QCOMPARE(rig.ctx->shell.AutoMessageOpen, !headline.isEmpty());
    if (!headline.isEmpty())
        QCOMPARE(rig.windows.last->headline, headline);
    QCOMPARE(rig.sounds.played, sound.isEmpty() ? QStringList() : QStringList{sound});
}

void NotificationTest::defaultSoundPlaysOnce() {
    TestRig rig;
    rig.settings.set("Settings\\FirstUse", "1");
    for (int n = 1; n <= 3; ++n) {
        const QString name = QString("A%1").arg(n);
        rig.addAccount(n, name);
        rig.settings.set(QString("Settings\\AcntSound%1").arg(n), "/snd/own.wav");
        rig.mailbox(name).mail.append("m");
    }
    rig.files.existing += {"/snd/own.wav", "/snd/default.wav"};
    rig.settings.set("Settings\\Options\\DefaultSound", "/snd/default.wav");
    QVERIFY(rig.start());
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(rig.sounds.played, QStringList{"/snd/default.wav"});

    rig.ctx->shell.DefaultSoundValid = false;
    rig.ctx->accounts[2].AcntSoundOn = 0;
    rig.sounds.played.clear();
    rig.ctx->options.QuickCheck = 0;
    for (int n = 1; n <= 3; ++n)
        rig.mailbox(QString("A%1").arg(n)).mail.append("n");
    CheckAllAccounts(*rig.ctx);
    QCOMPARE(rig.sounds.played, QStringList({"/snd/own.wav", "/snd/own.wav"}));
}

void NotificationTest::accountLines_data() {
    QTest::addColumn<int>("lines");
    QTest::addColumn<bool>("more");
    QTest::newRow("15") << 15 << false;
    QTest::newRow("16") << 16 << true;
}

void NotificationTest::accountLines() {
    QFETCH(int, lines);
    QFETCH(bool, more);
    TestRig rig;
    QVERIFY(rig.start());
    rig.ctx->check.AccountInfoLines = lines;
    rig.ctx->check.AccountInfoText = "Account Information:\r\n";
    frmMessage::Show(*rig.ctx, "x");
    QCOMPARE(rig.windows.last->lines.endsWith("\r\nmore Accounts..."), more);
    QCOMPARE(rig.windows.last->lineCount, more ? 17 : lines);
    QCOMPARE(rig.windows.last->caption, QString("Velmora:  Auto Check - November 21, 2026"));
    QVERIFY(rig.windows.last->onTop);
}

void NotificationTest::countdownClosesOneTickAfterZero() {
    TestRig rig;
    rig.settings.set("Settings\\Options\\UseInterval", "1");
    rig.settings.set("Settings\\Options\\MsgBoxTime", "1");
    QVERIFY(rig.start());
    AppContext& ctx = *rig.ctx;
    frmMessage::Show(ctx, "x");
    auto view = rig.windows.last;
    QVERIFY(!Manual(ctx.check.tmrMailTime).enabled); // Auto Check waits while it stands
    QCOMPARE(view->countdown, 1);
    Manual(ctx.check.frmMessage.timer).fire();
    QCOMPARE(view->countdown, 0);
    QVERIFY(ctx.shell.AutoMessageOpen);
    Manual(ctx.check.frmMessage.timer).fire();
    QVERIFY(!ctx.shell.AutoMessageOpen);
    QVERIFY(view->destroyed);
    QVERIFY(Manual(ctx.check.tmrMailTime).enabled);
}

QTEST_GUILESS_MAIN(NotificationTest)
#include "NotificationTest.moc"
