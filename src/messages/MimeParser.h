#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace velmora {

// What the program reads of a message, decoded into Unicode.
struct ParsedMessage {
    QString from;    // the From header as a person reads it, encoded words decoded
    QString to;      // likewise the To header
    QString subject; // decoded, otherwise unchanged
    QDateTime date;  // the Date header in local time; the retrieval time without one
    QString header;  // the header block as the server sent it
    QString body;    // the text/plain part, or the text of an HTML-only message
    int attachments = 0;
};

// Parses a whole message (CR LF line ends). Malformed input never fails:
// what cannot be read stays blank, and the header block is always there. A
// message without a readable Date gets retrievedAt, turned to local time.
ParsedMessage ParseMessage(const QByteArray& message, const QDateTime& retrievedAt);

// The bytes of a message before its first empty line.
QByteArray HeaderBlock(const QByteArray& message);

} // namespace velmora
