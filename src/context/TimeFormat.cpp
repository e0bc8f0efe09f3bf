#include "context/TimeFormat.h"

#include <QList>

namespace velmora {

namespace {

struct Token {
    QChar letter; // lower case; 0 for a literal
    int length = 0;
    QString literal;
    bool minute = false; // an "m" or "mm" that stands for minutes
};

struct Tokens {
    QList<Token> list;
    bool twelveHour = false;
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

// The same few patterns come back for every message of a check, so the
// last one's reading is kept.
const Tokens& TokensOf(const QString& pattern) {
    thread_local QString last;
    thread_local bool ready = false;
    thread_local Tokens tokens;
    if (!ready || pattern != last) {
        tokens.list = tokenize(pattern);
        tokens.twelveHour = false;
        for (int i = 0; i < tokens.list.size(); ++i) {
            Token& t = tokens.list[i];
            tokens.twelveHour = tokens.twelveHour || t.letter == 'a';
            t.minute = t.letter == 'm' && t.length <= 2 && isMinute(tokens.list, i);
        }
        last = pattern;
        ready = true;
    }
    return tokens;
}

} // namespace

void AppendTwoDigits(QString& out, int n) {
    if (n < 0 || n > 99) {
        out += QStringLiteral("%1").arg(n, 2, 10, QChar('0'));
        return;
    }
    out += QChar(u'0' + n / 10);
    out += QChar(u'0' + n % 10);
}

QString FormatTime(const QDateTime& moment, const QString& pattern, const QLocale& locale) {
    const Tokens& tokens = TokensOf(pattern);
    const QDate date = moment.date();
    const QTime time = moment.time();
    QString out;
    out.reserve(pattern.size() + 8);
    const auto number = [&out](int value, int length) {
        if (length == 1)
            out += QString::number(value);
        else
            AppendTwoDigits(out, value);
    };
    for (const Token& t : tokens.list) {
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
            if (n <= 2)
                number(date.day(), n);
            else
                out += locale.dayName(date.dayOfWeek(),
                                      n == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
            break;
        case 'm':
            if (t.minute)
                number(time.minute(), n);
            else if (n <= 2)
                number(date.month(), n);
            else
                out += locale.monthName(date.month(),
                                        n == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
            break;
        case 'y':
            if (n <= 2)
                AppendTwoDigits(out, date.year() % 100);
            else
                out += QString::number(date.year());
            break;
        case 'h': {
            int hour = time.hour();
            if (tokens.twelveHour) {
                hour %= 12;
                if (hour == 0)
                    hour = 12;
            }
            number(hour, n);
            break;
        }
        case 's':
            number(time.second(), n);
            break;
        }
    }
    return out;
}

} // namespace velmora
