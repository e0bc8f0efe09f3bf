#include "platform/qt/widgets/MessageWindow.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QtTest>

using namespace velmora;

// The Auto Check Message shows all it is given: every line, its headline and
// its title, at any scale (the suite runs once more at QT_SCALE_FACTOR=2).
class MessageWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyTextFits_data();
    void everyTextFits();
    void growsAndShrinksWithItsLines();
};

namespace {

QString AccountLines(const QStringList& accounts) {
    QString text = QStringLiteral("Account Information:\r\n");
    for (const QString& line : accounts)
        text += QString(6, QLatin1Char(' ')) + line + QStringLiteral("\r\n");
    return text;
}

void Fill(MessageWindow& message, const QString& caption, const QString& headline,
          const QStringList& accounts) {
    message.setCaption(caption);
    message.setHeadline(headline);
    message.setAccountLines(AccountLines(accounts), int(accounts.size()));
    message.setCountdownVisible(true);
    message.setCountdown(30);
    message.setNextCheck(QStringLiteral("Next Auto Check at 4:36 PM"));
    message.showWindow();
}

} // namespace

void MessageWindowTest::everyTextFits_data() {
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("headline");
    QTest::addColumn<QStringList>("accounts");
    const QString caption = QStringLiteral("Velmora:  Auto Check - November 24, 2026");
    QTest::newRow("long names")
        << caption << QStringLiteral("You Have New Messages")
        << QStringList{"A rather long account name for the family mailbox - 120 Messages (7 New)",
                       "Work - No Messages"};
    QTest::newRow("long caption, one account")
        << QStringLiteral("Velmora:  Auto Check - Wednesday, September 30, 2026 and then some")
        << QStringLiteral("Messages") << QStringList{"Home - 1 Message"};
    QStringList many;
    for (int n = 1; n <= 16; ++n)
        many << QStringLiteral("Account %1 - %1 Messages").arg(n);
    many << QStringLiteral("more Accounts...");
    QTest::newRow("the most lines") << caption << QStringLiteral("You Have New Messages") << many;
}

void MessageWindowTest::everyTextFits() {
    QFETCH(QString, caption);
    QFETCH(QString, headline);
    QFETCH(QStringList, accounts);
    MessageWindow message;
    Fill(message, caption, headline, accounts);
    QWidget* window = message.widget();
    QVERIFY(QTest::qWaitForWindowExposed(window));

    const QList<QLabel*> labels = window->findChildren<QLabel*>();
    QVERIFY(labels.size() >= 3);
    for (const QLabel* label : labels) {
        if (!label->isVisible())
            continue;
        const QSize wanted = label->sizeHint();
        QVERIFY2(
            wanted.width() <= label->width() && wanted.height() <= label->height(),
            qPrintable(QStringLiteral("%1 wants %2x%3, has %4x%5")
                           .arg(label->objectName(), QString::number(wanted.width()),
                                QString::number(wanted.height()), QString::number(label->width()),
                                QString::number(label->height()))));
        QVERIFY(window->rect().contains(QRect(label->mapTo(window, QPoint()), label->size())));
    }

    // Every account line is in the label, none cut off.
    const auto* lines = window->findChild<QLabel*>("lblMsg");
    QVERIFY(lines);
    QCOMPARE(lines->text().count('\n'), int(accounts.size()));
    QVERIFY(lines->text().endsWith(accounts.last()));
    QVERIFY(lines->height() >= lines->fontMetrics().lineSpacing() * (int(accounts.size()) + 1));

    const auto* frame = window->findChild<QGroupBox*>("fraMsg");
    QVERIFY(frame->minimumSizeHint().width() <= frame->width());
    QVERIFY(frame->width() > frame->fontMetrics().horizontalAdvance(headline));

    // Room for the title bar's text, whatever font the desktop gives it.
    const QFontMetrics title(QApplication::font("QMdiSubWindowTitleBar"));
    QCOMPARE(window->windowTitle(), caption);
    QVERIFY2(window->width() > title.horizontalAdvance(caption),
             qPrintable(QString::number(window->width())));
    QVERIFY(window->minimumWidth() > title.horizontalAdvance(caption));
}

void MessageWindowTest::growsAndShrinksWithItsLines() {
    MessageWindow message;
    Fill(message, "Velmora", "New", {"Home - 1 Message"});
    QWidget* window = message.widget();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    const int one = window->height();
    const int spacing = window->findChild<QLabel*>("lblMsg")->fontMetrics().lineSpacing();
    message.setAccountLines(AccountLines({"Home - 1 Message", "Work - 2 Messages", "Club - 0"}), 3);
    QVERIFY(window->height() >= one + 2 * spacing);
    message.setAccountLines(AccountLines({"Home - 1 Message"}), 1);
    QCOMPARE(window->height(), one);
}

QTEST_MAIN(MessageWindowTest)
#include "MessageWindowTest.moc"
