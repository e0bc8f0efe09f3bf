#pragma once

#include <QString>

namespace velmora {

// Certificates for the test servers, made with openssl in a folder the test
// owns: a CA with a server certificate for localhost and 127.0.0.1 signed by
// it, one it signed for another host, one whose only names are wildcards
// that would stand for 127.0.0.1, and a self-signed certificate that no CA
// vouches for.
class TestCertificate {
public:
    enum Kind { Trusted, ForAnotherHost, WildcardForAddress, SelfSigned };

    // Makes all files in `folder`; ok() tells whether openssl succeeded.
    explicit TestCertificate(const QString& folder);

    bool ok() const { return made; }
    // What went wrong, for a test's failure message.
    QString error() const { return problem; }

    QString caFile() const { return dir + "/ca.pem"; }
    QString certFile(Kind kind = Trusted) const;
    QString keyFile(Kind kind = Trusted) const;

private:
    bool run(const QStringList& arguments);
    bool signedFor(Kind kind, const QString& subject, const QString& stem);

    QString dir;
    bool made = false;
    QString problem;
};

} // namespace velmora
