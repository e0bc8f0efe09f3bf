#include "app/Preview.h"
#include "app/frmMainEvents.h"
#include "checking/CheckCycle.h"
#include "platform/Controls.h"
#include "support/TestRig.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace velmora;

// frmPreview on the real logic: what it shows, what each of its buttons
// does, and the list's Reply, Open and New beside it.
class PreviewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void showsTheSelectedMessageWhole();
    void secondPreviewRaisesTheOpenOne();
    void activationFocusesTheBody_data();
    void activationFocusesTheBody();
    void buttonsGoByCaption();
    void printsWhatTheTabShows_data();
    void printsWhatTheTabShows();
    void printerFailureIsSaid();
    void saveProposesTheCleanedSubject();
    void cancelledSaveWritesInTheCurrentFolder();
    void openFallsBackToMsgThenSaysSo_data();
    void openFallsBackToMsgThenSaysSo();
    void replyAndNewGoToTheMailProgram();
    void deleteTakesTheRowAndUnloads();
};

namespace {

struct Started {
    std::unique_ptr<TestRig> rig;
    std::unique_ptr<frmMainEvents> events;
    AppContext& ctx() { return *rig->ctx; }
    StatePreviewView& preview() { return rig->windows.preview; }

    void clickRow(int row) {
        for (int r = 1; r <= rig->view.messageList.rowCount(); ++r)
            rig->view.messageList.setRowSelected(r, r == row);
        rig->view.messageList.setCurrentRow(row);
        events->ListRowClick(row);
    }
    void button(const QString& key) {
        preview().handlers.buttonClick(preview().captions.value(key));
    }
};

MailMessage Stored(int n, const QString& body) {
    MailMessage m;
    m.From = "Ann <ann@example.com>";
    m.To = "me@example.com";
    m.Subject = QString("[Re]: plan/%1?").arg(n);
    m.Date = "Mar 05, 2026 09:15:00 AM";
    m.Raw = QString("Subject: plan %1\r\nX-Id: %1").arg(n);
    m.Body = body;
    return m;
}

// Home with three messages, Auto Check on, and the second row clicked.
Started Start(const QString& body = "Hello\r\nthere") {
    Started s{std::make_unique<TestRig>(), nullptr};
    s.rig->settings.set("Settings\\FirstUse", "1");
    s.rig->settings.set("Settings\\Options\\UseInterval", "1");
    s.rig->addAccount(1, "Home");
    s.rig->mailbox("Home").mail = {"a", "b", "c"};
    s.rig->start();
    s.events = std::make_unique<frmMainEvents>(s.ctx());
    CheckAllAccounts(s.ctx());
    for (int n = 1; n <= 3; ++n)
        s.ctx().messages.at(1, n) = Stored(n, n == 2 ? body : QString("other"));
    s.clickRow(2);
    return s;
}

} // namespace

void PreviewTest::showsTheSelectedMessageWhole() {
    const QString longBody = QString(150000, 'x') + "end";
    Started s = Start(longBody);
    QVERIFY(s.rig->view.isEnabled(Button(ctl::tbrEmail, "EmailPreview")));
    s.events->ListDoubleClick(2);
    StatePreviewView& p = s.preview();
    QVERIFY(s.ctx().shell.PreviewOpen);
    QVERIFY(p.shown);
    QCOMPARE(p.caption, QString("Velmora - Preview  "));
    QCOMPARE(QStringList({p.from, p.to, p.date, p.subject}),
             QStringList({"Ann <ann@example.com>", "me@example.com", "Mar 05, 2026 09:15:00 AM",
                          "[Re]: plan/2?"}));
    QCOMPARE(p.body, longBody);
    QCOMPARE(p.raw, "Subject: plan 2\r\nX-Id: 2\r\n\r\n" + longBody);
    QCOMPARE(p.tabs, QStringList({"Body (Plain Text Only)", "Raw Message"}));
    QCOMPARE(p.side, 1);
    QCOMPARE(p.captions.value("Exit Preview"), QString("Exit Preview     "));
    QCOMPARE(p.tips.value("Open"), QString("Open with Email Client"));
    // Auto Check waits while it is open, and goes on when it closes.
    QVERIFY(!s.ctx().check.tmrMailTime->isEnabled());
    p.handlers.close();
    QVERIFY(!s.ctx().shell.PreviewOpen);
    QVERIFY(!p.shown);
    QVERIFY(s.ctx().check.tmrMailTime->isEnabled());
    QVERIFY(s.rig->files.removed.contains("/temp/temporary.eml"));
    QVERIFY(s.rig->files.removed.contains("/temp/temporary.msg"));
}

