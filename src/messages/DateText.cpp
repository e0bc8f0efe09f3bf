#include "messages/DateText.h"

#include "context/TimeFormat.h"

#include <QRegularExpression>
#include <QStringList>

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

// Reads up to two digits; false when there is none.
bool Digits(const QString& text, qsizetype& at, int& value) {
    const qsizetype start = at;
    value = 0;
    while (at < text.size() && at - start < 2 && text[at].isDigit()) {
        value = value * 10 + text[at].digitValue();
        ++at;
    }
    return at > start;
}

// As much of a time as is left after the cut: hours, then minutes and
// seconds behind ":" or "."; a lone "A" or "P" still counts as the marker.
// No hours: midnight.
QTime ReadTime(const QString& text) {
    qsizetype at = 0;
    int parts[3] = {0, 0, 0};
    if (!Digits(text, at, parts[0]))
        return QTime(0, 0);
    for (int i = 1; i < 3; ++i) {
        qsizetype next = at;
        if (next < text.size() && (text[next] == ':' || text[next] == '.') &&
            Digits(text, ++next, parts[i]))
            at = next;
        else
            break;
    }
    while (at < text.size() && text[at].isSpace())
        ++at;
    const QChar marker = at < text.size() ? text[at].toUpper() : QChar();
    if (marker == 'P' && parts[0] < 12)
        parts[0] += 12;
    else if (marker == 'A' && parts[0] == 12)
        parts[0] = 0;
    return QTime(parts[0], parts[1], parts[2]);
}

// "M/d/yyyy", as the United States form writes its dates.
QDate ReadUsDate(const QString& text) {
    const QStringList parts = text.split('/');
    if (parts.size() != 3)
        return QDate();
    bool ok[3];
    const int month = parts[0].toInt(&ok[0]);
    const int day = parts[1].toInt(&ok[1]);
    const int year = parts[2].toInt(&ok[2]);
    return ok[0] && ok[1] && ok[2] ? QDate(year, month, day) : QDate();
}

// Reads the cut text back: the date in the locale's order, then the time.
QDateTime ParseGeneral(const QString& text, const QLocale& locale) {
    const QString trimmed = text.trimmed();
    const qsizetype blank = trimmed.indexOf(' ');
    const QString datePart = blank < 0 ? trimmed : trimmed.left(blank);
    const QDate date =
        UsForm(locale) ? ReadUsDate(datePart) : locale.toDate(datePart, DateFormat(locale));
    if (!date.isValid())
        return QDateTime();
    const QTime time = ReadTime(blank < 0 ? QString() : trimmed.mid(blank + 1).trimmed());
    return time.isValid() ? QDateTime(date, time) : QDateTime();
}

} // namespace

QString GeneralDate(const QDateTime& date, const QLocale& locale) {
    const QDate d = date.date();
    const QTime t = date.time();
    if (UsForm(locale)) {
        // Built by hand: this runs for every message of every check.
        QString text;
        text.reserve(24);
        text += QString::number(d.month());
        text += QLatin1Char('/');
        text += QString::number(d.day());
        text += QLatin1Char('/');
        text += QString::number(d.year());
        if (t != QTime(0, 0)) {
            const int hour = t.hour() % 12 == 0 ? 12 : t.hour() % 12;
            text += QLatin1Char(' ');
            text += QString::number(hour);
            for (const int n : {t.minute(), t.second()}) {
                text += QLatin1Char(':');
                AppendTwoDigits(text, n);
            }
            text += t.hour() < 12 ? QLatin1String(" AM") : QLatin1String(" PM");
        }
        return text;
    }
    QString text = locale.toString(d, DateFormat(locale));
    if (t != QTime(0, 0))
        text += QLatin1Char(' ') + locale.toString(t, TimeFormatOf(locale));
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
