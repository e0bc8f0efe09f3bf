#include "platform/qt/GuardedTimer.h"

#include <QtTest>

using namespace velmora;

class GuardedTimerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tickIsNotDeliveredWhileItsHandlerRuns();
    void handlerMayDeleteItsOwnTimer();
    void enablingARunningTimerDoesNotRestartIt();
};

// The handler spins a nested event loop far longer than the interval, as a
// check walk does inside a blocking call. Other timers go on meanwhile.
void GuardedTimerTest::tickIsNotDeliveredWhileItsHandlerRuns() {
    GuardedTimer walk;
    GuardedTimer clock;
    int depth = 0;
    int deepest = 0;
    int walks = 0;
    int clockTicks = 0;
    walk.setInterval(10);
    walk.setHandler([&] {
        ++walks;
        deepest = std::max(deepest, ++depth);
        if (walks == 1) {
            QEventLoop nested;
            QTimer::singleShot(200, &nested, &QEventLoop::quit);
            nested.exec();
        }
        --depth;
    });
    clock.setInterval(10);
    clock.setHandler([&] { ++clockTicks; });
    walk.setEnabled(true);
    clock.setEnabled(true);

    QTRY_VERIFY_WITH_TIMEOUT(walks >= 3, 5000);
    QCOMPARE(deepest, 1);
    QVERIFY2(clockTicks >= 5, "other timers tick during the nested loop");
}

void GuardedTimerTest::handlerMayDeleteItsOwnTimer() {
    auto* timer = new GuardedTimer;
    bool ran = false;
    timer->setInterval(5);
    timer->setHandler([&] {
        ran = true;
        delete timer;
        timer = nullptr;
    });
    timer->setEnabled(true);
    QTRY_VERIFY(ran);
    QCOMPARE(timer, nullptr);
}

void GuardedTimerTest::enablingARunningTimerDoesNotRestartIt() {
    GuardedTimer timer;
    int ticks = 0;
    timer.setInterval(100);
    timer.setHandler([&] { ++ticks; });
    timer.setEnabled(true);
    QElapsedTimer elapsed;
    elapsed.start();
    // Re-enabling every 30 ms would hold a restarting timer off for good.
    while (ticks == 0 && elapsed.elapsed() < 2000) {
        QTest::qWait(30);
        timer.setEnabled(true);
    }
    QCOMPARE(ticks, 1);
    QVERIFY(elapsed.elapsed() < 1000);
    timer.setEnabled(false);
    QVERIFY(!timer.isEnabled());
}

QTEST_GUILESS_MAIN(GuardedTimerTest)
#include "GuardedTimerTest.moc"
