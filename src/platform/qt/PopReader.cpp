#include "platform/qt/PopReader.h"

#include <cstring>
#include <limits>

namespace velmora {

void PopReader::append(const QByteArray& data) {
    compact();
    buf.append(data);
}

char* PopReader::room(qsizetype most) {
    compact();
    filled = buf.size();
    buf.resize(filled + most);
    return buf.data() + filled;
}

void PopReader::grew(qsizetype got) {
    buf.resize(filled + got);
}

void PopReader::clear() {
    buf.clear();
    pos = 0;
    scanned = 0;
    midLine = false;
}

// Drops what was taken once it is the larger part, so appending stays cheap
// however long the stream runs. The rest is moved to the front by hand:
// removing from the front would only move the array's start, and the space
// freed there would be found missing at the end, costing a reallocation of
// the whole buffer at the next append.
void PopReader::compact() {
    if (pos > 0 && pos >= buf.size() / 2) {
        const qsizetype rest = buf.size() - pos;
        char* data = buf.data();
        std::memmove(data, data + pos, size_t(rest));
        buf.truncate(rest);
        scanned = qMax<qsizetype>(0, scanned - pos);
        pos = 0;
    }
}

PopReader::Result PopReader::takeLine(QByteArray& line) {
    const qsizetype eol = buf.indexOf('\n', qMax(pos, scanned));
    if (eol < 0) {
        scanned = buf.size();
        return buffered() > MaxStatusLine ? TooLong : NeedMore;
    }
    qsizetype end = eol;
    if (end > pos && buf[end - 1] == '\r')
        --end;
    line = buf.mid(pos, end - pos);
    pos = eol + 1;
    return Done;
}

// Lines that need no change (CR LF ended, no leading dot) are copied in
// runs, so a large message costs a few copies rather than one a line. A long
// line goes out as it comes, but for its last byte, which may be the CR of
// its end: the reader never holds more of it than one piece.
PopReader::Result PopReader::takeBlock(QByteArray& out, qint64& consumed) {
    const char* data = buf.constData();
    const qsizetype size = buf.size();
    qsizetype run = pos; // start of the lines that go out as they are
    const auto flush = [&](qsizetype end) {
        if (end > run)
            out.append(data + run, end - run);
    };
    while (pos < size) {
        const qsizetype resume = qMax(pos, scanned);
        const void* found = std::memchr(data + resume, '\n', size_t(size - resume));
        if (!found) {
            scanned = size;
            if (size - pos > LongLine) {
                const bool stuffed = !midLine && data[pos] == '.';
                flush(pos);
                out.append(data + pos + qsizetype(stuffed), size - 1 - pos - qsizetype(stuffed));
                consumed += size - 1 - pos;
                pos = run = size - 1;
                midLine = true;
            }
            break;
        }
        const qsizetype eol = static_cast<const char*>(found) - data;
        const qsizetype start = pos;
        const bool crlf = eol > start && data[eol - 1] == '\r';
        // The rest of a line that went out in part has no dot to look at.
        const bool stuffed = !midLine && data[start] == '.';
        midLine = false;
        consumed += eol + 1 - start;
        pos = eol + 1;
        if (!stuffed && crlf)
            continue;
        flush(start);
        run = pos;
        const qsizetype end = crlf ? eol - 1 : eol;
        if (stuffed && end - start == 1)
            return Done;
        const qsizetype from = stuffed ? start + 1 : start;
        out.append(data + from, end - from);
        out.append("\r\n", 2);
    }
    flush(pos);
    return NeedMore;
}

PopReader::Status PopReader::parseStatus(const QByteArray& line) {
    Status status;
    const auto indicator = [&line](const char* word) {
        const qsizetype n = qsizetype(std::strlen(word));
        return line.size() >= n && qstrnicmp(line.constData(), word, n) == 0 &&
               (line.size() == n || line[n] == ' ' || line[n] == '\t');
    };
    if (indicator("+OK")) {
        status.valid = status.ok = true;
        status.text = line.mid(3).trimmed();
    } else if (indicator("-ERR")) {
        status.valid = true;
        status.text = line.mid(4).trimmed();
    }
    return status;
}

std::optional<qint64> PopReader::parseNumber(const QByteArray& word) {
    if (word.isEmpty())
        return std::nullopt;
    qint64 value = 0;
    for (const char c : word) {
        if (c < '0' || c > '9')
            return std::nullopt;
        const int digit = c - '0';
        if (value > (std::numeric_limits<qint64>::max() - digit) / 10)
            value = std::numeric_limits<qint64>::max();
        else
            value = value * 10 + digit;
    }
    return value;
}

std::optional<qint64> PopReader::parseStatCount(const QByteArray& text) {
    return parseNumber(text.simplified().split(' ').value(0));
}

std::optional<QList<PopReader::NumberedLine>>
PopReader::parseNumberedLines(const QByteArray& block) {
    QList<NumberedLine> lines;
    for (const QByteArray& line : block.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.isEmpty())
            continue;
        const qsizetype blank = trimmed.indexOf(' ');
        const std::optional<qint64> number =
            parseNumber(blank < 0 ? QByteArray() : trimmed.left(blank));
        if (!number)
            return std::nullopt;
        lines.append({*number, trimmed.mid(blank + 1).trimmed()});
    }
    return lines;
}

} // namespace velmora
