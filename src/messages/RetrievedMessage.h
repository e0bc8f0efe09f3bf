#pragma once

#include "messages/MimeParser.h"
#include "platform/PopClient.h"

#include <QByteArray>
#include <optional>

namespace velmora {

// A message of the mailbox as the POP client holds it: what the listing
// said of it and, once retrieved, the fields parsed from its text.
class RetrievedMessage : public PopMessage {
public:
    void setListing(qint64 listedSize, const QString& uid);
    void setUid(const QString& id) { uid = id; }
    // The message as retrieved (dot-unstuffed, CR LF line ends), parsed at
    // once; only what was parsed from it stays.
    void setData(const QByteArray& data, const QDateTime& retrievedAt);

    qint64 Size() const override { return retrieved ? size : qMax<qint64>(listedSize, 0); }
    // Whether LIST gave the message a size.
    bool SizeListed() const { return listedSize >= 0; }
    QString From() const override { return fields().from; }
    QString To() const override { return fields().to; }
    QString Subject() const override { return fields().subject; }
    QDateTime Date() const override { return fields().date; }
    QString HeaderText() const override { return fields().header; }
    QString BodyText() const override { return fields().body; }
    QString Uid() const override { return uid; }
    int AttachmentCount() const override { return fields().attachments; }
    bool Deleted() const override { return deleted; }
    void setDeleted(bool on) override { deleted = on; }

    // The identifier of a message on a server without UIDL: a digest of its
    // header block, which the server never changes.
    static QString HeaderDigest(const QByteArray& message);

private:
    const ParsedMessage& fields() const;

    QString uid;
    qint64 listedSize = -1; // none listed
    qint64 size = 0;
    bool retrieved = false;
    bool deleted = false;
    mutable std::optional<ParsedMessage> parsed;
};

} // namespace velmora
