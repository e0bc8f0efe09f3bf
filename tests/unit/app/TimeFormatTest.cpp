#include "app/TimeFormat.h"

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

    QTest::newRow("afternoon") << "2026-11-15T16:21:09"
                               << "h:mm AM/PM"
                               << "C"
                               << "4:21 PM";
    QTest::newRow("just after midnight") << "2026-11-15T00:05:00"
                                         << "h:mm AM/PM"
                                         << "C"
                                         << "12:05 AM";
    QTest::newRow("noon") << "2026-11-15T12:00:00"
                          << "h:mm AM/PM"
                          << "C"
                          << "12:00 PM";
    QTest::newRow("small marker") << "2026-11-15T16:21:00"
                                  << "h:mm am/pm"
                                  << "C"
                                  << "4:21 pm";
    QTest::newRow("clock text, month then minutes") << "2026-03-05T09:07:00"
                                                    << "dd/mm/yy-hh:mm"
                                                    << "C"
                                                    << "05/03/26-09:07";
    QTest::newRow("status clock") << "2026-11-05T09:07:00"
                                  << "mmm d/yy"
                                  << "C"
                                  << "Nov 5/26";
    QTest::newRow("long with literal words") << "2026-11-05T21:07:00"
                                             << "mmmm dd, yyyy at h:mm AM/PM"
                                             << "C"
                                             << "November 05, 2026 at 9:07 PM";
    QTest::newRow("message date form") << "2026-11-05T09:07:03"
                                       << "MMM dd, yyyy hh:mm:ss AM/PM"
                                       << "C"
                                       << "Nov 05, 2026 09:07:03 AM";
    QTest::newRow("minutes before seconds") << "2026-11-05T09:07:03"
                                            << "m:ss"
                                            << "C"
                                            << "7:03";
    QTest::newRow("month names follow the locale") << "2026-03-05T09:07:00"
                                                   << "mmmm d"
                                                   << "de_DE" << QString::fromUtf8("März 5");
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
