#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>

namespace velmora {

// Cuts what a POP3 server sends into status lines and multi-line blocks.
// It owns no socket: the client appends what arrives and takes complete
// pieces out. Lines may end in CR LF or a bare LF; block content comes out
// dot-unstuffed with CR LF line ends.
class PopReader {
public:
    enum Result { NeedMore, Done, TooLong };

    // Longest status line accepted; a server that sends more without a line
    // end is not speaking POP3.
    static constexpr qsizetype MaxStatusLine = 64 * 1024;
    // A block's line longer than this goes out in parts as it arrives.
    static constexpr qsizetype LongLine = 64 * 1024;

    void append(const QByteArray& data);
    // Room for up to `most` bytes at the end, to be filled in place and then
    // cut to what came with grew().
    char* room(qsizetype most);
    void grew(qsizetype got);
    void clear();
    qsizetype buffered() const { return buf.size() - pos; }

    // One status line, without its line end.
    Result takeLine(QByteArray& line);
    // Block content up to the terminating "." line, appended to `out`.
    // `consumed` grows by the bytes of the stream used. Done once the
    // terminator was read; content already taken stays in `out`.
    Result takeBlock(QByteArray& out, qint64& consumed);

    // "+OK ..." or "-ERR ..."; anything else is not a reply.
    struct Status {
        bool valid = false;
        bool ok = false;
        QByteArray text; // what follows the indicator, trimmed
    };
    static Status parseStatus(const QByteArray& line);

    // A decimal count or size as a server writes it. Past the range of
    // qint64 it stays at the largest value; a sign or anything but digits
    // gives nothing.
    static std::optional<qint64> parseNumber(const QByteArray& word);
    // The message count of a STAT reply's text ("count octets").
    static std::optional<qint64> parseStatCount(const QByteArray& text);
    // The "n value" lines of a LIST or UIDL block: the number and what
    // follows it. Nothing when a line does not start with a number.
    using NumberedLine = std::pair<qint64, QByteArray>;
    static std::optional<QList<NumberedLine>> parseNumberedLines(const QByteArray& block);

private:
    void compact();

    QByteArray buf;
    qsizetype pos = 0;
    qsizetype filled = 0; // the buffer's size before room() was given
    // No line end lies between pos and here: a long line is searched once,
    // not again from its start at every chunk.
    qsizetype scanned = 0;
    bool midLine = false; // the start of the current block line went out
};

} // namespace velmora
