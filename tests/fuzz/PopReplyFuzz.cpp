// A server's replies as arbitrary bytes: cut into the pieces a socket hands
// over, read as status lines and blocks as the client reads them, and the
// replies parsed as STAT, LIST and UIDL are.
#include "platform/qt/PopReader.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

using velmora::PopReader;

namespace {

void Require(bool holds) {
    if (!holds)
        std::abort();
}

// A number the parser takes must be what the digits say, up to the
// largest 64-bit value.
void CheckNumber(const QByteArray& word) {
    const std::optional<qint64> number = PopReader::parseNumber(word);
    if (!number)
        return;
    Require(*number >= 0);
    if (word.size() <= 18)
        Require(*number == word.toLongLong());
}

void ParseReplies(const PopReader::Status& status, const QByteArray& block) {
    CheckNumber(status.text.split(' ').value(0));
    if (const auto count = PopReader::parseStatCount(status.text))
        Require(*count >= 0);
    if (const auto lines = PopReader::parseNumberedLines(block)) {
        for (const auto& [number, value] : *lines) {
            Require(number >= 0);
            CheckNumber(value.split(' ').value(0));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    // The first two bytes choose the size of the pieces, how they go in,
    // and how often each comes: repeated, a short input makes the lines
    // long enough to go out in parts.
    const qsizetype piece = 1 + (data[0] | (data[1] << 8)) % 2048;
    const bool inPlace = data[1] & 1;
    const int copies = 1 + (data[1] >> 1) % 64;
    const char* bytes = reinterpret_cast<const char*>(data) + 2;
    const qsizetype length = qsizetype(size) - 2;

    PopReader reader;
    PopReader::Status status;
    bool inBlock = false;
    QByteArray block;
    qint64 consumed = 0;
    qint64 fed = 0;
    // Takes out what is complete; false where the client would give up.
    const auto drain = [&] {
        for (;;) {
            if (!inBlock) {
                QByteArray line;
                const PopReader::Result result = reader.takeLine(line);
                if (result == PopReader::TooLong)
                    return false;
                if (result == PopReader::NeedMore)
                    return true;
                Require(!line.contains('\n'));
                status = PopReader::parseStatus(line);
                Require(!status.ok || status.valid);
                // As after LIST, UIDL, RETR and TOP, a +OK opens a block.
                inBlock = status.ok;
                if (!inBlock)
                    ParseReplies(status, QByteArray());
            } else {
                const qint64 before = consumed;
                const PopReader::Result result = reader.takeBlock(block, consumed);
                Require(consumed >= before && consumed <= fed);
                // Cut short, the reader holds no more than a piece of a line.
                if (result == PopReader::NeedMore) {
                    Require(reader.buffered() <= PopReader::LongLine);
                    return true;
                }
                // Lines gain at most a CR; stuffed dots are dropped.
                Require(block.size() <= 2 * consumed);
                ParseReplies(status, block);
                block.clear();
                consumed = 0;
                inBlock = false;
            }
            Require(reader.buffered() >= 0 && reader.buffered() <= fed);
        }
    };
    for (qsizetype at = 0; at < length; at += piece) {
        const qsizetype n = qMin(piece, length - at);
        for (int copy = 0; copy < copies; ++copy) {
            if (inPlace) {
                std::memcpy(reader.room(n), bytes + at, size_t(n));
                reader.grew(n);
            } else {
                reader.append(QByteArray(bytes + at, n));
            }
            fed += n;
            if (!drain())
                return 0;
        }
    }
    return 0;
}
