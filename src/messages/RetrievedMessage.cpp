#include "messages/RetrievedMessage.h"

#include "messages/MimeParser.h"

#include <QCryptographicHash>

namespace velmora {

void RetrievedMessage::setListing(qint64 bytes, const QString& id) {
    listedSize = bytes;
    uid = id;
}

void RetrievedMessage::setData(QByteArray data, const QDateTime& at) {
    raw = std::move(data);
    size = raw.size();
    retrievedAt = at;
    retrieved = true;
    parsed.reset();
    parsing = nullptr;
}

void RetrievedMessage::setParse(std::function<ParsedMessage()> pending) {
    parsing = std::move(pending);
    // The parse holds the text now; let go of it here, so that its memory
    // is free again as soon as the parse is done.
    raw = QByteArray();
}

QString RetrievedMessage::HeaderDigest(const QByteArray& message) {
    return QStringLiteral("sha1-") +
           QString::fromLatin1(
               QCryptographicHash::hash(HeaderBlock(message), QCryptographicHash::Sha1).toHex());
}

const ParsedMessage& RetrievedMessage::fields() const {
    if (!parsed && parsing) {
        parsed = parsing();
        parsing = nullptr;
    }
    if (!parsed) {
        parsed =
            ParseMessage(raw, retrievedAt.isValid() ? retrievedAt : QDateTime::currentDateTime());
    }
    // The text is read once; what was parsed from it is all that stays.
    raw = QByteArray();
    return *parsed;
}

} // namespace velmora
