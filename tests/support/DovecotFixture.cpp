#include "support/DovecotFixture.h"

#include "support/TestCertificate.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QMap>
#include <QSslSocket>
#include <QStandardPaths>
#include <QTcpServer>
#include <QThread>
#include <QtDebug>

#include <algorithm>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

// Dovecot will not run mail processes as root, so as root they run as this user.
constexpr char kMailUser[] = "velmora-mail";
// Fixed, and the first message stamp after it, so every run gives the same UIDLs.
constexpr qint64 kUidValidity = 1700000000;
constexpr int kReadyTimeoutMs = 15000;
constexpr int kLaunchAttempts = 3;
const QStringList kSbin = {"/usr/sbin", "/sbin", "/usr/local/sbin"};

// Placeholders are @NAME@, as Dovecot's own variables start with %.
constexpr char kConfig[] = R"(# One private test instance; all its files are under @DIR@.
base_dir = @DIR@/run
state_dir = @DIR@/state
instance_name = @NAME@
protocols = pop3
listen = 127.0.0.1
log_path = @DIR@/log/dovecot.log
info_log_path = @DIR@/log/info.log
@UNPRIVILEGED@ssl = yes
ssl_cert = <@DIR@/cert/server.pem
ssl_key = <@DIR@/cert/server.key
disable_plaintext_auth = no
auth_username_format = %u
# A failed login answers in half a second, not two, so tests of them stay fast.
auth_failure_delay = 0
auth_verbose = yes
mail_location = maildir:~/Maildir
first_valid_uid = @UID@
last_valid_uid = @UID@
first_valid_gid = @GID@
last_valid_gid = @GID@
# Sessions leave the mailboxes as they were, so every run sees the same.
pop3_no_flag_updates = yes
pop3_uidl_format = %08Xu%08Xv
passdb {
  driver = passwd-file
  args = scheme=PLAIN @DIR@/passwd
}
userdb {
  driver = static
  args = uid=@UID@ gid=@GID@ home=@DIR@/mail/%u
}
# Chroots need root; without them the configuration is the same either way.
service pop3-login {
  chroot =
  inet_listener pop3 {
    port = @PLAIN@
  }
  inet_listener pop3s {
    port = @TLS@
    ssl = yes
  }
}
service anvil {
  chroot =
}
service ipc {
  chroot =
}
)";

QString findTool(const QString& name) {
    const QString found = QStandardPaths::findExecutable(name);
    return found.isEmpty() ? QStandardPaths::findExecutable(name, kSbin) : found;
}

bool isRoot() {
    return ::geteuid() == 0;
}

// Made with the umask in force, so open them explicitly: with Dovecot run as
// root, its services read them as other users.
bool makeDir(const QString& path) {
    return QDir().mkpath(path) && ::chmod(QFile::encodeName(path).constData(), 0755) == 0;
}

bool writeFile(const QString& path, const QByteArray& data) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(data) == data.size() && ::fchmod(file.handle(), 0644) == 0;
}

// True once a login process greets on `port` and has let us go again: a probe
// left open would hold up Dovecot's shutdown by seconds.
bool greets(quint16 port, bool tls) {
    QSslSocket socket;
    socket.setPeerVerifyMode(QSslSocket::VerifyNone); // the tests check the certificate
    if (tls)
        socket.connectToHostEncrypted("127.0.0.1", port);
    else
        socket.connectToHost(QHostAddress::LocalHost, port);
    if (!(tls ? socket.waitForEncrypted(2000) : socket.waitForConnected(500)))
        return false;
    QByteArray line;
    while (!line.contains('\n') && socket.waitForReadyRead(1000))
        line += socket.readAll();
    if (!line.startsWith("+OK"))
        return false;
    socket.write("QUIT\r\n");
    socket.waitForDisconnected(1000);
    return true;
}

} // namespace

DovecotFixture::DovecotFixture() = default;

DovecotFixture::~DovecotFixture() {
    stop();
}

QString DovecotFixture::maildir(const QByteArray& user) const {
    return folder() + "/mail/" + QString::fromUtf8(user) + "/Maildir";
}

bool DovecotFixture::start(const QList<Mailbox>& mailboxes) {
    stop();
    problem.clear();
    if (!prepare(mailboxes))
        return false;
    QString why;
    for (int attempt = 1; attempt <= kLaunchAttempts; ++attempt) {
        if (!writeConfig())
            return fail("cannot write " + folder() + "/dovecot.conf");
        if (launch(why))
            return true;
        stop();
        // Another program may have taken a port between our look and Dovecot's bind.
        if (!logTail(5).contains("Address already in use"))
            break;
    }
    return fail(why);
}

