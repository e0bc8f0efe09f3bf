#include "platform/qt/PopReader.h"

#include <cstring>

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
        pos = 0;
    }
}

PopReader::Result PopReader::takeLine(QByteArray& line) {
    const qsizetype eol = buf.indexOf('\n', pos);
    if (eol < 0)
        return buffered() > MaxStatusLine ? TooLong : NeedMore;
    qsizetype end = eol;
    if (end > pos && buf[end - 1] == '\r')
        --end;
    line = buf.mid(pos, end - pos);
    pos = eol + 1;
    return Done;
}

// Lines that need no change (CR LF ended, no leading dot) are copied in
// runs, so a large message costs a few copies rather than one a line.
PopReader::Result PopReader::takeBlock(QByteArray& out, qint64& consumed) {
    const char* data = buf.constData();
    const qsizetype size = buf.size();
    qsizetype run = pos; // start of the lines that go out as they are
    const auto flush = [&](qsizetype end) {
        if (end > run)
            out.append(data + run, end - run);
    };
    while (pos < size) {
        const void* found = std::memchr(data + pos, '\n', size_t(size - pos));
        if (!found)
            break;
        const qsizetype eol = static_cast<const char*>(found) - data;
        const qsizetype start = pos;
        const bool crlf = eol > start && data[eol - 1] == '\r';
        consumed += eol + 1 - start;
        pos = eol + 1;
        if (data[start] != '.' && crlf)
            continue;
        flush(start);
        run = pos;
        const qsizetype end = crlf ? eol - 1 : eol;
        if (data[start] == '.' && end - start == 1)
            return Done;
        const qsizetype from = data[start] == '.' ? start + 1 : start; // a stuffed dot
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

} // namespace velmora
