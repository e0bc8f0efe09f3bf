#include "messages/DateText.h"

#include "app/TimeFormat.h"

#include <QRegularExpression>

namespace velmora {

namespace {

bool UsForm(const QLocale& locale) {
    return locale.language() == QLocale::C ||
           (locale.language() == QLocale::English && locale.territory() == QLocale::UnitedStates);
}

QString DateFormat(const QLocale& locale) {
    if (UsForm(locale))
        return QStringLiteral("M/d/yyyy");
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(QLatin1String("yyyy")))
        format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    return format;
}

QString TimeFormatOf(const QLocale& locale) {
    if (UsForm(locale))
        return QStringLiteral("h:mm:ss AP");
    QString format = locale.timeFormat(QLocale::LongFormat);
    static const QRegularExpression zone(QStringLiteral("\\s*\\(?t+\\)?\\s*"));
    return format.remove(zone).trimmed();
}

// Reads the cut text back: the date in the locale's order, then as much of
// the time as is left; a lone "A" or "P" still counts as the marker.
QDateTime ParseGeneral(const QString& text, const QLocale& locale) {
    const QString trimmed = text.trimmed();
    const qsizetype blank = trimmed.indexOf(' ');
    const QString datePart = blank < 0 ? trimmed : trimmed.left(blank);
    const QString timePart = blank < 0 ? QString() : trimmed.mid(blank + 1).trimmed();
    const QDate date = locale.toDate(datePart, DateFormat(locale));
    if (!date.isValid())
        return QDateTime();
    static const QRegularExpression clock(
        QStringLiteral("^(\\d{1,2})(?:[:.](\\d{1,2}))?(?:[:.](\\d{1,2}))?\\s*([AaPp])?"));
    const QRegularExpressionMatch m = clock.match(timePart);
    if (!m.hasMatch())
        return QDateTime(date, QTime(0, 0));
    int hour = m.captured(1).toInt();
    const QString marker = m.captured(4).toUpper();
    if (marker == QLatin1String("P") && hour < 12)
        hour += 12;
    else if (marker == QLatin1String("A") && hour == 12)
        hour = 0;
    const QTime time(hour, m.captured(2).toInt(), m.captured(3).toInt());
    return time.isValid() ? QDateTime(date, time) : QDateTime();
}

} // namespace

QString GeneralDate(const QDateTime& date, const QLocale& locale) {
    const QLocale usable = UsForm(locale) ? QLocale::c() : locale;
    QString text = usable.toString(date.date(), DateFormat(locale));
    if (date.time() != QTime(0, 0))
        text += QLatin1Char(' ') + usable.toString(date.time(), TimeFormatOf(locale));
    return text;
}

QString MessageDate(const QDateTime& date, const QLocale& locale) {
    const QString general = GeneralDate(date, locale);
    // Below "F" a digit leads; at or above it a weekday name does.
    const QString kept =
        !general.isEmpty() && general.at(0).unicode() < 70 ? general.left(20) : general.mid(5, 20);
    QDateTime read = ParseGeneral(kept, locale);
    if (!read.isValid())
        read = date;
    return FormatTime(read, QStringLiteral("MMM dd, yyyy hh:mm:ss AM/PM"), locale);
}

} // namespace velmora
