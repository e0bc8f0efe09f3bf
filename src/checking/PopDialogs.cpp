#include "checking/PopDialogs.h"

#include "context/AppContext.h"
#include "context/Product.h"
#include "platform/Failure.h"
#include "platform/MessageBoxes.h"
#include "platform/PopClient.h"
#include "platform/PopErrors.h"

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

QString Blanks(int n) {
    return QString(n, QLatin1Char(' '));
}

QString Head(AppContext& ctx, int account, int number, const QString& text) {
    return QStringLiteral("There was a problem encountered while accessing the") +
           QStringLiteral(" Account: ") + ctx.accounts[account].AcntName + Blanks(15) + CRLF +
           CRLF + QStringLiteral("Error Message:") + CRLF + QString::number(number) +
           QStringLiteral(" - ") + text + CRLF + CRLF;
}

} // namespace

void ShowConnectionError(AppContext& ctx, int account, int number, QString text,
                         const QString& title) {
    if (ctx.shell.Unloading)
        return;
    if (number > 10000 && number < 30000) {
        if (number == PopError::ConnectionReset)
            text = QStringLiteral("Winsock Error - Connection Reset by Peer");
        else if (number == PopError::TimedOut)
            text = QStringLiteral("Winsock Error - Connection Timed Out");
    }
    if (number == PopError::TlsHandshake)
        text = QStringLiteral("SSL Handshake Error: This may be caused by using SSL on the") +
               CRLF + QStringLiteral("wrong Port.");
    QString message = Head(ctx, account, number, text);
    if (title == QLatin1String("Delete Connection Failure"))
        message += QStringLiteral("Note:  Message(s) were NOT Deleted because") +
                   QStringLiteral(" the connection failed.") + CRLF + CRLF;
    message +=
        QStringLiteral("There could be other possiblities for this error. Please") +
        QStringLiteral(" ensure all Account") + Blanks(10) + CRLF +
        QStringLiteral("Information is accurate and your connection is established.") + CRLF +
        CRLF +
        QStringLiteral("For further assistance please try Help or contact your Service Provider") +
        CRLF + QStringLiteral("if this problem persists.") + CRLF + CRLF;
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - ") + title, message,
                        BoxIcon::Critical, BoxButtons::Ok);
}

void ShowUnexpectedError(AppContext& ctx, int account, int number, const QString& text,
                         const QString& title) {
    if (ctx.shell.Unloading)
        return;
    const QString message =
        Head(ctx, account, number, text) +
        QStringLiteral("Please report this error to Kestrum with the Number") + CRLF +
        QStringLiteral("and Description of the error.") + CRLF + CRLF +
        QStringLiteral(
            "Note: This is an unexpected error. It would be very helpful to also include") +
        CRLF +
        QStringLiteral(
            "the Title Bar text and any relevant details that might assist in tracking the") +
        CRLF + QStringLiteral("cause of this error. Thank you for your assistance.") + CRLF + CRLF +
        QStringLiteral("Email: ") + Product::SupportAddress() + CRLF + CRLF;
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - ") + title, message,
                        BoxIcon::Critical, BoxButtons::Ok);
}

int ClientErrorNumber(const AppContext& ctx, const Failure& failure) {
    // A port text the logic refused before the client saw it counts as the
    // client's own refusal of a port.
    if (failure.number == PopError::BadPort)
        return PopError::BadPort;
    const int last = ctx.check.PopClient ? ctx.check.PopClient->LastError() : 0;
    // A stale number from an earlier call must not dress up a failure of
    // our own as the client's.
    return last > 0 && last == failure.number ? last : 0;
}

void ShowFailure(AppContext& ctx, int account, const Failure& failure, const QString& title) {
    if (failure.number == PopError::BadPort)
        ShowConnectionError(ctx, account, failure.number, failure.description, title);
    else if (const int number = ClientErrorNumber(ctx, failure); number > 0)
        ShowConnectionError(ctx, account, number, ctx.check.PopClient->ErrorText(), title);
    else
        ShowUnexpectedError(ctx, account, failure.number, failure.description, title);
}

void ShowTestSucceeded(AppContext& ctx) {
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Test Connection Successfull"),
                        QStringLiteral("The Connection Succeeded.") + CRLF + CRLF +
                            QStringLiteral("You should be able to connect to your") + Blanks(15) +
                            CRLF + QStringLiteral("Mail Server to check for messages.") + CRLF +
                            CRLF,
                        BoxIcon::Information, BoxButtons::Ok);
}

} // namespace velmora
