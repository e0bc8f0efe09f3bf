#include "platform/qt/SocketLine.h"

#include "platform/qt/OpenSsl.h"
#include "platform/qt/PopReader.h"

#include <QSocketNotifier>
#include <QUrl>

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iterator>

namespace velmora {

namespace {

// A TLS record holds at most this much text; a plain read takes up to a
// socket buffer's worth.
constexpr int RecordText = 16 * 1024;
constexpr int PlainChunk = 64 * 1024;
// Read in one go before the event loop gets a turn, so that Stop and the
// progress bar keep moving while a fast server streams a large message.
constexpr qsizetype ReadBatch = 512 * 1024;

// The certificate errors the program reports, by number: the numbers go
// into the error texts, with what each says.
constexpr int NoPeerCertificate = 21;
constexpr int HostNameMismatch = 22;
constexpr int UnknownCertificateError = -1;

constexpr const char* CertificateTexts[] = {
    "No error",
    "The issuer certificate could not be found",
    "The certificate signature could not be decrypted",
    "The public key in the certificate could not be read",
    "The signature of the certificate is invalid",
    "The certificate is not yet valid",
    "The certificate has expired",
    "The certificate's notBefore field contains an invalid time",
    "The certificate's notAfter field contains an invalid time",
    "The certificate is self-signed, and untrusted",
    "The root certificate of the certificate chain is self-signed, and untrusted",
    "The issuer certificate of a locally looked up certificate could not be found",
    "No certificates could be verified",
    "Unknown error",
    "One of the CA certificates is invalid",
    "The basicConstraints path length parameter has been exceeded",
    "The supplied certificate is unsuitable for this purpose",
    "The root CA certificate is not trusted for this purpose",
    "The root CA certificate is marked to reject the specified purpose",
    "The current candidate issuer certificate was rejected because its subject name did not "
    "match the issuer name of the current certificate",
    "The current candidate issuer certificate was rejected because its issuer name and serial "
    "number was present and did not match the authority key identifier of the current "
    "certificate",
    "The peer did not present any certificate",
    "The host name did not match any of the valid hosts for this certificate"};
// 13 has no words of its own: a revoked certificate was always reported so.
static_assert(std::size(CertificateTexts) == HostNameMismatch + 1);

// OpenSSL's verification results for the numbers 1 to 18, in order.
constexpr long ChainResults[] = {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT,
                                 X509_V_ERR_UNABLE_TO_DECRYPT_CERT_SIGNATURE,
                                 X509_V_ERR_UNABLE_TO_DECODE_ISSUER_PUBLIC_KEY,
                                 X509_V_ERR_CERT_SIGNATURE_FAILURE,
                                 X509_V_ERR_CERT_NOT_YET_VALID,
                                 X509_V_ERR_CERT_HAS_EXPIRED,
                                 X509_V_ERR_ERROR_IN_CERT_NOT_BEFORE_FIELD,
                                 X509_V_ERR_ERROR_IN_CERT_NOT_AFTER_FIELD,
                                 X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT,
                                 X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN,
                                 X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY,
                                 X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE,
                                 X509_V_ERR_CERT_REVOKED,
                                 X509_V_ERR_INVALID_CA,
                                 X509_V_ERR_PATH_LENGTH_EXCEEDED,
                                 X509_V_ERR_INVALID_PURPOSE,
                                 X509_V_ERR_CERT_UNTRUSTED,
                                 X509_V_ERR_CERT_REJECTED};
static_assert(std::size(ChainResults) == 18);

// The host as the certificate checks want it: an address as its canonical
// text without a zone, or a name in ASCII without a final dot.
std::pair<QByteArray, bool> HostForChecks(const QString& host) {
    // Read as the connection read it, so that "127.1" is an address here too.
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    addrinfo* numeric = nullptr;
    if (::getaddrinfo(host.toLatin1().constData(), nullptr, &hints, &numeric) == 0) {
        char text[NI_MAXHOST] = {};
        const int error = ::getnameinfo(numeric->ai_addr, numeric->ai_addrlen, text, sizeof text,
                                        nullptr, 0, NI_NUMERICHOST);
        ::freeaddrinfo(numeric);
        if (error == 0)
            return {QByteArray(text).split('%').first(), true};
    }
    QByteArray name = QUrl::toAce(host);
    if (name.endsWith('.'))
        name.chop(1);
    return {name, false};
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

int CertificateError(long x509Error) {
    if (x509Error == X509_V_ERR_HOSTNAME_MISMATCH || x509Error == X509_V_ERR_IP_ADDRESS_MISMATCH)
        return HostNameMismatch;
    for (int i = 0; i < int(std::size(ChainResults)); ++i)
        if (ChainResults[i] == x509Error)
            return i + 1;
    return UnknownCertificateError;
}

QString CertificateText(int code) {
    return QString::fromLatin1(code >= 0 && code < int(std::size(CertificateTexts))
                                   ? CertificateTexts[code]
                                   : "Unknown error");
}

bool SocketLine::prepareTls(QString& problem) {
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
    return Context(*lib, &SocketLine::verified, problem) != nullptr;
}

SocketLine::SocketLine(int descriptor, const std::optional<QString>& tlsHost, PopReader& reader,
                       QObject* parent)
    : QObject(parent), reader(reader), fd(descriptor) {
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
        // A TLS read may have been waiting for the socket to take a write.
        // Read first, so that a failed write still leaves the server's last
        // words read.
        const bool got = pull();
        flush();
        if (got)
            Q_EMIT changed();
    });
    if (tlsHost)
        startTls(*tlsHost);
}

void SocketLine::startTls(const QString& host) {
    current = Handshaking;
    lib = OpenSsl();
    std::tie(name, address) = HostForChecks(host);
    QString trouble;
    SSL_CTX* context = lib ? Context(*lib, &SocketLine::verified, trouble) : nullptr;
    if (!context) {
        fail(0, lib ? trouble : QStringLiteral("TLS is not available"));
        return;
    }
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

SocketLine::~SocketLine() {
    blockSignals(true);
    if (fd >= 0)
        drop(Closed);
    if (ssl)
        lib->SSL_free(ssl);
}

// Every problem with the chain is noted and the handshake goes on; the line
// is dropped once it ends, reporting the first, before a byte is sent.
int SocketLine::verified(int ok, X509_STORE_CTX* store) {
    if (ok)
        return 1;
    const OpenSslLibrary* lib = OpenSsl();
    auto* ssl = static_cast<SSL*>(
        lib->X509_STORE_CTX_get_ex_data(store, lib->SSL_get_ex_data_X509_STORE_CTX_idx()));
    auto* line = ssl ? static_cast<SocketLine*>(lib->SSL_get_ex_data(ssl, 0)) : nullptr;
    // Only the first handshake's chain counts; anything later is refused.
    if (!line || line->current != Handshaking)
        return 0;
    line->chainErrors.push_back(CertificateError(lib->X509_STORE_CTX_get_error(store)));
    return 1;
}

void SocketLine::handshake() {
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
void SocketLine::checkPeer() {
    std::vector<int> errors;
    X509* peer = lib->SSL_get0_peer_certificate(ssl);
    if (!peer) {
        errors.push_back(NoPeerCertificate);
    } else {
        // An address matches an address entry, or a name entry of exactly
        // that text; a wildcard never stands for part of an address.
        const unsigned flags = X509_CHECK_FLAG_ALWAYS_CHECK_SUBJECT |
                               (address ? unsigned(X509_CHECK_FLAG_NO_WILDCARDS) : 0u);
        const bool matches =
            (address && lib->X509_check_ip_asc(peer, name.constData(), 0) == 1) ||
            lib->X509_check_host(peer, name.constData(), size_t(name.size()), flags, nullptr) == 1;
        if (!matches)
            errors.push_back(HostNameMismatch);
    }
    errors.insert(errors.end(), chainErrors.begin(), chainErrors.end());
    // Should the callback have missed one, the session's own verdict counts.
    const long verdict = lib->SSL_get_verify_result(ssl);
    if (errors.empty() && verdict != X509_V_OK)
        errors.push_back(CertificateError(verdict));
    if (!errors.empty()) {
        fail(errors.front(), CertificateText(errors.front()));
        return;
    }
    current = Open;
    Q_EMIT changed();
}

bool SocketLine::wouldBlock(int result) {
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

bool SocketLine::pull() {
    const int chunk = ssl ? RecordText : PlainChunk;
    qsizetype got = 0;
    while (current == Open && got < ReadBatch) {
        const int n = readSome(reader.room(chunk), chunk);
        reader.grew(n > 0 ? n : 0);
        if (n <= 0) {
            // The end of the stream, a reset or a broken record: the line
            // is gone either way, and what came before it stays read.
            if (n < 0)
                drop(Closed);
            break;
        }
        got += n;
        // A plain read that came short took all there was; the next would
        // only say so.
        if (!ssl && n < chunk)
            break;
    }
    arrived = arrived || got > 0;
    return got > 0;
}

int SocketLine::readSome(char* into, int most) {
    if (ssl) {
        lib->ERR_clear_error();
        const int n = lib->SSL_read(ssl, into, most);
        return n > 0 ? n : wouldBlock(n) ? 0 : -1;
    }
    const ssize_t n = ::recv(fd, into, size_t(most), 0);
    if (n > 0)
        return int(n);
    return n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) ? 0 : -1;
}

int SocketLine::writeSome(const char* from, int length) {
    if (ssl) {
        lib->ERR_clear_error();
        const int n = lib->SSL_write(ssl, from, length);
        return n > 0 ? n : wouldBlock(n) ? 0 : -1;
    }
    const ssize_t n = ::send(fd, from, size_t(length), MSG_NOSIGNAL);
    if (n > 0)
        return int(n);
    if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) {
        writable->setEnabled(true);
        return 0;
    }
    return -1;
}

void SocketLine::write(const QByteArray& data) {
    outgoing.append(data);
}

void SocketLine::flush() {
    while (current == Open && !outgoing.isEmpty()) {
        // A TLS write that could not finish is repeated with the same length.
        if (!inFlight)
            inFlight = int(qMin<qsizetype>(outgoing.size(), 1 << 20));
        const int n = writeSome(outgoing.constData(), inFlight);
        if (n < 0)
            drop(Closed);
        if (n <= 0)
            return;
        outgoing.remove(0, n);
        inFlight = 0;
    }
}

void SocketLine::close() {
    if (current == Open)
        flush();
    if (current == Open && ssl) {
        lib->ERR_clear_error();
        lib->SSL_shutdown(ssl);
    }
    if (fd >= 0)
        drop(Closed);
}

void SocketLine::abort() {
    if (fd >= 0)
        drop(Closed);
}

void SocketLine::fail(int certificateCode, const QString& text) {
    certificate = certificateCode;
    problem = text;
    if (lib)
        lib->ERR_clear_error();
    if (fd >= 0)
        drop(Failed);
    else
        current = Failed;
}

void SocketLine::drop(State to) {
    if (readable)
        readable->setEnabled(false);
    if (writable)
        writable->setEnabled(false);
    ::close(fd);
    fd = -1;
    current = to;
    Q_EMIT changed();
}

QString SocketLine::peerSubject() const {
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
