#include "app/TimeFormat.h"

#include <QList>

namespace velmora {

namespace {

struct Token {
    QChar letter; // lower case; 0 for a literal
    int length = 0;
    QString literal;
};

bool isMarker(const QString& pattern, int i) {
    return pattern.mid(i, 5).compare(QLatin1String("am/pm"), Qt::CaseInsensitive) == 0;
}

QList<Token> tokenize(const QString& pattern) {
    QList<Token> tokens;
    int i = 0;
    while (i < pattern.size()) {
        if (isMarker(pattern, i)) {
            tokens.append({QChar('a'), 5, pattern.mid(i, 5)});
            i += 5;
            continue;
        }
        const QChar c = pattern[i].toLower();
        if (c == 'd' || c == 'm' || c == 'y' || c == 'h' || c == 's') {
            int run = 1;
            while (i + run < pattern.size() && pattern[i + run].toLower() == c)
                ++run;
            tokens.append({c, run, {}});
            i += run;
            continue;
        }
        if (!tokens.isEmpty() && tokens.last().letter.isNull())
            tokens.last().literal += pattern[i];
        else
            tokens.append({QChar(), 0, QString(pattern[i])});
        ++i;
    }
    return tokens;
}

QString twoDigits(int n) {
    return QStringLiteral("%1").arg(n, 2, 10, QChar('0'));
}

// An "m" or "mm" stands for minutes right after an hour or before seconds.
bool isMinute(const QList<Token>& tokens, int index) {
    for (int j = index - 1; j >= 0; --j) {
        if (tokens[j].letter.isNull())
            continue;
        if (tokens[j].letter == 'h')
            return true;
        break;
    }
    for (int j = index + 1; j < tokens.size(); ++j) {
        if (tokens[j].letter.isNull())
            continue;
        return tokens[j].letter == 's';
    }
    return false;
}

} // namespace

QString FormatTime(const QDateTime& moment, const QString& pattern, const QLocale& locale) {
    const QList<Token> tokens = tokenize(pattern);
    bool twelveHour = false;
    for (const Token& t : tokens)
        twelveHour = twelveHour || t.letter == 'a';

    const QDate date = moment.date();
    const QTime time = moment.time();
    QString out;
    for (int i = 0; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        const int n = t.length;
        switch (t.letter.unicode()) {
        case 0:
            out += t.literal;
            break;
        case 'a': {
            const bool pm = time.hour() >= 12;
            const bool small = t.literal.at(0).isLower();
            out += small ? (pm ? "pm" : "am") : (pm ? "PM" : "AM");
            break;
        }
        case 'd':
            out += n == 1   ? QString::number(date.day())
                   : n == 2 ? twoDigits(date.day())
                   : n == 3 ? locale.dayName(date.dayOfWeek(), QLocale::ShortFormat)
                            : locale.dayName(date.dayOfWeek(), QLocale::LongFormat);
            break;
        case 'm':
            if (n <= 2 && isMinute(tokens, i))
                out += n == 1 ? QString::number(time.minute()) : twoDigits(time.minute());
            else
                out += n == 1   ? QString::number(date.month())
                       : n == 2 ? twoDigits(date.month())
                       : n == 3 ? locale.monthName(date.month(), QLocale::ShortFormat)
                                : locale.monthName(date.month(), QLocale::LongFormat);
            break;
        case 'y':
            out += n <= 2 ? twoDigits(date.year() % 100) : QString::number(date.year());
            break;
        case 'h': {
            int hour = time.hour();
            if (twelveHour) {
                hour %= 12;
                if (hour == 0)
                    hour = 12;
            }
            out += n == 1 ? QString::number(hour) : twoDigits(hour);
            break;
        }
        case 's':
            out += n == 1 ? QString::number(time.second()) : twoDigits(time.second());
            break;
        }
    }
    return out;
}

} // namespace velmora
