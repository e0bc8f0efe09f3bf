#include "support/TestCertificate.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace velmora {

namespace {

const QStringList kEcKey = {"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"};

} // namespace

TestCertificate::TestCertificate(const QString& folder) : dir(folder) {
    QDir().mkpath(dir);
    // The certificates the CA signs differ only in the names they are for.
    const QByteArray usage = "basicConstraints=CA:FALSE\n"
                             "keyUsage=critical,digitalSignature,keyEncipherment\n"
                             "extendedKeyUsage=serverAuth\n";
    const QList<std::pair<QString, QByteArray>> extensions = {
        {"server.ext", usage + "subjectAltName=DNS:localhost,IP:127.0.0.1\n"},
        {"other.ext", usage + "subjectAltName=DNS:mail.example.net\n"},
        {"wildcard.ext", usage + "subjectAltName=DNS:*.0.0.1\n"}};
    for (const auto& [name, text] : extensions) {
        QFile ext(dir + "/" + name);
        if (!ext.open(QIODevice::WriteOnly) || ext.write(text) != text.size()) {
            problem = "cannot write " + ext.fileName();
            return;
        }
    }

    made = run(QStringList{"req", "-x509"} + kEcKey +
               QStringList{"-keyout", dir + "/ca.key", "-out", caFile(), "-days", "3", "-subj",
                           "/CN=Velmora Test CA", "-addext", "basicConstraints=critical,CA:TRUE",
                           "-addext", "keyUsage=critical,keyCertSign,cRLSign"}) &&
           run({"genpkey", "-algorithm", "EC", "-pkeyopt", "ec_paramgen_curve:P-256", "-out",
                keyFile()}) &&
           signedFor(Trusted, "/CN=localhost", "server") &&
           signedFor(ForAnotherHost, "/CN=mail.example.net", "other") &&
           signedFor(WildcardForAddress, "/CN=*.0.0.1", "wildcard") &&
           run(QStringList{"req", "-x509"} + kEcKey +
               QStringList{"-keyout", keyFile(SelfSigned), "-out", certFile(SelfSigned), "-days",
                           "3", "-subj", "/CN=localhost", "-addext",
                           "subjectAltName=DNS:localhost,IP:127.0.0.1"});
    // Servers started as another user must read the key.
    for (const QString& file : {keyFile(), keyFile(SelfSigned)})
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                        QFile::ReadOther);
}

// A certificate the CA signs for the server's key, with the extensions of
// `<stem>.ext`.
bool TestCertificate::signedFor(Kind kind, const QString& subject, const QString& stem) {
    const QString request = dir + "/" + stem + ".csr";
    return run({"req", "-new", "-key", keyFile(), "-out", request, "-subj", subject}) &&
           run({"x509", "-req", "-in", request, "-CA", caFile(), "-CAkey", dir + "/ca.key",
                "-CAcreateserial", "-out", certFile(kind), "-days", "3", "-extfile",
                dir + "/" + stem + ".ext"});
}

QString TestCertificate::certFile(Kind kind) const {
    static const char* const names[] = {"/server.pem", "/other.pem", "/wildcard.pem",
                                        "/untrusted.pem"};
    return dir + names[kind];
}

QString TestCertificate::keyFile(Kind kind) const {
    return dir + (kind == SelfSigned ? "/untrusted.key" : "/server.key");
}

bool TestCertificate::run(const QStringList& arguments) {
    QProcess openssl;
    openssl.setProcessChannelMode(QProcess::MergedChannels);
    openssl.start("openssl", arguments);
    if (!openssl.waitForFinished(30000) || openssl.exitStatus() != QProcess::NormalExit ||
        openssl.exitCode() != 0) {
        problem =
            "openssl " + arguments.join(' ') + ": " + QString::fromLocal8Bit(openssl.readAll());
        return false;
    }
    return true;
}

} // namespace velmora
