#include "context/ShellCalls.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

// An account as the tray sees it: counts, colour field and flags of
// e (enabled), k (checked), c (connected).
struct TrayRow {
    int msgs, fresh, colour;
    QString flags;
};
using Accounts = QList<TrayRow>;
using Ticks = QList<QList<int>>;

Q_DECLARE_METATYPE(Accounts)
Q_DECLARE_METATYPE(Ticks)

class TrayTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void walk_data();
    void walk();
    void longTipIsCutForTheWindowToo();
    void shownWindowKeepsItsPicture();
};

namespace {

const QString LastCheck = QStringLiteral("Checked: 4:21 PM on Nov 15/26");

std::unique_ptr<TestRig> Started(const Accounts& accounts, int showNewOnly) {
    auto rig = std::make_unique<TestRig>();
    rig->settings.set("Settings\\FirstUse", "1");
    rig->settings.set("Settings\\Options\\ShowNewOnly", QString::number(showNewOnly));
    for (int n = 1; n <= accounts.size(); ++n)
        rig->addAccount(n, "Box" + QString::number(n));
    rig->clock.set("2026-11-15T16:21:00");
    rig->start();
    AppContext& ctx = *rig->ctx;
    for (int n = 1; n <= accounts.size(); ++n) {
        const TrayRow& t = accounts[n - 1];
        Account& a = ctx.accounts[n];
        a.AcntMsgCount = t.msgs;
        a.AcntNewCount = t.fresh;
        a.AcntColourIndex = t.colour;
        a.AcntEnabled = t.flags.contains('e') ? 1 : 0;
        a.AcntChecked = t.flags.contains('k');
        a.AcntConnected = t.flags.contains('c');
    }
    ctx.accounts[0].AcntLastCheckText = LastCheck;
    rig->view.setWindowState(WindowState::Minimized);
    return rig;
}

} // namespace

void TrayTest::walk_data() {
    QTest::addColumn<Accounts>("accounts");
    QTest::addColumn<int>("showNewOnly");
    QTest::addColumn<Ticks>("pictures");
    QTest::addColumn<QString>("tip");
    const QString nl = "\r\n";
    QTest::newRow("nothing checked yet") << Accounts{{3, 0, 5, "e"}} << 0 << Ticks{{8}, {8}}
                                         << "No Connection has been established.";
    QTest::newRow("7: one digit, then the plain pause")
        << Accounts{{7, 0, 5, "ekc"}} << 0 << Ticks{{5, 40, 17}, {7}, {5, 40, 17}}
        << LastCheck + nl + "7 Message(s) in 1 Account(s).";
    QTest::newRow("0 shows the digit 0") << Accounts{{0, 0, 2, "ekc"}} << 0 << Ticks{{2, 40, 10}}
                                         << LastCheck + nl + "0 Message(s) in 1 Account(s).";
    QTest::newRow("42: tens under units") << Accounts{{42, 0, 1, "ekc"}} << 0 << Ticks{{1, 33, 22}}
                                          << LastCheck + nl + "42 Message(s) in 1 Account(s).";
    QTest::newRow("99 still two digits") << Accounts{{99, 99, 6, "ekc"}} << 1 << Ticks{{6, 38, 29}}
                                         << LastCheck + nl + "99 New Message(s) in 1 Account(s).";
    QTest::newRow("100 with 3 new shown: the mark, since both counts are tested")
        << Accounts{{100, 3, 3, "ekc"}} << 1 << Ticks{{3, 40, 39}}
        << LastCheck + nl + "3 New Message(s) in 1 Account(s).";
    QTest::newRow("new only shows the new count")
        << Accounts{{12, 4, 4, "ekc"}} << 1 << Ticks{{4, 40, 14}}
        << LastCheck + nl + "4 New Message(s) in 1 Account(s).";
    QTest::newRow("a failed account walks but is not summed")
        << Accounts{{5, 0, 1, "ekc"}, {2, 0, 2, "ek"}} << 0
        << Ticks{{1, 40, 15}, {2, 40, 12}, {7}, {1, 40, 15}}
        << LastCheck + nl + "5 Message(s) in 1 Account(s).";
    QTest::newRow("three accounts wrap with the plain tick")
        << Accounts{{1, 0, 1, "ekc"}, {2, 0, 2, "ekc"}, {3, 0, 3, "ekc"}} << 0
        << Ticks{{1, 40, 11}, {2, 40, 12}, {3, 40, 13}, {7},
                 {1, 40, 11}, {2, 40, 12}, {3, 40, 13}, {7}}
        << LastCheck + nl + "6 Message(s) in 3 Account(s).";
    QTest::newRow("a disabled account is summed but skipped in the walk")
        << Accounts{{1, 0, 1, "ekc"}, {20, 0, 2, "kc"}} << 0 << Ticks{{1, 40, 11}, {7}}
        << LastCheck + nl + "21 Message(s) in 2 Account(s).";
    QTest::newRow("an unchecked account is skipped")
        << Accounts{{1, 0, 1, "e"}, {2, 0, 2, "ekc"}} << 0 << Ticks{{2, 40, 12}, {7}}
        << LastCheck + nl + "2 Message(s) in 1 Account(s).";
}

void TrayTest::walk() {
    QFETCH(Accounts, accounts);
    QFETCH(int, showNewOnly);
    QFETCH(Ticks, pictures);
    QFETCH(QString, tip);
    auto rig = Started(accounts, showNewOnly);
    for (int tick = 0; tick < pictures.size(); ++tick) {
        UpdateTrayIcon(*rig->ctx);
        QCOMPARE(rig->view.tray().picture(), pictures[tick]);
        // A day's "Checked:" text with "New" already fills the field.
        QCOMPARE(rig->view.tray().tip(), tip.left(63));
    }
}

void TrayTest::longTipIsCutForTheWindowToo() {
    auto rig = Started({{1, 0, 1, "ekc"}}, 0);
    rig->ctx->accounts[0].AcntLastCheckText = QString(70, 'x');
    UpdateTrayIcon(*rig->ctx);
    QCOMPARE(rig->view.tray().tip(), QString(63, 'x'));
    rig->ctx->accounts[0].AcntLastCheckText = QString(55, 'x');
    UpdateTrayIcon(*rig->ctx);
    QCOMPARE(rig->view.tray().tip(), QString(55, 'x') + "\r\n1 Mess");
}

void TrayTest::shownWindowKeepsItsPicture() {
    auto rig = Started({{7, 0, 5, "ekc"}}, 0);
    rig->view.setWindowState(WindowState::Normal);
    rig->view.tray().modify({TrayPlain}, "Velmora");
    UpdateTrayIcon(*rig->ctx);
    QCOMPARE(rig->view.tray().picture(), QList<int>{TrayPlain});
    QCOMPARE(rig->ctx->shell.TrayAccount, 0);
}

QTEST_GUILESS_MAIN(TrayTest)
#include "TrayTest.moc"
