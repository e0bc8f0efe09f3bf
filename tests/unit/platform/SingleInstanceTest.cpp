#include "support/SandboxEnvironment.h"

#include <QtTest>

using namespace velmora;

// Two real processes of the desktop program on one user's folders.
class SingleInstanceTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void secondStartLeavesAtOnce();
    void lockOfACrashedRunIsTakenOver();

private:
    QString program() const { return qEnvironmentVariable("VELMORA_BIN_DIR") + "/velmora"; }
    void startFirst(QProcess& first, const SandboxEnvironment& sandbox);
};

void SingleInstanceTest::startFirst(QProcess& first, const SandboxEnvironment& sandbox) {
    first.setProgram(program());
    first.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    first.start();
    QVERIFY(first.waitForStarted());
    // Started once it holds the lock and has written its first-run keys.
    const QString settings = sandbox.configHome() + "/Kestrum/Velmora.conf";
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(settings), 10000);
}

void SingleInstanceTest::secondStartLeavesAtOnce() {
    SandboxEnvironment sandbox;
    QProcess first;
    startFirst(first, sandbox);
    const QString settings = sandbox.configHome() + "/Kestrum/Velmora.conf";
    QTest::qWait(200);
    const QDateTime written = QFileInfo(settings).lastModified();

    QProcess second;
    QElapsedTimer elapsed;
    elapsed.start();
    second.start(program(), {});
    QVERIFY(second.waitForFinished(10000));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(elapsed.elapsed() < 5000);
    QCOMPARE(QFileInfo(settings).lastModified(), written);
    QCOMPARE(first.state(), QProcess::Running);

    first.terminate();
    QVERIFY(first.waitForFinished(10000));
}

void SingleInstanceTest::lockOfACrashedRunIsTakenOver() {
    SandboxEnvironment sandbox;
    QProcess crashed;
    startFirst(crashed, sandbox);
    crashed.kill();
    QVERIFY(crashed.waitForFinished(10000));

    QProcess next;
    next.start(program(), {});
    QVERIFY(next.waitForStarted());
    QVERIFY2(!next.waitForFinished(1500), "a new start runs after a crash");
    next.terminate();
    QVERIFY(next.waitForFinished(10000));
}

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