bool DovecotFixture::prepare(const QList<Mailbox>& mailboxes) {
    nextStamp.clear();
    if (program.isEmpty())
        program = findTool("dovecot");
    if (program.isEmpty() || !QFileInfo(program).isExecutable())
        return fail("Dovecot not found (" + (program.isEmpty() ? "dovecot" : program) +
                    "); install dovecot-core and dovecot-pop3d, as scripts/install-deps does");
    if (!findMailIdentity())
        return false;

    // Fixed and short: unix sockets in base_dir allow 108 bytes, and TMPDIR
    // often points somewhere deep.
    work = std::make_unique<QTemporaryDir>("/tmp/vdXXXXXX");
    if (!work->isValid())
        return fail("cannot make a work folder: " + work->errorString());
    for (const char* sub : {"", "/log", "/run", "/state", "/mail"})
        if (!makeDir(folder() + sub))
            return fail("cannot make " + folder() + sub);

    const TestCertificate certificate(folder() + "/cert");
    if (!certificate.ok())
        return fail("cannot make the certificate: " + certificate.error());

    // Names and passwords go into the passwd file as they are.
    QByteArray passwd;
    for (const Mailbox& mailbox : mailboxes) {
        passwd += mailbox.user + ":{PLAIN}" + mailbox.password + "::::::\n";
        if (!writeMailbox(mailbox))
            return fail("cannot write the mailbox of " + QString::fromUtf8(mailbox.user));
    }
    if (!writeFile(folder() + "/passwd", passwd))
        return fail("cannot write " + folder() + "/passwd");
    return true;
}

bool DovecotFixture::findMailIdentity() {
    if (!isRoot()) {
        const passwd* pw = ::getpwuid(::getuid());
        const group* gr = ::getgrgid(::getgid());
        if (!pw || !gr)
            return fail("our uid or gid has no name; Dovecot needs names");
        mail = {pw->pw_uid, pw->pw_gid, pw->pw_name, gr->gr_name};
        return true;
    }
    QString output;
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (const passwd* pw = ::getpwnam(kMailUser)) {
            mail = {pw->pw_uid, pw->pw_gid, kMailUser, {}};
            return true;
        }
        QProcess useradd;
        useradd.setProcessChannelMode(QProcess::MergedChannels);
        useradd.start(findTool("useradd"),
                      {"--system", "--user-group", "--no-create-home", "--home-dir", "/nonexistent",
                       "--shell", "/usr/sbin/nologin", kMailUser});
        useradd.waitForFinished(30000);
        output = useradd.errorString() + ": " + QString::fromLocal8Bit(useradd.readAll());
        // A test running beside us may hold the passwd lock or have just made the user.
        QThread::msleep(100);
    }
    return fail(
        QString("cannot make the mail user %1 with useradd (%2)").arg(QString(kMailUser), output));
}

bool DovecotFixture::writeMailbox(const Mailbox& mailbox) {
    const QString dir = maildir(mailbox.user);
    const QString home = QFileInfo(dir).path();
    for (const QString& sub : {home, dir, dir + "/cur", dir + "/new", dir + "/tmp"}) {
        if (!makeDir(sub))
            return false;
        handOver(sub);
    }
    // The header alone fixes UIDVALIDITY and the mailbox GUID; Dovecot adds the
    // records, numbering new files in the order of their time prefix.
    const QByteArray guid = QCryptographicHash::hash(mailbox.user, QCryptographicHash::Md5).toHex();
    const QByteArray uidlist = "3 V" + QByteArray::number(kUidValidity) + " N1 G" + guid + "\n";
    if (!writeFile(dir + "/dovecot-uidlist", uidlist))
        return false;
    handOver(dir + "/dovecot-uidlist");
    nextStamp.insert(mailbox.user, kUidValidity + 1);
    return std::all_of(mailbox.messages.begin(), mailbox.messages.end(),
                       [&](const QByteArray& data) { return writeMessage(mailbox.user, data); });
}

bool DovecotFixture::writeMessage(const QByteArray& user, const QByteArray& data) {
    const qint64 stamp = nextStamp.value(user);
    nextStamp.insert(user, stamp + 1);
    const QString name = QString::number(stamp) + ".velmora";
    const QString temporary = maildir(user) + "/tmp/" + name;
    // Written aside and renamed in, so a session never sees half a message.
    if (!writeFile(temporary, data))
        return false;
    handOver(temporary);
    return QFile::rename(temporary, maildir(user) + "/cur/" + name + ":2,");
}

bool DovecotFixture::writeConfig() {
    // Both held at once so they differ; they close before Dovecot binds them.
    QTcpServer first;
    QTcpServer second;
    first.listen(QHostAddress::LocalHost, 0);
    second.listen(QHostAddress::LocalHost, 0);
    plain = first.serverPort();
    tls = second.serverPort();
    // Unprivileged, every service runs as us.
    const QByteArray unprivileged =
        isRoot() ? QByteArray()
                 : "default_login_user = " + mail.user + "\ndefault_internal_user = " + mail.user +
                       "\ndefault_internal_group = " + mail.group + "\n";
    QByteArray config = kConfig;
    config.replace("@DIR@", folder().toUtf8())
        .replace("@NAME@", QFileInfo(folder()).fileName().toUtf8())
        .replace("@UNPRIVILEGED@", unprivileged)
        .replace("@UID@", QByteArray::number(mail.uid))
        .replace("@GID@", QByteArray::number(mail.gid))
        .replace("@PLAIN@", QByteArray::number(plain))
        .replace("@TLS@", QByteArray::number(tls));
    return plain != 0 && tls != 0 && writeFile(folder() + "/dovecot.conf", config);
}

