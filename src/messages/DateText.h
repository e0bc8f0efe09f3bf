#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace velmora {

// The date a message shows: "MMM dd, yyyy hh:mm:ss AM/PM", made the long way
// round. The date is first written in the general date form, then cut to
// twenty characters (after a five-character weekday, where one leads), then
// read back. A long general form thereby loses its AM/PM marker and reads as
// a morning time; that is how the column has always shown it.
QString MessageDate(const QDateTime& date, const QLocale& locale);

// The general date form: "M/d/yyyy h:mm:ss AP" for C and English (United
// States); elsewhere the locale's short date with a four-digit year, a blank
// and its long time without a time zone. Midnight has no time part.
QString GeneralDate(const QDateTime& date, const QLocale& locale);

} // namespace velmora
