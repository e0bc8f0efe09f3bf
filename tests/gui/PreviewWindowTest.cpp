#include "platform/qt/widgets/PreviewWindow.h"
#include "app/PrintDocument.h"
#include "platform/qt/QtPrinter.h"
#include "support/ScratchFile.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

using namespace velmora;

// The preview on screen and the printed page: texts shown whole and as
// plain text, controls named for assistive tools, and pages that break
// where the text runs out of room.
class PreviewWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void showsPlainTextWhole();
    void reportsTabsAndButtonsByCaption();
    void controlsCarryTheirNames();
    void keepsItsMinimumSize();
    void quitClosesAnOpenPreview();
    void printsPagesToPdf_data();
    void printsPagesToPdf();
    void unwritablePdfIsSaid();
};

namespace {

MailMessage Message(const QString& body) {
    MailMessage m;
    m.From = "Ann <ann@example.com>";
    m.To = "me@example.com";
    m.Subject = "Plan";
    m.Date = "Mar 05, 2026 09:15:00 AM";
    m.Raw = "Subject: Plan\r\nFrom: Ann <ann@example.com>";
    m.Body = body;
    return m;
}

int PdfPages(const QByteArray& pdf) {
    // Each page object names its type; the page tree is "/Pages".
    return int(pdf.count("/Type /Page\n") + pdf.count("/Type /Page ") + pdf.count("/Type /Page/") +
               pdf.count("/Type /Page>"));
}

} // namespace

void PreviewWindowTest::showsPlainTextWhole() {
    PreviewWindow preview;
    const QString markup = "<b>not bold</b>\r\n" + QString(120000, 'x') + "end";
    preview.setTexts(markup, "Raw\r\n\r\n" + markup);
    preview.showWindow();
    auto* body = preview.widget()->findChild<QPlainTextEdit*>("rtbBody");
    QVERIFY(body);
    const QString shown = body->toPlainText();
    QVERIFY(shown.startsWith("<b>not bold</b>"));
    QVERIFY(shown.endsWith("end"));
    QCOMPARE(shown.size(), QString(markup).remove('\r').size());
    QVERIFY(body->isReadOnly());
}

void PreviewWindowTest::reportsTabsAndButtonsByCaption() {
    PreviewWindow preview;
    QList<int> tabs;
    QStringList captions;
    preview.setHandlers({[&](int tab) { tabs << tab; },
                         [&](const QString& caption) { captions << caption; },
                         [] {},
                         {}});
    preview.setTabs({"Body (Plain Text Only)", "Raw Message"});
    preview.setButton("Exit Preview", "Exit Preview     ", "Exit Preview");
    preview.selectTab(1);
    preview.showWindow();
    auto* strip = preview.widget()->findChild<QTabWidget*>("TabStrip");
    strip->setCurrentIndex(1);
    QCOMPARE(tabs, QList<int>({2}));
    // Selecting from the logic raises no click.
    preview.selectTab(1);
    QCOMPARE(tabs.size(), 1);
    preview.widget()->findChild<QToolButton*>("tbrButtons/Exit Preview")->click();
    QCOMPARE(captions, QStringList({"Exit Preview     "}));
}

void PreviewWindowTest::controlsCarryTheirNames() {
    PreviewWindow preview;
    preview.setTabs({"Body (Plain Text Only)", "Raw Message"});
    for (const char* key : {"Save", "Print", "Delete", "Reply", "Open", "Exit Preview"})
        preview.setButton(key, QString(key) + "   ", "tip");
    preview.setFields("Ann", "me", "today", "Plan");
    preview.showWindow();
    QWidget* w = preview.widget();
    for (const char* field : {"From", "To", "Date", "Subject"}) {
        auto* label = w->findChild<QLabel*>(QString("lblPrv") + field);
        QVERIFY(label);
        QCOMPARE(label->buddy(), w->findChild<QLineEdit*>(QString("txtPrv") + field));
    }
    QCOMPARE(w->findChild<QLineEdit*>("txtPrvSubject")->text(), QString("Plan"));
    for (const char* key : {"Save", "Print", "Delete", "Reply", "Open", "Exit Preview"})
        QCOMPARE(w->findChild<QToolButton*>(QString("tbrButtons/") + key)->accessibleName(),
                 QString(key));
    QCOMPARE(w->findChild<QTabWidget*>("TabStrip")->tabText(1), QString("Raw Message"));
    QCOMPARE(w->findChild<QPlainTextEdit*>("rtbRawMsg")->accessibleName(), QString("Raw Message"));
}

void PreviewWindowTest::keepsItsMinimumSize() {
    PreviewWindow preview;
    preview.showWindow();
    QWidget* w = preview.widget();
    const int dpi = w->logicalDpiX();
    w->resize(10, 10);
    QVERIFY(w->width() >= 5600 * dpi / 1440);
    QVERIFY(w->height() >= 4000 * dpi / 1440);
}

// The program quits with the preview open: the window closes, as its
// close box would, rather than hold the quit up, even where the logic has
// nothing left to do for it.
void PreviewWindowTest::quitClosesAnOpenPreview() {
    PreviewWindow preview;
    int closes = 0;
    preview.setHandlers({[](int) {}, [](const QString&) {}, [&] { ++closes; }, {}});
    preview.showWindow();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(closes, 1);
}

void PreviewWindowTest::printsPagesToPdf_data() {
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("tab");
    QTest::addColumn<bool>("severalPages");
    QTest::newRow("short body") << 3 << 1 << false;
    QTest::newRow("short raw") << 3 << 2 << false;
    QTest::newRow("long body") << 400 << 1 << true;
}

void PreviewWindowTest::printsPagesToPdf() {
    QFETCH(int, lines);
    QFETCH(int, tab);
    QFETCH(bool, severalPages);
    QString body;
    for (int n = 1; n <= lines; ++n)
        body += QString("Line %1 of the message\r\n").arg(n);
    ScratchFile file("message.pdf");
    PdfPrinter pdf(file.path());
    QCOMPARE(pdf.Print(BuildPrintDocument(Message(body), tab, "Velmora - Plan")), QString());
    const QByteArray written = file.read();
    QVERIFY(written.startsWith("%PDF-"));
    QCOMPARE(pdf.pages > 1, severalPages);
    QCOMPARE(PdfPages(written), pdf.pages);
    if (severalPages) {
        // About as many lines a page as a quarter-inch margin leaves.
        QVERIFY(pdf.pages >= 5 && pdf.pages <= 12);
    }
}

void PreviewWindowTest::unwritablePdfIsSaid() {
    PdfPrinter pdf("/nonexistent/folder/message.pdf");
    const QString said = pdf.Print(BuildPrintDocument(Message("x"), 1, "t"));
    QVERIFY(said.contains("/nonexistent/folder/message.pdf"));
}

QTEST_MAIN(PreviewWindowTest)
#include "PreviewWindowTest.moc"
