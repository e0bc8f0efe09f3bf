#pragma once

#include "platform/Failure.h"

#include <QDateTime>
#include <QString>
#include <memory>

namespace velmora {

// One message of the open mailbox. After FetchAll every property is in
// memory; after ListMessages only Uid and the size are known.
class PopMessage {
public:
    virtual ~PopMessage() = default;

    virtual qint64 Size() const = 0;
    virtual QString From() const = 0;
    virtual QString To() const = 0;
    virtual QString Subject() const = 0;
    virtual QDateTime Date() const = 0;
    virtual QString HeaderText() const = 0;
    virtual QString BodyText() const = 0;
    virtual QString Uid() const = 0;
    virtual int AttachmentCount() const = 0;
    // Marked messages are deleted on the server by Disconnect.
    virtual bool Deleted() const = 0;
    virtual void setDeleted(bool deleted) = 0;
};

// The message collection of the open mailbox.
class PopMessages {
public:
    virtual ~PopMessages() = default;

    // Messages in the mailbox, known right after Connect.
    virtual int Count() const = 0;
    // Zero-based; raises a Failure outside 0 to Count - 1.
    virtual PopMessage& Item(int index) = 0;
    // Retrieves every message whole. Blocking, with the event loop turning;
    // raises a Failure when it cannot finish.
    virtual void FetchAll() = 0;
    // Reads the identifiers and sizes of all messages without fetching them.
    virtual void ListMessages() = 0;
};

// Events of the client, delivered on the caller's thread during its blocking
// calls.
class PopNotify {
public:
    virtual ~PopNotify() = default;

    virtual void Connected() {}
    virtual void Disconnected(int /*code*/, const QString& /*text*/) {}
    virtual void Done(int /*code*/, const QString& /*text*/) {}
    virtual void HostCertificate(const QString& /*subject*/, int /*code*/,
                                 const QString& /*text*/) {}
    // Bytes of the retrieval so far and in all; position may pass total.
    virtual void Progress(qint64 /*position*/, qint64 /*total*/) {}
    virtual void Received(PopMessage& /*message*/) {}
    virtual void StateChange(int /*oldState*/) {}
};

// A POP3 client in blocking style: Connect, FetchAll and ListMessages return
// only when done, and keep the event loop turning meanwhile, so timers, the
// Stop button and the events above go on. Timeout bounds every wait.
class PopClient {
public:
    enum SecurityMode { SecurityNone = 0, SecurityImplicitTls = 3 };

    virtual ~PopClient() = default;

    virtual void setHostName(const QString& host) = 0;
    virtual void setPort(qint32 port) = 0;
    virtual void setLogin(const QString& login) = 0;
    virtual void setPassword(const QString& password) = 0;
    virtual void setBlocking(bool blocking) = 0;
    virtual void setTimeout(int seconds) = 0;
    virtual void setSecurity(int mode) = 0;
    virtual void setNotification(PopNotify* receiver) = 0;
    // The largest message the client takes in; a larger one fails its
    // retrieval rather than fill the memory.
    virtual void setMaxMessageSize(qint64 /*bytes*/) {}

    // Connects and logs in; raises a Failure carrying LastError otherwise.
    virtual void Connect() = 0;
    // Sends the deletions marked on messages, then QUIT, and closes. Safe
    // when nothing is connected.
    virtual void Disconnect() = 0;
    // Drops the line at once, without QUIT, so nothing marked is deleted; a
    // blocking call in progress fails and returns.
    virtual void Abort() = 0;
    virtual PopMessages& Messages() = 0;

    // Above 0 when the last failure came from the client.
    virtual int LastError() const = 0;
    virtual QString ErrorText() const = 0;
};

class PopClientFactory {
public:
    virtual ~PopClientFactory() = default;
    virtual std::unique_ptr<PopClient> create() = 0;
};

} // namespace velmora
