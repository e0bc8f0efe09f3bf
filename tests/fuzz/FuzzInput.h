#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdlib>

// Takes a fuzzer's bytes apart into the pieces a target needs.
class FuzzInput {
public:
    FuzzInput(const uint8_t* data, size_t size)
        : bytes(reinterpret_cast<const char*>(data), qsizetype(size)) {}

    bool empty() const { return at >= bytes.size(); }
    // The bytes up to the next `separator`, or to the end.
    QByteArray take(char separator) {
        if (empty())
            return {};
        qsizetype end = bytes.indexOf(separator, at);
        if (end < 0)
            end = bytes.size();
        const QByteArray piece = bytes.mid(at, end - at);
        at = end + 1;
        return piece;
    }
    QString text(char separator) { return QString::fromUtf8(take(separator)); }
    QByteArray rest() {
        const QByteArray piece = bytes.mid(at);
        at = bytes.size();
        return piece;
    }
    uint8_t byte() { return empty() ? 0 : uint8_t(bytes[at++]); }

    const QByteArray bytes;

private:
    qsizetype at = 0;
};

// A broken promise of the code under test: the fuzzer keeps the input.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition))                                                                          \
            std::abort();                                                                          \
    } while (false)
