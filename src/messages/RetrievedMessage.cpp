#include "messages/RetrievedMessage.h"

#include "messages/MimeParser.h"

#include <QCryptographicHash>

namespace velmora {

void RetrievedMessage::setListing(qint64 bytes, const QString& id) {
    listedSize = bytes;
    uid = id;
}

void RetrievedMessage::setData(const QByteArray& data, const QDateTime& at) {
    size = data.size();
    retrieved = true;
    parsed = ParseMessage(data, at);
}

QString RetrievedMessage::HeaderDigest(const QByteArray& message) {
    return QStringLiteral("sha1-") +
           QString::fromLatin1(
               QCryptographicHash::hash(HeaderBlock(message), QCryptographicHash::Sha1).toHex());
}

// A message never retrieved has blank fields and the time it was asked for.
const ParsedMessage& RetrievedMessage::fields() const {
    if (!parsed)
        parsed = ParseMessage(QByteArray(), QDateTime::currentDateTime());
    return *parsed;
}

} // namespace velmora