void PreviewTest::secondPreviewRaisesTheOpenOne() {
    Started s = Start();
    s.events->ToolbarButtonClick(ctl::tbrEmail, "EmailPreview");
    s.preview().handlers.tabClick(2);
    s.clickRow(3);
    s.events->ToolbarButtonClick(ctl::tbrEmail, "EmailPreview");
    // Still the second message, on the tab the user left it on.
    QCOMPARE(s.preview().subject, QString("[Re]: plan/2?"));
    QCOMPARE(s.preview().side, 2);
    QCOMPARE(s.preview().raises, 1);
}

void PreviewTest::activationFocusesTheBody_data() {
    QTest::addColumn<int>("tab");
    QTest::addColumn<bool>("reportOpen");
    QTest::addColumn<bool>("focused");
    QTest::newRow("body showing") << 1 << false << true;
    QTest::newRow("raw text showing") << 2 << false << false;
    QTest::newRow("under the Rule Report") << 1 << true << false;
}

void PreviewTest::activationFocusesTheBody() {
    QFETCH(int, tab);
    QFETCH(bool, reportOpen);
    QFETCH(bool, focused);
    Started s = Start();
    s.events->ListDoubleClick(2);
    s.preview().handlers.tabClick(tab);
    s.ctx().shell.RuleReportOpen = reportOpen;
    s.preview().handlers.activated();
    QCOMPARE(s.preview().bodyFocused, focused);
}

void PreviewTest::buttonsGoByCaption() {
    Started s = Start();
    s.events->ListDoubleClick(2);
    // The handler reads the caption, blanks trimmed; the key is not asked.
    s.preview().handlers.buttonClick("  Exit Preview ");
    QVERIFY(!s.ctx().shell.PreviewOpen);
    // A closed window's buttons do nothing.
    s.button("Reply");
    QVERIFY(s.rig->headless.shell.compositions.isEmpty());
}

void PreviewTest::printsWhatTheTabShows_data() {
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("last");
    QTest::newRow("body") << 1 << "Hello\r\nthere";
    QTest::newRow("raw") << 2 << "Subject: plan 2\r\nX-Id: 2\r\n\r\nHello\r\nthere";
}

void PreviewTest::printsWhatTheTabShows() {
    QFETCH(int, tab);
    QFETCH(QString, last);
    Started s = Start();
    s.events->ListDoubleClick(2);
    s.preview().handlers.tabClick(tab);
    s.button("Print");
    QCOMPARE(s.rig->headless.printer.documents.size(), 1);
    const PrintDocument& d = s.rig->headless.printer.documents.first();
    QCOMPARE(d.pointSize, 10);
    QCOMPARE(d.marginTwips, 360);
    QList<bool> bold;
    QStringList texts;
    for (const PrintRun& run : d.runs) {
        bold << run.bold;
        texts << run.text;
    }
    QCOMPARE(bold, QList<bool>({true, false, true, false, true, false, true, false, false, false}));
    QCOMPARE(texts.mid(0, 8),
             QStringList({"From:  ", "Ann <ann@example.com>\r\n", "To:  ", "me@example.com\r\n",
                          "Date:  ", "Mar 05, 2026 09:15:00 AM\r\n",
                          "Subject:  ", "[Re]: plan/2?\r\n"}));
    QCOMPARE(texts[8], QString(97, '_') + "\r\n\r\n");
    QCOMPARE(texts[9], last);
    QVERIFY(s.rig->boxes.boxes.isEmpty());
    QVERIFY(s.ctx().shell.PreviewOpen);
}

void PreviewTest::printerFailureIsSaid() {
    Started s = Start();
    s.rig->headless.printer.failure = "No default printer is set up.";
    s.events->ListDoubleClick(2);
    s.button("Print");
    QCOMPARE(s.rig->boxes.boxes.size(), 1);
    QCOMPARE(s.rig->boxes.boxes[0].title, QString("Velmora - Print Failed"));
    QVERIFY(s.rig->boxes.boxes[0].text.endsWith("No default printer is set up."));
}

