#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace velmora {

// A private Dovecot POP3 server on loopback, with a generated configuration,
// users and mailboxes under a temporary folder of its own.
class DovecotFixture {
public:
    struct Mailbox {
        QByteArray user;
        QByteArray password;
        QList<QByteArray> messages; // each a whole message with CRLF line ends, in mailbox order
    };

    DovecotFixture();
    ~DovecotFixture(); // stops the instance it started (by its process id) and removes its folder
    DovecotFixture(const DovecotFixture&) = delete;
    DovecotFixture& operator=(const DovecotFixture&) = delete;

    // The server program to run; by default "dovecot" from PATH or the sbin folders.
    void setProgram(const QString& path) { program = path; }

    // Starts Dovecot on 127.0.0.1 with a plain POP3 port and an implicit-TLS
    // POP3 port (free ports), with a certificate the fixture makes. False,
    // with error() saying why (including the tail of Dovecot's log), when it
    // cannot. A second start replaces the first instance and its mailboxes.
    bool start(const QList<Mailbox>& mailboxes);
    QString error() const { return problem; }
    quint16 plainPort() const { return plain; }
    quint16 tlsPort() const { return tls; }
    // The CA that signed the server certificate.
    QString caFile() const { return folder() + "/cert/ca.pem"; }
    qint64 pid() const { return process.processId(); } // 0 when not running
    void stop();

    // Mailbox changes between sessions; Dovecot sees them at the next login.
    void addMessage(const QByteArray& user, const QByteArray& data); // appended last
    void removeMessage(const QByteArray& user, int index);           // 0-based, in mailbox order

    // The work folder (configuration, certificates, logs, mail).
    QString folder() const { return work ? work->path() : QString(); }
    // The last lines of Dovecot's logs, for failure messages.
    QString logTail(int lines = 20) const;

private:
    struct MailIdentity {
        uint uid = 0;
        uint gid = 0;
        QByteArray user; // runs the unprivileged services when we are not root
        QByteArray group;
    };

    bool prepare(const QList<Mailbox>& mailboxes);
    bool findMailIdentity();
    bool writeMailbox(const Mailbox& mailbox);
    bool writeMessage(const QByteArray& user, const QByteArray& data);
    bool writeConfig();
    bool launch(QString& why);
    bool waitUntilReady(QString& why);
    QString maildir(const QByteArray& user) const;
    QStringList messageFiles(const QByteArray& user) const;
    void handOver(const QString& path) const;
    bool fail(const QString& why);

    QString program;
    std::unique_ptr<QTemporaryDir> work;
    QProcess process;
    MailIdentity mail;
    QHash<QByteArray, qint64> nextStamp;
    quint16 plain = 0;
    quint16 tls = 0;
    QString problem;
};

} // namespace velmora
