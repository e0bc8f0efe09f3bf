#include "platform/qt/TlsLine.h"

#include "platform/qt/OpenSsl.h"
#include "platform/qt/PopReader.h"

#include <QHostAddress>
#include <QSocketNotifier>
#include <QSslError>
#include <QUrl>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace velmora {

namespace {

// A TLS record holds at most this much text.
constexpr int RecordText = 16 * 1024;
// Read in one go before the event loop gets a turn, so that Stop and the
// progress bar keep moving while a fast server streams a large message.
constexpr qsizetype ReadBatch = 512 * 1024;

// OpenSSL's verification results as the certificate errors the program
// reports, whose numbers the error texts carry.
int CertificateError(long x509Error) {
    switch (x509Error) {
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
        return QSslError::UnableToGetIssuerCertificate;
    case X509_V_ERR_UNABLE_TO_DECRYPT_CERT_SIGNATURE:
        return QSslError::UnableToDecryptCertificateSignature;
    case X509_V_ERR_UNABLE_TO_DECODE_ISSUER_PUBLIC_KEY:
        return QSslError::UnableToDecodeIssuerPublicKey;
    case X509_V_ERR_CERT_SIGNATURE_FAILURE:
        return QSslError::CertificateSignatureFailed;
    case X509_V_ERR_CERT_NOT_YET_VALID:
        return QSslError::CertificateNotYetValid;
    case X509_V_ERR_CERT_HAS_EXPIRED:
        return QSslError::CertificateExpired;
    case X509_V_ERR_ERROR_IN_CERT_NOT_BEFORE_FIELD:
        return QSslError::InvalidNotBeforeField;
    case X509_V_ERR_ERROR_IN_CERT_NOT_AFTER_FIELD:
        return QSslError::InvalidNotAfterField;
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
        return QSslError::SelfSignedCertificate;
    case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
        return QSslError::SelfSignedCertificateInChain;
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
        return QSslError::UnableToGetLocalIssuerCertificate;
    case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
        return QSslError::UnableToVerifyFirstCertificate;
    case X509_V_ERR_CERT_REVOKED:
        return QSslError::CertificateRevoked;
    case X509_V_ERR_INVALID_CA:
        return QSslError::InvalidCaCertificate;
    case X509_V_ERR_PATH_LENGTH_EXCEEDED:
        return QSslError::PathLengthExceeded;
    case X509_V_ERR_INVALID_PURPOSE:
        return QSslError::InvalidPurpose;
    case X509_V_ERR_CERT_UNTRUSTED:
        return QSslError::CertificateUntrusted;
    case X509_V_ERR_CERT_REJECTED:
        return QSslError::CertificateRejected;
    case X509_V_ERR_HOSTNAME_MISMATCH:
    case X509_V_ERR_IP_ADDRESS_MISMATCH:
        return QSslError::HostNameMismatch;
    default:
        return QSslError::UnspecifiedError;
    }
}

// The shared context, made again only when the extra CA file changes.
SSL_CTX* Context(const OpenSslLibrary& lib, int (*verify)(int, X509_STORE_CTX*), QString& problem) {
    static SSL_CTX* context = nullptr;
    static QByteArray contextCaFile;
    const QByteArray caFile = qgetenv("VELMORA_CA_FILE");
    if (context && caFile == contextCaFile)
        return context;

    lib.ERR_clear_error();
    SSL_CTX* made = lib.SSL_CTX_new(lib.TLS_client_method());
    if (!made) {
        char text[256] = {};
        lib.ERR_error_string_n(lib.ERR_get_error(), text, sizeof text);
        problem = QStringLiteral("TLS could not be set up: ") + QString::fromLatin1(text);
        return nullptr;
    }
    lib.SSL_CTX_ctrl(made, SSL_CTRL_SET_MIN_PROTO_VERSION, TLS1_2_VERSION, nullptr);
    // The certificate checked after the handshake stays the server's.
    lib.SSL_CTX_set_options(made, SSL_OP_NO_RENEGOTIATION);
    lib.SSL_CTX_ctrl(made, SSL_CTRL_MODE, SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER, nullptr);
    // A read takes what the socket holds, up to a record's worth, rather
    // than a header and then a body: half the calls into the kernel. A
    // larger buffer would cost more: OpenSSL moves what is left in it to the
    // front for every record.
    lib.SSL_CTX_ctrl(made, SSL_CTRL_SET_READ_AHEAD, 1, nullptr);
    // AES-128-GCM first: as strong as a mailbox needs and cheaper than the
    // library's first choice, for us and for the server that encrypts every
    // byte of a large mailbox.
    lib.SSL_CTX_set_ciphersuites(
        made, "TLS_AES_128_GCM_SHA256:TLS_AES_256_GCM_SHA384:TLS_CHACHA20_POLY1305_SHA256");
    lib.SSL_CTX_set_verify(made, SSL_VERIFY_PEER, verify);

    // The system's certificate folder (or SSL_CERT_DIR), where an issuer is
    // looked up by its hashed name when a server names it. Reading a whole
    // bundle instead, even one SSL_CERT_FILE names, would cost tens of
    // milliseconds a check.
    X509_STORE* store = lib.SSL_CTX_get_cert_store(made);
    if (X509_LOOKUP* folder = lib.X509_STORE_add_lookup(store, lib.X509_LOOKUP_hash_dir()))
        lib.X509_LOOKUP_ctrl(folder, X509_L_ADD_DIR, nullptr, X509_FILETYPE_DEFAULT, nullptr);
    if (!caFile.isEmpty())
        lib.SSL_CTX_load_verify_file(made, caFile.constData());
    lib.ERR_clear_error();

    // Connections made with the old context hold their own reference.
    if (context)
        lib.SSL_CTX_free(context);
    context = made;
    contextCaFile = caFile;
    return context;
}

} // namespace