bool DovecotFixture::launch(QString& why) {
    process.setProgram(program);
    process.setArguments({"-F", "-c", folder() + "/dovecot.conf"});
    process.setStandardInputFile(QProcess::nullDevice());
    // Startup errors go to the console before the log files exist; a file
    // keeps them for logTail() and never fills a pipe.
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardOutputFile(folder() + "/log/console.log", QIODevice::Append);
    const pid_t parent = ::getpid();
    process.setChildProcessModifier([parent] {
        // Dies with the test process, so a crashed test leaves no server behind.
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != parent)
            ::_exit(127);
    });
    process.start();
    if (!process.waitForStarted(5000)) {
        why = "cannot run " + program + ": " + process.errorString();
        return false;
    }
    return waitUntilReady(why);
}

bool DovecotFixture::waitUntilReady(QString& why) {
    // Each failed login would delay every later one from 127.0.0.1, up to
    // 15 s. Auth skips that penalty, silently, when the anvil socket for it is
    // missing; it connects at its start, on the first login, so remove the
    // socket before any.
    const QString penaltySocket = folder() + "/run/anvil-auth-penalty";
    bool penaltyOff = false;
    bool plainUp = false;
    bool tlsUp = false;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kReadyTimeoutMs) {
        if (!penaltyOff) {
            penaltyOff = QFile::remove(penaltySocket);
        } else {
            plainUp = plainUp || greets(plain, false);
            tlsUp = tlsUp || greets(tls, true);
            if (plainUp && tlsUp)
                return true;
        }
        // Doubles as the poll interval and notices an early exit.
        if (process.waitForFinished(20)) {
            why = QString("Dovecot (%1) ended at start-up with %2 %3")
                      .arg(program,
                           process.exitStatus() == QProcess::NormalExit ? "exit code" : "signal")
                      .arg(process.exitCode());
            return false;
        }
    }
    why = QString("Dovecot did not %1 within %2 ms")
              .arg(penaltyOff ? QString("greet on ports %1 and %2").arg(plain).arg(tls)
                              : "make " + penaltySocket)
              .arg(kReadyTimeoutMs);
    return false;
}

void DovecotFixture::stop() {
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate(); // SIGTERM to its pid; the master stops its own children
    if (!process.waitForFinished(10000)) {
        process.kill();
        process.waitForFinished(5000);
    }
}

bool DovecotFixture::fail(const QString& why) {
    stop();
    problem = why;
    const QString tail = logTail();
    if (!tail.isEmpty())
        problem += "\nLast lines of Dovecot's logs:\n" + tail;
    return false;
}

QString DovecotFixture::logTail(int lines) const {
    QString tail;
    for (const char* name : {"console.log", "dovecot.log", "info.log"}) {
        QFile file(folder() + "/log/" + name);
        if (!work || !file.open(QIODevice::ReadOnly) || file.size() == 0)
            continue;
        const QList<QByteArray> all = file.readAll().trimmed().split('\n');
        tail += QString("[%1]\n%2\n").arg(name, all.mid(qMax(0, all.size() - lines)).join('\n'));
    }
    return tail;
}

void DovecotFixture::handOver(const QString& path) const {
    // As root we write the mail; the mail user must own it to change it.
    if (isRoot() && ::chown(QFile::encodeName(path).constData(), mail.uid, mail.gid) != 0)
        qWarning("DovecotFixture: cannot hand %s over to %s", qPrintable(path), kMailUser);
}

QStringList DovecotFixture::messageFiles(const QByteArray& user) const {
    // Dovecot numbers messages by the time prefix of their names; so do we.
    QMap<qint64, QString> files;
    for (const char* sub : {"/new", "/cur"}) {
        const QDir dir(maildir(user) + sub);
        for (const QString& name : dir.entryList(QDir::Files))
            files.insert(name.section('.', 0, 0).toLongLong(), dir.filePath(name));
    }
    return files.values();
}

void DovecotFixture::addMessage(const QByteArray& user, const QByteArray& data) {
    if (!writeMessage(user, data))
        qWarning("DovecotFixture: cannot add a message for %s", user.constData());
}

void DovecotFixture::removeMessage(const QByteArray& user, int index) {
    const QStringList files = messageFiles(user);
    if (index < 0 || index >= files.size() || !QFile::remove(files[index]))
        qWarning("DovecotFixture: cannot remove message %d of %s", index, user.constData());
}

} // namespace velmora
