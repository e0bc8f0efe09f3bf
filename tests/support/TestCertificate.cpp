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
    QFile ext(dir + "/server.ext");
    if (!ext.open(QIODevice::WriteOnly)) {
        problem = "cannot write " + ext.fileName();
        return;
    }
    ext.write("basicConstraints=CA:FALSE\n"
              "keyUsage=critical,digitalSignature,keyEncipherment\n"
              "extendedKeyUsage=serverAuth\n"
              "subjectAltName=DNS:localhost,IP:127.0.0.1\n");
    ext.close();

    made = run(QStringList{"req", "-x509"} + kEcKey +
               QStringList{"-keyout", dir + "/ca.key", "-out", caFile(), "-days", "3", "-subj",
                           "/CN=Velmora Test CA", "-addext", "basicConstraints=critical,CA:TRUE",
                           "-addext", "keyUsage=critical,keyCertSign,cRLSign"}) &&
           run(QStringList{"req"} + kEcKey +
               QStringList{"-keyout", keyFile(), "-out", dir + "/server.csr", "-subj",
                           "/CN=localhost"}) &&
           run({"x509", "-req", "-in", dir + "/server.csr", "-CA", caFile(), "-CAkey",
                dir + "/ca.key", "-CAcreateserial", "-out", certFile(), "-days", "3", "-extfile",
                dir + "/server.ext"}) &&
           run(QStringList{"req", "-x509"} + kEcKey +
               QStringList{"-keyout", untrustedKeyFile(), "-out", untrustedCertFile(), "-days", "3",
                           "-subj", "/CN=localhost", "-addext",
                           "subjectAltName=DNS:localhost,IP:127.0.0.1"});
    // Servers started as another user must read the key.
    for (const QString& file : {keyFile(), untrustedKeyFile()})
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                        QFile::ReadOther);
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
