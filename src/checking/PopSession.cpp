#include "checking/PopSession.h"

#include "checking/CheckCycle.h"
#include "checking/PopDialogs.h"
#include "checking/PopEvents.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "messages/Capture.h"
#include "platform/MainView.h"
#include "platform/PopClient.h"
#include "platform/PopErrors.h"

#include <cmath>
#include <limits>

namespace velmora {

void CreatePopClient(AppContext& ctx) {
    if (!ctx.check.PopEvents)
        ctx.check.PopEvents = std::make_unique<PopEventHandler>(ctx);
    ctx.check.PopClient = ctx.svc.pop->create();
    ctx.check.PopClient->setNotification(ctx.check.PopEvents.get());
}

void ReleasePopClient(AppContext& ctx) {
    // The client may be inside a blocking call when the program ends: its
    // line is dropped and the object kept until that call has returned.
    if (ctx.check.PopClient) {
        ctx.check.PopClient->Abort();
        ctx.check.RetiredPopClients.push_back(std::move(ctx.check.PopClient));
    }
}

void ReplacePopClient(AppContext& ctx) {
    if (ctx.check.PopClient)
        ctx.check.RetiredPopClients.push_back(std::move(ctx.check.PopClient));
    CreatePopClient(ctx);
}

qint32 PortNumber(const QString& text) {
    const QString trimmed = text.trimmed();
    bool ok = false;
    double value = trimmed.toLongLong(&ok);
    if (!ok)
        value = std::nearbyint(trimmed.toDouble(&ok));
    // A port that is no number, or beyond any the client takes, is refused
    // here as the client refuses 0 or 70000: the same box, not an
    // "unexpected error" to report.
    if (!ok || !std::isfinite(value) || value < std::numeric_limits<qint32>::min() ||
        value > std::numeric_limits<qint32>::max())
        throw Failure{PopError::BadPort,
                      QStringLiteral("Port \"%1\" is not a number from 1 to 65535").arg(text)};
    return qint32(value);
}

void PrepareConnection(AppContext& ctx, int account) {
    // A client dropped by a stop is out of its call by now.
    ctx.check.RetiredPopClients.clear();
    const Account& a = ctx.accounts[account];
    ctx.view->setBusyCursor(true);
    ctx.check.tmrRetrieveMessage->setEnabled(true);
    if (!ctx.check.TestInProgress)
        ctx.view->status().setPanelText(1,
                                        a.AcntName + QStringLiteral(" - Connection in Progress"));
    PopClient& client = *ctx.check.PopClient;
    client.setSecurity(a.AcntSecure == 1 ? PopClient::SecurityImplicitTls
                                         : PopClient::SecurityNone);
    client.setTimeout(ctx.options.ConnectTimeOut);
    client.setHostName(a.AcntServer);
    client.setPort(PortNumber(a.AcntPort));
    client.setLogin(a.AcntLoginID);
    client.setPassword(a.AcntPassword);
    client.setBlocking(true);
    client.setMaxMessageSize(qint64(qMax(1, ctx.options.MaxMessageSize)) * 1000 * 1000);
    ctx.check.PopConnected = false;
}

void CloseConnection(AppContext& ctx) {
    ctx.check.tmrRetrieveMessage->setEnabled(false);
    ctx.view->setBusyCursor(false);
    ctx.view->status().setProgressVisible(false);
    if (ctx.check.PopClient)
        ctx.check.PopClient->Disconnect();
}

void TestConnection(AppContext& ctx, int account) {
    if (!ctx.check.PopClient)
        return;
    try {
        PrepareConnection(ctx, account);
        ctx.check.PopClient->Connect();
        ctx.check.PopClient->Messages().ListMessages();
        CloseConnection(ctx);
        if (ctx.check.PopConnected)
            ShowTestSucceeded(ctx);
    } catch (const Failure& failure) {
        CloseConnection(ctx);
        // A test always reports: no option silences it.
        ShowFailure(ctx, account, failure, QStringLiteral("Test Connection Failure"));
    }
}

namespace {

// Numbers the option "Suppress Connection Error Messages" silences; a
// rejected login is not among them, so a wrong password always speaks.
bool SilencedConnectError(int number) {
    switch (number) {
    case PopError::NoHostName:
    case PopError::BadPort:
    case PopError::NotPop3Greeting:
    case PopError::ServerRefused:
    case PopError::UnexpectedReply:
    case PopError::ReplyTooLong:
    case PopError::NotConnected:
    case PopError::TooManyMessages:
    case PopError::ConnectionReset:
    case PopError::TimedOut:
    case PopError::HostNotFound:
        return true;
    default:
        return false;
    }
}

} // namespace

void RetrieveAccount(AppContext& ctx, int account) {
    if (!ctx.check.PopClient)
        return;
    Account& a = ctx.accounts[account];
    try {
        PrepareConnection(ctx, account);
        ctx.check.PopClient->Connect();
        if (!ctx.check.PopConnected)
            return;
        a.AcntConnected = true;
        if (ctx.view->windowState() != WindowState::Minimized)
            ctx.view->status().setProgressVisible(true);
        ProcessMessages(ctx, account);
        if (!ctx.check.StopRequested) {
            CloseConnection(ctx);
            return;
        }
    } catch (const Failure& failure) {
        CloseConnection(ctx);
        const int number = ClientErrorNumber(ctx, failure);
        // A stop cuts the connection short: the failure is the user's doing.
        if (!ctx.check.StopRequested &&
            !(ctx.options.SuppressConnectErrors == 1 && SilencedConnectError(number)))
            ShowFailure(ctx, account, failure, QStringLiteral("Error Establishing Connection"));
    }
    CloseConnection(ctx);
    a.AcntMsgCount = a.AcntNewCount = a.AcntSpamCount = a.AcntDeleteCount = 0;
    a.AcntHasMessages = a.AcntConnected = false;
}

void TestAccountConnection(AppContext& ctx) {
    EndStartUpCountdown(ctx);
    SuspendAutoCheck(ctx, "Suspend");
    ctx.check.TestInProgress = true;
    SetCheckingInterface(ctx, false, false);
    const int account = ctx.accounts.AcntCurrent;
    TestConnection(ctx, account);
    SetCheckingInterface(ctx, true, false);
    SuspendAutoCheck(ctx, "Restore");
    // The highest-numbered account's text, whichever account is shown.
    ctx.view->status().setPanelText(3, ctx.accounts[ctx.accounts.AcntNum].AcntLastCheckText);
    ctx.view->status().setPanelText(4, ctx.check.NextCheckText);
    ctx.check.TestInProgress = false;
}

} // namespace velmora
