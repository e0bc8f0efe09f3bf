#include "context/TimeFormat.h"

#include <QtTest>

using namespace velmora;

class TimeFormatTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void formats_data();
    void formats();
};

void TimeFormatTest::formats_data() {
    QTest::addColumn<QString>("moment");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("expected");
    auto row = [](const char* name, const char* moment, const char* pattern,
                  const QString& expected, const char* locale = "C") {
        QTest::newRow(name) << moment << pattern << locale << expected;
    };
    row("afternoon", "2026-11-15T16:21:09", "h:mm AM/PM", "4:21 PM");
    row("just after midnight", "2026-11-15T00:05:00", "h:mm AM/PM", "12:05 AM");
    row("noon", "2026-11-15T12:00:00", "h:mm AM/PM", "12:00 PM");
    row("small marker", "2026-11-15T16:21:00", "h:mm am/pm", "4:21 pm");
    row("clock text, month then minutes", "2026-03-05T09:07:00", "dd/mm/yy-hh:mm",
        "05/03/26-09:07");
    row("status clock", "2026-11-05T09:07:00", "mmm d/yy", "Nov 5/26");
    row("long with literal words", "2026-11-05T21:07:00", "mmmm dd, yyyy at h:mm AM/PM",
        "November 05, 2026 at 9:07 PM");
    row("message date form", "2026-11-05T09:07:03", "MMM dd, yyyy hh:mm:ss AM/PM",
        "Nov 05, 2026 09:07:03 AM");
    row("minutes before seconds", "2026-11-05T09:07:03", "m:ss", "7:03");
    row("month names follow the locale", "2026-03-05T09:07:00", "mmmm d",
        QString::fromUtf8("März 5"), "de_DE");
}

void TimeFormatTest::formats() {
    QFETCH(QString, moment);
    QFETCH(QString, pattern);
    QFETCH(QString, locale);
    QFETCH(QString, expected);
    const QDateTime t = QDateTime::fromString(moment, Qt::ISODate);
    QCOMPARE(FormatTime(t, pattern, QLocale(locale)), expected);
}

QTEST_GUILESS_MAIN(TimeFormatTest)
#include "TimeFormatTest.moc"
