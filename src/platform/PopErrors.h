#pragma once

#include <QString>

namespace velmora {

// The failure numbers of the POP client, all in one place. The dialogs
// compare these numbers, and the options that silence errors name them.
namespace PopError {

constexpr int ConnectionReset = 10054; // closed or reset by the server before the login finished
constexpr int TimedOut = 10060; // no answer in time to connect or log in, or a reply too slow
constexpr int ConnectionRefused = 10061;
constexpr int HostNotFound = 11001;
constexpr int NoHostName = 30001;
constexpr int BadPort = 30002; // outside 1 to 65535
constexpr int NotPop3Greeting = 30003;
constexpr int ServerRefused = 30004;   // the greeting is -ERR
constexpr int UnexpectedReply = 30005; // a reply of the login phase that is neither +OK nor -ERR
constexpr int ReplyTooLong = 30006;    // a status line or CAPA list without end
constexpr int LoginRejected = 30007;   // USER or PASS answered -ERR
constexpr int NotConnected = 30008;    // a mailbox command without a connection
constexpr int TooManyMessages = 30009; // more than a 16-bit count holds
constexpr int StatFailed = 30010;
constexpr int ListingFailed = 30011;    // UIDL or LIST answered -ERR, or an unreadable listing
constexpr int RetrieveFailed = 30012;   // RETR answered -ERR, or ran past the size limit or listing
constexpr int ConnectionLost = 30013;   // lost after the login, while retrieving or listing
constexpr int RetrieveTimedOut = 30014; // no answer within Timeout after the login
constexpr int DeleteFailed = 30015;     // DELE or the closing QUIT answered -ERR
constexpr int TlsHandshake = 60000;
// Above 60000: the certificate failed verification; the number is 60000
// plus the verification error's code.
constexpr int CertificateBase = 60000;

} // namespace PopError
} // namespace velmora
