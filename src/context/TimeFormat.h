#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace velmora {

// Formats a moment with the date patterns the program's texts use:
// "d", "dd", "ddd", "dddd" day; "m", "mm" month (minutes right after an hour
// or right before seconds); "mmm", "mmmm" month names from the locale; "yy",
// "yyyy" year; "h", "hh" hour, twelve-hour when the pattern has "AM/PM";
// "s", "ss" seconds; "AM/PM" the marker. Letters match without regard to
// case, except that "am/pm" gives a small marker. Anything else is literal.
QString FormatTime(const QDateTime& moment, const QString& pattern, const QLocale& locale);

// Appends a number of at least two digits, zero-padded: 7 as "07".
void AppendTwoDigits(QString& out, int n);

// The clock texts that recur across the program.
inline QString TimeOfDay(const QDateTime& moment, const QLocale& locale) {
    return FormatTime(moment, QStringLiteral("h:mm AM/PM"), locale);
}
inline QString ClockText(const QDateTime& moment, const QLocale& locale) {
    return FormatTime(moment, QStringLiteral("dd/mm/yy-hh:mm"), locale);
}

} // namespace velmora
