#include "app/CommandLine.h"
#include "support/TestRig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QtTest>

using namespace velmora;

class CheckCommandTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void statusBarAndTrayOfTheLastPass();
};

namespace {

QList<QJsonObject> Run(TestRig& rig, const QStringList& arguments) {
    QString printed, errors;
    QTextStream out(&printed), err(&errors);
    const int status = RunCommandLine(*rig.ctx, rig.view, rig.headless, arguments, out, err);
    out.flush();
    err.flush();
    if (status != 0)
        qWarning() << errors;
    QList<QJsonObject> lines;
    for (const QString& line : printed.split('\n', Qt::SkipEmptyParts))
        lines << QJsonDocument::fromJson(line.toUtf8()).object();
    return lines;
}

} // namespace

// Home holds three new messages, Work cannot be reached.
void CheckCommandTest::statusBarAndTrayOfTheLastPass() {
    TestRig rig;
    rig.settings.set("Settings\\FirstUse", "1");
    rig.addAccount(1, "Home");
    rig.addAccount(2, "Work");
    rig.settings.set("Settings\\AcntColourIndex2", "3");
    rig.mailbox("Home").mail = {"a", "b", "c"};
    rig.mailbox("Work").connectFailure = 1;
    rig.clock.set("2026-11-15T16:21:00");
    const QList<QJsonObject> passes =
        Run(rig, {"check", "--json", "--repeat", "2", "--tray-ticks", "4"});
    QCOMPARE(passes.size(), 2);
    QVERIFY(!passes[0].contains("tray"));

    const QJsonObject bar = passes[1]["statusBar"].toObject();
    QCOMPARE(bar["panels"].toArray().at(0).toString(), QString("Home - 3 Messages"));
    QCOMPARE(bar["picture"].toString(), QString("Normal"));
    const QJsonArray tips = bar["tips"].toArray();
    QCOMPARE(tips.size(), 5);
    QCOMPARE(tips.at(0).toString(), QString("Home - 3 Messages"));
    QCOMPARE(tips.at(1).toString(), QString("3 Messages"));
    QCOMPARE(tips.at(2).toString(), QString("Last Check: November 15, 2026 at 4:21 PM"));
    QCOMPARE(tips.at(4).toString(), QString("Current: November 15, 2026 4:21 PM"));

    // The failed account takes its turn but is not counted.
    const QJsonArray tray = passes[1]["tray"].toArray();
    const QList<QList<int>> pictures = {{5, 40, 13}, {3, 40, 10}, {7}, {5, 40, 13}};
    QCOMPARE(tray.size(), pictures.size());
    for (int tick = 0; tick < tray.size(); ++tick) {
        QList<int> picture;
        for (const QJsonValue& image : tray.at(tick)["picture"].toArray())
            picture << image.toInt();
        QCOMPARE(picture, pictures[tick]);
        QVERIFY(tray.at(tick)["tip"].toString().endsWith("\r\n3 Message(s) in 1 Account(s)."));
    }
}

QTEST_GUILESS_MAIN(CheckCommandTest)
#include "CheckCommandTest.moc"
