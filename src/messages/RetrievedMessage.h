#pragma once

#include "messages/MimeParser.h"
#include "platform/PopClient.h"

#include <QByteArray>
#include <functional>
#include <optional>

namespace velmora {

// A message of the mailbox as the POP client holds it: what the listing
// said of it and, once retrieved, its whole text. The fields a reader asks
// for are parsed from that text on first use, after the connection is gone.
class RetrievedMessage : public PopMessage {
public:
    void setListing(qint64 listedSize, const QString& uid);
    void setUid(const QString& id) { uid = id; }
    // The message as retrieved: dot-unstuffed, CR LF line ends.
    void setData(QByteArray data, const QDateTime& retrievedAt);
    // Where the parse of the data is to be had, when something else has
    // taken it on.
    void setParse(std::function<ParsedMessage()> pending);

    qint64 Size() const override { return retrieved ? size : listedSize; }
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
    std::shared_ptr<const FieldScan> Scan() const override { return fields().scan; }
    QString DateText(const QLocale& locale) const override {
        const ParsedMessage& f = fields();
        return f.dateLocale && *f.dateLocale == locale ? f.dateText : QString();
    }

    // The identifier of a message on a server without UIDL: a digest of its
    // header block, which the server never changes.
    static QString HeaderDigest(const QByteArray& message);

private:
    const ParsedMessage& fields() const;

    QString uid;
    qint64 listedSize = 0;
    qint64 size = 0;
    mutable QByteArray raw;
    QDateTime retrievedAt;
    bool retrieved = false;
    bool deleted = false;
    mutable std::optional<ParsedMessage> parsed;
    mutable std::function<ParsedMessage()> parsing;
};

} // namespace velmora
