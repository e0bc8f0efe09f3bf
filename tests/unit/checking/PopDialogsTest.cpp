#include "checking/PopDialogs.h"
#include "checking/PopSession.h"
#include "platform/qt/QtPopClient.h"
#include "support/TestRig.h"

#include <QtTest>

using namespace velmora;

class PopDialogsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void connectionErrorWordForWord();
    void connectionErrorMessageLine_data();
    void connectionErrorMessageLine();
    void unexpectedErrorWordForWord();
    void portText_data();
    void portText();
    void everyBadPortGetsThePortBox_data();
    void everyBadPortGetsThePortBox();

private:
    // The one box a connection error shows for account "Home".
    static RecordedBoxes::Box show(int number, const QString& text, const QString& title,
                                   bool unexpected = false) {
        TestRig rig;
        rig.addAccount(1, "Home");
        rig.start();
        if (unexpected)
            ShowUnexpectedError(*rig.ctx, 1, number, text, title);
        else
            ShowConnectionError(*rig.ctx, 1, number, text, title);
        return rig.boxes.boxes.size() == 1 ? rig.boxes.boxes[0] : RecordedBoxes::Box();
    }
};

void PopDialogsTest::connectionErrorWordForWord() {
    const RecordedBoxes::Box box = show(30007, "The server rejected the password: [AUTH] failed",
                                        "Error Establishing Connection");
    QCOMPARE(box.title, QString("Velmora - Error Establishing Connection"));
    QCOMPARE(box.icon, BoxIcon::Critical);
    QCOMPARE(box.buttons, BoxButtons::Ok);
    QCOMPARE(box.text,
             QString("There was a problem encountered while accessing the Account: Home"
                     "               \r\n\r\n"
                     "Error Message:\r\n"
                     "30007 - The server rejected the password: [AUTH] failed\r\n\r\n"
                     "There could be other possiblities for this error. Please ensure all Account"
                     "          \r\n"
                     "Information is accurate and your connection is established.\r\n\r\n"
                     "For further assistance please try Help or contact your Service Provider\r\n"
                     "if this problem persists.\r\n\r\n"));
}

// The words of resets, time-outs and TLS failures also come through the
// client tests; these are the cases they do not reach.
void PopDialogsTest::connectionErrorMessageLine_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("deleteNote");
    QTest::newRow("other winsock numbers keep the client's text")
        << 11001 << "11001 - client text" << false;
    QTest::newRow("30000 lies outside the winsock range")
        << 30000 << "30000 - client text" << false;
    QTest::newRow("deletion adds its note")
        << 10060 << "10060 - Winsock Error - Connection Timed Out" << true;
}

void PopDialogsTest::connectionErrorMessageLine() {
    QFETCH(int, number);
    QFETCH(QString, line);
    QFETCH(bool, deleteNote);
    const QString title =
        deleteNote ? "Delete Connection Failure" : "Error Establishing Connection";
    const QString text = show(number, "client text", title).text;
    QVERIFY2(text.contains("Error Message:\r\n" + line + "\r\n\r\nThere could be") != deleteNote,
             qPrintable(text));
    const QString note =
        "Note:  Message(s) were NOT Deleted because the connection failed.\r\n\r\n";
    QCOMPARE(text.contains(line + "\r\n\r\n" + note + "There could be"), deleteNote);
}

void PopDialogsTest::unexpectedErrorWordForWord() {
    const RecordedBoxes::Box box = show(13, "Type mismatch", "Test Connection Failure", true);
    QCOMPARE(box.title, QString("Velmora - Test Connection Failure"));
    QCOMPARE(
        box.text,
        QString("There was a problem encountered while accessing the Account: Home"
                "               \r\n\r\n"
                "Error Message:\r\n13 - Type mismatch\r\n\r\n"
                "Please report this error to Kestrum with the Number\r\n"
                "and Description of the error.\r\n\r\n"
                "Note: This is an unexpected error. It would be very helpful to also include\r\n"
                "the Title Bar text and any relevant details that might assist in tracking "
                "the\r\n"
                "cause of this error. Thank you for your assistance.\r\n\r\n"
                "Email: support@kestrum.example\r\n\r\n"));
}

// What this refuses shows in the port box below.
void PopDialogsTest::portText_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("port");
    QTest::newRow("blanks around") << " 995 " << 995;
    QTest::newRow("beyond 16 bits is kept for the client to refuse") << "70000" << 70000;
}

void PopDialogsTest::portText() {
    QFETCH(QString, text);
    QFETCH(int, port);
    QCOMPARE(PortNumber(text), port);
}

// "x" once gave "13 - Type mismatch ... please report" where 0 and 70000
// name the port.
void PopDialogsTest::everyBadPortGetsThePortBox_data() {
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("line");
    const QString outside = "30002 - Port %1 is outside 1 to 65535";
    const QString notNumber = "30002 - Port \"%1\" is not a number from 1 to 65535";
    QTest::newRow("zero") << "0" << outside.arg(0);
    QTest::newRow("past 65535") << "70000" << outside.arg(70000);
    QTest::newRow("not a number") << "x" << notNumber.arg("x");
    QTest::newRow("blank") << "" << notNumber.arg("");
    QTest::newRow("past 32 bits") << "99999999999" << notNumber.arg("99999999999");
}

void PopDialogsTest::everyBadPortGetsThePortBox() {
    QFETCH(QString, port);
    QFETCH(QString, line);
    // The real client: it refuses a port before any connection is made.
    QtPopClientFactory client;
    for (const bool test : {true, false}) {
        TestRig rig;
        rig.addAccount(1, "Home");
        rig.settings.set("Settings\\AcntPort1", port);
        rig.ctx->svc.pop = &client;
        QVERIFY(rig.start());
        if (test)
            TestConnection(*rig.ctx, 1);
        else
            RetrieveAccount(*rig.ctx, 1);
        QCOMPARE(rig.boxes.boxes.size(), 1);
        const RecordedBoxes::Box box = rig.boxes.boxes[0];
        QCOMPARE(box.title, test ? QString("Velmora - Test Connection Failure")
                                 : QString("Velmora - Error Establishing Connection"));
        QVERIFY2(box.text.contains("Error Message:\r\n" + line + "\r\n\r\nThere could be"),
                 qPrintable(box.text));
        // Silenced with the other connection errors.
        if (!test) {
            rig.boxes.boxes.clear();
            rig.ctx->options.SuppressConnectErrors = 1;
            RetrieveAccount(*rig.ctx, 1);
            QCOMPARE(rig.boxes.boxes.size(), 0);
        }
    }
}

QTEST_GUILESS_MAIN(PopDialogsTest)
#include "PopDialogsTest.moc"
