#include "platform/qt/PopReader.h"

#include <cstring>

namespace velmora {

void PopReader::append(const QByteArray& data) {
    compact();
    buf.append(data);
}

void PopReader::clear() {
    buf.clear();
    pos = 0;
}

// Drops what was taken once it is the larger part, so appending stays cheap
// however long the stream runs.
void PopReader::compact() {
    if (pos > 0 && pos >= buf.size() / 2) {
        buf.remove(0, pos);
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

PopReader::Result PopReader::takeBlock(QByteArray& out, qint64& consumed) {
    const char* data = buf.constData();
    const qsizetype size = buf.size();
    while (pos < size) {
        const void* found = std::memchr(data + pos, '\n', size_t(size - pos));
        if (!found)
            return NeedMore;
        const qsizetype eol = static_cast<const char*>(found) - data;
        qsizetype end = eol;
        if (end > pos && data[end - 1] == '\r')
            --end;
        qsizetype start = pos;
        consumed += eol + 1 - pos;
        pos = eol + 1;
        if (data[start] == '.') {
            if (end - start == 1)
                return Done;
            ++start; // a stuffed dot
        }
        out.append(data + start, end - start);
        out.append("\r\n", 2);
    }
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
