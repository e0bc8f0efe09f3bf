#include "app/UiScript.h"
#include "app/frmMainEvents.h"
#include "support/ScratchFile.h"
#include "support/TestRig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QtTest>

using namespace velmora;

class UiScriptTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void badLinesStopTheScript_data();
    void badLinesStopTheScript();
    void clicksReachOnlyWhatAUserCouldReach();
    void ticksReachTheirTimers();
    void pointerRestsOnAStatusPanel_data();
    void pointerRestsOnAStatusPanel();

private:
    struct Outcome {
        int status;
        QJsonObject shown;
        QString out, err;
    };
    static Outcome run(TestRig& rig, const QByteArray& script) {
        ScratchFile file("script.txt");
        file.write(script);
        frmMainEvents events(*rig.ctx);
        Outcome o;
        QTextStream out(&o.out), err(&o.err);
        o.status =
            RunUiScript({*rig.ctx, rig.view, rig.headless, events}, file.path(), false, out, err);
        out.flush();
        o.shown = QJsonDocument::fromJson(o.out.toUtf8()).object();
        return o;
    }
    static std::unique_ptr<TestRig> started(int accounts) {
        auto rig = std::make_unique<TestRig>();
        for (int n = 1; n <= accounts; ++n)
            rig->addAccount(n, n == 1 ? "Home" : "Work");
        rig->settings.set("Settings\\FirstUse", "1");
        rig->start();
        return rig;
    }
};

void UiScriptTest::badLinesStopTheScript_data() {
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("error");
    auto row = [](const char* name, const char* script, const char* error) {
        QTest::newRow(name) << QByteArray(script) << QString(error);
    };
    row("unknown verb", "# comment\n\npush tbrButtons(3)\n", "line 3: unknown verb 'push'");
    row("unknown control", "click tbrEmail/NoSuch\n", "line 1: no control named 'tbrEmail/NoSuch'");
    row("not clickable", "click lblBanner\n", "line 1: 'lblBanner' cannot be clicked");
    row("wrong kind", "set lblBanner hello\n", "line 1: 'lblBanner' offers no such operation");
    row("missing argument", "tab TabStripEmail\n", "line 1: tab needs 2 argument(s)");
    row("no such tab", "tab TabStripEmail 9\n", "line 1: TabStripEmail has no tab 9");
    row("bad number", "wait soon\n", "line 1: a wait must be a whole number, not 'soon'");
    row("no such timer", "tick tmrNever\n", "line 1: no timer named 'tmrNever'");
    row("bad answer", "answer Maybe\n", "line 1: answer takes Yes, No, Cancel or OK, not 'Maybe'");
    row("empty list", "row 1\n", "line 1: the list has no row 1");
}

void UiScriptTest::badLinesStopTheScript() {
    QFETCH(QByteArray, script);
    QFETCH(QString, error);
    auto rig = started(1);
    const Outcome o = run(*rig, script);
    QCOMPARE(o.status, 2);
    QCOMPARE(o.err.trimmed(), "velmora-cli: " + error);
    QVERIFY(o.out.isEmpty());
}

// With no account, Check All is disabled and the Email page's toolbar too:
// a script cannot click what a user could not, and says so.
void UiScriptTest::clicksReachOnlyWhatAUserCouldReach() {
    auto rig = started(0);
    const Outcome o = run(*rig, "click tbrButtons(3)\n"
                                "click tbrMainButtons/Options\n"
                                "click tbrButtons(0)\n"
                                "click tbrMainButtons/Accounts\n");
    QCOMPARE(o.status, 0);
    QCOMPARE(o.shown["page"].toString(), QString("Accounts"));
    const QJsonArray refused = o.shown["refused"].toArray();
    QCOMPARE(refused.size(), 2);
    QCOMPARE(refused[0].toObject()["why"].toString(), QString("tbrButtons(3) is disabled"));
    // Help of the Email page lies on a page that is not showing.
    QCOMPARE(refused[1].toObject()["why"].toString(), QString("fraMain(0) is hidden"));
    QVERIFY(o.shown["shell"].toArray().isEmpty());
    const QJsonObject controls = o.shown["controls"].toObject();
    QCOMPARE(controls["tbrButtons(3)"].toObject()["enabled"].toBool(), false);
    QCOMPARE(controls["tbrMainButtons/Accounts"].toObject()["caption"].toString(),
             QString("Accounts  "));
}

void UiScriptTest::ticksReachTheirTimers() {
    TestRig fresh;
    fresh.addAccount(1, "Home");
    fresh.settings.set("Settings\\FirstUse", "1");
    fresh.settings.set("Settings\\Options\\EmailCheckStartUp", "1");
    fresh.settings.set("Settings\\Options\\StartUpDelay", "30");
    fresh.mailbox("Home").mail = {"a"};
    fresh.start();
    const Outcome o = run(fresh, "tick tmrMailStartUp 3\n"
                                 "click tbrButtons(0)\n");
    QCOMPARE(o.status, 0);
    QCOMPARE(o.shown["status"].toArray()[2].toString(), QString("StartUp Check: 28 sec"));
    const QJsonArray help = o.shown["help"].toArray();
    QCOMPARE(help.size(), 1);
    QCOMPARE(help[0].toObject()["topic"].toInt(), 130);
}

void UiScriptTest::pointerRestsOnAStatusPanel_data() {
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("tip");
    QTest::newRow("status") << QByteArray("point 1\n") << "Home";
    QTest::newRow("not checked") << QByteArray("point 3\n") << "Not Checked";
    QTest::newRow("auto check off") << QByteArray("point 4\n") << "Auto Check is Off";
    QTest::newRow("right of the last") << QByteArray("point 4\npoint 0\n") << "";
}

void UiScriptTest::pointerRestsOnAStatusPanel() {
    QFETCH(QByteArray, script);
    QFETCH(QString, tip);
    auto rig = started(1);
    const Outcome o = run(*rig, script);
    QCOMPARE(o.status, 0);
    QCOMPARE(o.shown["statusTip"].toString(), tip);
}

QTEST_GUILESS_MAIN(UiScriptTest)
#include "UiScriptTest.moc"
