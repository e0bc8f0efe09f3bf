#include "platform/qt/widgets/HelpWindow.h"

#include <QScrollBar>
#include <QTextBrowser>
#include <QtTest>

using namespace velmora;

class HelpWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyTopicIsShipped_data();
    void everyTopicIsShipped();
    void refusedShowsNothing_data();
    void refusedShowsNothing();
    void unknownTopicKeepsTheOpenOne();
    void scrollsToTheTopic();
};

namespace {

// The help as it is shipped, in share/velmora beside bin/.
QString ShippedHelp() {
    return qEnvironmentVariable("VELMORA_BIN_DIR") + "/../share/velmora/help/velmora.html";
}

} // namespace

void HelpWindowTest::everyTopicIsShipped_data() {
    QTest::addColumn<int>("context");
    for (int context : {100, 130, 140, 150, 210, 220, 230, 240, 250, 260})
        QTest::newRow(qPrintable(QString::number(context))) << context;
}

void HelpWindowTest::everyTopicIsShipped() {
    QFETCH(int, context);
    HelpWindow help;
    QVERIFY(help.ShowTopic(ShippedHelp(), context));
    QWidget* window = help.widget();
    QVERIFY(window && window->isVisible());
    QCOMPARE(window->windowTitle(), QString("Velmora Help"));
    QCOMPARE(help.browser()->accessibleName(), QString("Help"));
    QCOMPARE(help.browser()->source().fragment(), HelpWindow::Anchor(context));
    QVERIFY(!help.browser()->toPlainText().trimmed().isEmpty());

    // Asked again, the same window answers.
    QVERIFY(help.ShowTopic(ShippedHelp(), 100));
    QCOMPARE(help.widget(), window);
}

void HelpWindowTest::refusedShowsNothing_data() {
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("context");
    QTest::newRow("unknown topic") << ShippedHelp() << 999;
    // A prefix of a real topic is not that topic.
    QTest::newRow("part of a topic") << ShippedHelp() << 10;
    QTest::newRow("missing file") << QString("/nonexistent/velmora.html") << 100;
    QTest::newRow("no file") << QString() << 100;
}

void HelpWindowTest::refusedShowsNothing() {
    QFETCH(QString, file);
    QFETCH(int, context);
    HelpWindow help;
    QVERIFY(!help.ShowTopic(file, context));
    QVERIFY(!help.widget());
}

void HelpWindowTest::unknownTopicKeepsTheOpenOne() {
    HelpWindow help;
    QVERIFY(help.ShowTopic(ShippedHelp(), 150));
    QVERIFY(!help.ShowTopic(ShippedHelp(), 999));
    QVERIFY(help.widget()->isVisible());
    QCOMPARE(help.browser()->source().fragment(), QString("topic-150"));
}

void HelpWindowTest::scrollsToTheTopic() {
    HelpWindow help;
    QVERIFY(help.ShowTopic(ShippedHelp(), 100));
    help.widget()->resize(400, 300);
    QVERIFY(QTest::qWaitForWindowExposed(help.widget()));
    QVERIFY(help.ShowTopic(ShippedHelp(), 260));
    QScrollBar* bar = help.browser()->verticalScrollBar();
    const int last = bar->value();
    QVERIFY(last > 0);
    QVERIFY(help.ShowTopic(ShippedHelp(), 100));
    QVERIFY(bar->value() < last);
}

QTEST_MAIN(HelpWindowTest)
#include "HelpWindowTest.moc"