void PreviewTest::saveProposesTheCleanedSubject() {
    QTemporaryDir dir;
    Started s = Start();
    s.rig->headless.dialogs.fileAnswers = {dir.filePath("kept.txt")};
    s.events->ListDoubleClick(2);
    s.button("Save");
    const ScriptedDialogs::Request& asked = s.rig->headless.dialogs.requests.value(0);
    QCOMPARE(asked.kind, QString("save"));
    QCOMPARE(asked.initialPath, QString("/program/Re plan2"));
    QCOMPARE(asked.filter,
             QString("OutLook Express (*.eml);;Email Message (*.msg);;Text File (*.txt)"));
    QFile saved(dir.filePath("kept.txt"));
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), QByteArray("Subject: plan 2\r\nX-Id: 2\r\n\r\nHello\r\nthere\r\n"));
    QVERIFY(s.ctx().shell.PreviewOpen);
}

void PreviewTest::cancelledSaveWritesInTheCurrentFolder() {
    QTemporaryDir dir;
    const QString before = QDir::currentPath();
    QDir::setCurrent(dir.path());
    Started s = Start();
    s.rig->headless.dialogs.fileAnswers = {"cancel"};
    s.events->ListDoubleClick(2);
    s.button("Save");
    QDir::setCurrent(before);
    QVERIFY(QFile::exists(dir.filePath("Re plan2")));
}

void PreviewTest::openFallsBackToMsgThenSaysSo_data() {
    QTest::addColumn<bool>("opens");
    QTest::newRow("no handler") << false;
    QTest::newRow("eml handled") << true;
}

void PreviewTest::openFallsBackToMsgThenSaysSo() {
    QFETCH(bool, opens);
    Started s = Start();
    s.rig->headless.shell.succeeds = opens;
    s.events->ToolbarButtonClick(ctl::tbrEmail, "EmailOpen");
    QStringList targets;
    for (const RecordedShell::Request& r : s.rig->headless.shell.requests)
        targets << r.target;
    if (opens) {
        QCOMPARE(targets, QStringList({"/temp/temporary.eml"}));
        QVERIFY(s.rig->boxes.boxes.isEmpty());
        return;
    }
    QCOMPARE(targets, QStringList({"/temp/temporary.eml", "/temp/temporary.msg"}));
    QCOMPARE(s.rig->boxes.boxes.size(), 1);
    const RecordedBoxes::Box& box = s.rig->boxes.boxes[0];
    QCOMPARE(box.title, QString("Velmora - Open Message Failed"));
    QCOMPARE(box.icon, BoxIcon::Information);
    QCOMPARE(box.text, "The message failed to open using\r\nyour Default Email Client.\r\n\r\n"
                       "If this problem occurs for every message\r\nyou attempt to Open please "
                       "report this to\r\nKestrum for further          \r\nanalysis. Please "
                       "include the name of your\r\nEmail program.\r\n\r\nEmail: " +
                           QString(VELMORA_SUPPORT_ADDRESS));
}

void PreviewTest::replyAndNewGoToTheMailProgram() {
    Started s = Start();
    s.events->ListDoubleClick(2);
    s.button("Reply");
    s.events->ToolbarButtonClick(ctl::tbrEmail, "EmailReply");
    const QList<RecordedShell::Composition>& c = s.rig->headless.shell.compositions;
    QCOMPARE(c.size(), 2);
    QCOMPARE(c[0].recipient, QString("Ann <ann@example.com>"));
    QCOMPARE(c[0].subject, QString("Re: [Re]: plan/2?"));
    QVERIFY(c[0].body.endsWith("Subject: [Re]: plan/2?\r\n\r\n\r\n>Hello\r\n>there"));
    QCOMPARE(c[1].body, c[0].body);

    s.events->ToolbarButtonClick(ctl::tbrEmail, "EmailNew");
    QCOMPARE(s.rig->headless.shell.requests.last().target, QString("mailto:"));
}

void PreviewTest::deleteTakesTheRowAndUnloads() {
    Started s = Start();
    s.rig->boxes.answers = {BoxAnswer::Yes};
    s.events->ListDoubleClick(2);
    s.button("Delete");
    QVERIFY(!s.ctx().shell.PreviewOpen);
    QVERIFY(!s.preview().shown);
    QCOMPARE(s.ctx().accounts[1].AcntMsgCount, 2);
    QCOMPARE(s.ctx().messages.at(1, 2).Subject, QString("[Re]: plan/3?"));
    QCOMPARE(s.rig->boxes.boxes.size(), 1); // the question
    QVERIFY(!s.ctx().check.InterfaceHeld);
}

QTEST_GUILESS_MAIN(PreviewTest)
#include "PreviewTest.moc"
