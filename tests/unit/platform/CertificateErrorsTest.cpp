#include "platform/qt/SocketLine.h"

#include <QSslError>
#include <QtTest>

#include <openssl/x509_vfy.h>

namespace velmora {

// The TLS line reports certificate errors by number and in words that users
// and the support address have long known; both must stay as they were.
class CertificateErrorsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void numbersForVerificationResults_data();
    void numbersForVerificationResults();
    void wordsForEveryNumber();
};

void CertificateErrorsTest::numbersForVerificationResults_data() {
    QTest::addColumn<long>("result");
    QTest::addColumn<int>("number");
    const std::pair<long, QSslError::SslError> pairs[] = {
        {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT, QSslError::UnableToGetIssuerCertificate},
        {X509_V_ERR_UNABLE_TO_DECRYPT_CERT_SIGNATURE,
         QSslError::UnableToDecryptCertificateSignature},
        {X509_V_ERR_UNABLE_TO_DECODE_ISSUER_PUBLIC_KEY, QSslError::UnableToDecodeIssuerPublicKey},
        {X509_V_ERR_CERT_SIGNATURE_FAILURE, QSslError::CertificateSignatureFailed},
        {X509_V_ERR_CERT_NOT_YET_VALID, QSslError::CertificateNotYetValid},
        {X509_V_ERR_CERT_HAS_EXPIRED, QSslError::CertificateExpired},
        {X509_V_ERR_ERROR_IN_CERT_NOT_BEFORE_FIELD, QSslError::InvalidNotBeforeField},
        {X509_V_ERR_ERROR_IN_CERT_NOT_AFTER_FIELD, QSslError::InvalidNotAfterField},
        {X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT, QSslError::SelfSignedCertificate},
        {X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN, QSslError::SelfSignedCertificateInChain},
        {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY,
         QSslError::UnableToGetLocalIssuerCertificate},
        {X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE, QSslError::UnableToVerifyFirstCertificate},
        {X509_V_ERR_CERT_REVOKED, QSslError::CertificateRevoked},
        {X509_V_ERR_INVALID_CA, QSslError::InvalidCaCertificate},
        {X509_V_ERR_PATH_LENGTH_EXCEEDED, QSslError::PathLengthExceeded},
        {X509_V_ERR_INVALID_PURPOSE, QSslError::InvalidPurpose},
        {X509_V_ERR_CERT_UNTRUSTED, QSslError::CertificateUntrusted},
        {X509_V_ERR_CERT_REJECTED, QSslError::CertificateRejected},
        {X509_V_ERR_HOSTNAME_MISMATCH, QSslError::HostNameMismatch},
        {X509_V_ERR_IP_ADDRESS_MISMATCH, QSslError::HostNameMismatch},
        {X509_V_ERR_OUT_OF_MEM, QSslError::UnspecifiedError},
    };
    for (const auto& [result, number] : pairs)
        QTest::addRow("%ld", result) << result << int(number);
}

void CertificateErrorsTest::numbersForVerificationResults() {
    QFETCH(long, result);
    QFETCH(int, number);
    QCOMPARE(CertificateError(result), number);
}

void CertificateErrorsTest::wordsForEveryNumber() {
    for (int number = QSslError::UnspecifiedError; number <= QSslError::HostNameMismatch; ++number)
        QCOMPARE(CertificateText(number), QSslError(QSslError::SslError(number)).errorString());
}

} // namespace velmora

QTEST_GUILESS_MAIN(velmora::CertificateErrorsTest)
#include "CertificateErrorsTest.moc"