bool TlsLine::prepare(QString& problem) {
    // OpenSSL writes to the socket itself, and a write after the server has
    // hung up (the close_notify after QUIT, say) must fail, not end the
    // program. Qt's processes start with the default again.
    static const bool quiet = [] {
        return std::signal(SIGPIPE, SIG_IGN) != SIG_ERR;
    }();
    Q_UNUSED(quiet);
    const OpenSslLibrary* lib = OpenSsl();
    if (!lib) {
        problem = QStringLiteral("TLS is not available: libssl.so.3 could not be loaded");
        return false;
    }
    return Context(*lib, &TlsLine::verified, problem) != nullptr;
}

TlsLine::TlsLine(int descriptor, const QString& host, PopReader& reader, QObject* parent)
    : QObject(parent), lib(OpenSsl()), reader(reader), fd(descriptor) {
    QHostAddress ip(host);
    address = !ip.isNull();
    if (address) {
        ip.setScopeId(QString());
        name = ip.toString().toLatin1();
    } else {
        name = QUrl::toAce(host);
        if (name.endsWith('.'))
            name.chop(1);
    }
    QString trouble;
    SSL_CTX* context = lib ? Context(*lib, &TlsLine::verified, trouble) : nullptr;
    if (!context) {
        fail(0, lib ? trouble : QStringLiteral("TLS is not available"));
        return;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    // Commands are a few bytes each and wait for their answers.
    const int on = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    readable = new QSocketNotifier(qintptr(fd), QSocketNotifier::Read, this);
    writable = new QSocketNotifier(qintptr(fd), QSocketNotifier::Write, this);
    writable->setEnabled(false);
    connect(readable, &QSocketNotifier::activated, this, [this] {
        if (current == Handshaking) {
            handshake();
            return;
        }
        if (inFlight)
            flush();
        if (pull())
            Q_EMIT changed();
    });
    connect(writable, &QSocketNotifier::activated, this, [this] {
        writable->setEnabled(false);
        if (current == Handshaking) {
            handshake();
            return;
        }
        // A read may have been waiting for the socket to take a write.
        flush();
        if (pull())
            Q_EMIT changed();
    });

    lib->ERR_clear_error();
    ssl = lib->SSL_new(context);
    if (!ssl || !lib->SSL_set_fd(ssl, fd)) {
        fail(0, QStringLiteral("TLS could not be set up"));
        return;
    }
    lib->SSL_set_ex_data(ssl, 0, this);
    // The server's name goes with the hello, for servers with many names;
    // an address is never sent.
    if (!address && !name.isEmpty())
        lib->SSL_ctrl(ssl, SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name, name.data());
    handshake();
}

TlsLine::~TlsLine() {
    blockSignals(true);
    if (fd >= 0)
        drop(Closed);
    if (ssl)
        lib->SSL_free(ssl);
}

// Every problem with the chain is noted and the handshake goes on; the line
// is dropped once it ends, reporting the first, before a byte is sent.
int TlsLine::verified(int ok, X509_STORE_CTX* store) {
    if (ok)
        return 1;
    const OpenSslLibrary* lib = OpenSsl();
    auto* ssl = static_cast<SSL*>(
        lib->X509_STORE_CTX_get_ex_data(store, lib->SSL_get_ex_data_X509_STORE_CTX_idx()));
    auto* line = ssl ? static_cast<TlsLine*>(lib->SSL_get_ex_data(ssl, 0)) : nullptr;
    // Only the first handshake's chain counts; anything later is refused.
    if (!line || line->current != Handshaking)
        return 0;
    line->chainErrors.push_back(CertificateError(lib->X509_STORE_CTX_get_error(store)));
    return 1;
}

void TlsLine::handshake() {
    lib->ERR_clear_error();
    errno = 0;
    const int result = lib->SSL_connect(ssl);
    const int system = errno;
    if (result == 1) {
        checkPeer();
        return;
    }
    if (wouldBlock(result))
        return;
    if (const unsigned long error = lib->ERR_get_error()) {
        char text[256] = {};
        lib->ERR_error_string_n(error, text, sizeof text);
        fail(0, QString::fromLatin1(text));
    } else if (system && system != EAGAIN) {
        fail(0, qt_error_string(system));
    } else {
        fail(0, QStringLiteral("The server closed the connection"));
    }
}

// The name is checked before the chain: a certificate for another host says
// more about a wrong setting than any fault in its chain.
void TlsLine::checkPeer() {
    std::vector<int> errors;
    X509* peer = lib->SSL_get0_peer_certificate(ssl);
    if (!peer) {
        errors.push_back(QSslError::NoPeerCertificate);
    } else {
        // An address matches an address entry, or a name entry of exactly
        // that text; a wildcard never stands for part of an address.
        const unsigned flags = X509_CHECK_FLAG_ALWAYS_CHECK_SUBJECT |
                               (address ? unsigned(X509_CHECK_FLAG_NO_WILDCARDS) : 0u);
        const bool matches =
            (address && lib->X509_check_ip_asc(peer, name.constData(), 0) == 1) ||
            lib->X509_check_host(peer, name.constData(), size_t(name.size()), flags, nullptr) == 1;
        if (!matches)
            errors.push_back(QSslError::HostNameMismatch);
    }
    errors.insert(errors.end(), chainErrors.begin(), chainErrors.end());
    // Should the callback have missed one, the session's own verdict counts.
    const long verdict = lib->SSL_get_verify_result(ssl);
    if (errors.empty() && verdict != X509_V_OK)
        errors.push_back(CertificateError(verdict));
    if (!errors.empty()) {
        fail(errors.front(), QSslError(QSslError::SslError(errors.front())).errorString());
        return;
    }
    current = Open;
    Q_EMIT changed();
}

bool TlsLine::wouldBlock(int result) {
    switch (lib->SSL_get_error(ssl, result)) {
    case SSL_ERROR_WANT_READ:
        return true;
    case SSL_ERROR_WANT_WRITE:
        writable->setEnabled(true);
        return true;
    default:
        return false;
    }
}

bool TlsLine::pull() {
    qsizetype got = 0;
    while (current == Open && got < ReadBatch) {
        lib->ERR_clear_error();
        const int n = lib->SSL_read(ssl, reader.room(RecordText), RecordText);
        reader.grew(n > 0 ? n : 0);
        if (n > 0) {
            got += n;
        } else {
            // The end of the stream, a reset or a broken record: the line
            // is gone either way, and what came before it stays read.
            if (!wouldBlock(n))
                drop(Closed);
            break;
        }
    }
    arrived = arrived || got > 0;
    return got > 0;
}

void TlsLine::write(const QByteArray& data) {
    outgoing.append(data);
}

void TlsLine::flush() {
    while (current == Open && !outgoing.isEmpty()) {
        // A write that could not finish is repeated with the same length.
        if (!inFlight)
            inFlight = int(qMin<qsizetype>(outgoing.size(), 1 << 20));
        lib->ERR_clear_error();
        const int n = lib->SSL_write(ssl, outgoing.constData(), inFlight);
        if (n <= 0) {
            if (!wouldBlock(n))
                drop(Closed);
            return;
        }
        outgoing.remove(0, n);
        inFlight = 0;
    }
}

void TlsLine::close() {
    if (current == Open)
        flush();
    if (current == Open) {
        lib->ERR_clear_error();
        lib->SSL_shutdown(ssl);
    }
    if (fd >= 0)
        drop(Closed);
}

void TlsLine::abort() {
    if (fd >= 0)
        drop(Closed);
}

void TlsLine::fail(int certificateCode, const QString& text) {
    certificate = certificateCode;
    problem = text;
    if (lib)
        lib->ERR_clear_error();
    if (fd >= 0)
        drop(Failed);
    else
        current = Failed;
}

void TlsLine::drop(State to) {
    if (readable)
        readable->setEnabled(false);
    if (writable)
        writable->setEnabled(false);
    ::close(fd);
    fd = -1;
    current = to;
    Q_EMIT changed();
}

QString TlsLine::peerSubject() const {
    X509* peer = ssl ? lib->SSL_get0_peer_certificate(ssl) : nullptr;
    if (!peer)
        return QString();
    X509_NAME* subject = lib->X509_get_subject_name(peer);
    for (const int nid : {NID_commonName, NID_organizationName, NID_organizationalUnitName}) {
        const int index = lib->X509_NAME_get_index_by_NID(subject, nid, -1);
        if (index < 0)
            continue;
        unsigned char* text = nullptr;
        const int length = lib->ASN1_STRING_to_UTF8(
            &text, lib->X509_NAME_ENTRY_get_data(lib->X509_NAME_get_entry(subject, index)));
        if (length < 0)
            continue;
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(text), length);
        lib->CRYPTO_free(text, OPENSSL_FILE, OPENSSL_LINE);
        return name;
    }
    return QString();
}

} // namespace velmora
