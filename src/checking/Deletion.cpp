#include "checking/Deletion.h"

#include "checking/CheckCycle.h"
#include "checking/PopDialogs.h"
#include "checking/PopSession.h"
#include "context/AppContext.h"
#include "messages/MessageList.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/PopClient.h"

#include <QStringList>
#include <QVector>

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

bool Confirmed(AppContext& ctx, int account, int count, const QString& word) {
    if (ctx.options.DeleteConfirmation != 1)
        return true;
    const QString text = QStringLiteral("Ready to Delete ") + QString::number(count) + word +
                         QStringLiteral(" Message(s) from '") + ctx.accounts[account].AcntName +
                         QStringLiteral("' ") + QString(15, QLatin1Char(' ')) + CRLF + CRLF +
                         QStringLiteral("This operation is NOT reversible!") + CRLF + CRLF +
                         QStringLiteral("Would you like to proceed?") + CRLF;
    const QString title = ctx.shell.AppTitle + QStringLiteral(" - Ready to Delete") + word +
                          QStringLiteral(" Message(s)");
    return ctx.svc.boxes->show(title, text, BoxIcon::Critical, BoxButtons::YesNo, 1) ==
           BoxAnswer::Yes;
}

// Marks on the server every message whose identifier is one of `ids`; a
// message that arrived or went since the check is passed over.
void MarkOnServer(AppContext& ctx, const QStringList& ids) {
    PopMessages& messages = ctx.check.PopClient->Messages();
    messages.ListMessages();
    const int m = messages.Count();
    for (int i = 1; i <= m; ++i) {
        PopMessage& item = messages.Item(i - 1);
        const QString uid = item.Uid();
        if (!uid.isEmpty() && ids.contains(uid))
            item.setDeleted(true);
    }
}

// The account's counts, the program's sums and its status text, from the
// store as it now stands.
void Recount(AppContext& ctx, int account) {
    Account& a = ctx.accounts[account];
    a.AcntDeleteCount = a.AcntSpamCount = a.AcntNewCount = 0;
    for (int n = 1; n <= a.AcntMsgCount; ++n) {
        const MailMessage& m = ctx.messages.at(account, n);
        a.AcntDeleteCount += m.Delete ? 1 : 0;
        a.AcntSpamCount += m.Spam ? 1 : 0;
        a.AcntNewCount += m.New ? 1 : 0;
    }
    ctx.check.TotalMessages = ctx.check.TotalNew = 0;
    for (int k = 1; k <= ctx.accounts.AcntNum; ++k) {
        ctx.check.TotalMessages += ctx.accounts[k].AcntMsgCount;
        ctx.check.TotalNew += ctx.accounts[k].AcntNewCount;
    }
    a.AcntStatusText =
        a.AcntMsgCount > 0
            ? QStringLiteral("%1 - %2 Message(s)").arg(a.AcntName).arg(a.AcntMsgCount)
            : a.AcntName + QStringLiteral(" - No Messages");
}

} // namespace

void DeleteMessages(AppContext& ctx, int account, bool ruleMarked) {
    if (account < 1 || account > ctx.accounts.AcntNum || !ctx.check.PopClient)
        return;
    Account& a = ctx.accounts[account];
    const int oldCount = a.AcntMsgCount;
    QVector<MailMessage>& copy = ctx.messages.spare;
    if (copy.size() < oldCount + 1)
        copy.resize(oldCount + 1);
    QVector<bool> going(oldCount + 1, false);
    QStringList ids;
    const QString word = ruleMarked ? QStringLiteral(" Spam") : QString();
    for (int n = 1; n <= oldCount; ++n) {
        copy[n] = ctx.messages.at(account, n);
        const bool taken = ruleMarked ? copy[n].Spam : ctx.view->list().isRowSelected(n);
        if (taken) {
            ids.append(copy[n].MsgID);
            going[n] = true;
        }
    }
    if (!Confirmed(ctx, account, int(ids.size()), word))
        return;

    try {
        PrepareConnection(ctx, account);
        ctx.check.PopClient->Connect();
        if (ctx.check.PopConnected)
            MarkOnServer(ctx, ids);
        // The QUIT of the disconnection makes the marks final.
        CloseConnection(ctx);
    } catch (const Failure& failure) {
        CloseConnection(ctx);
        // Never silenced: the user asked for this deletion.
        ShowFailure(ctx, account, failure, QStringLiteral("Delete Connection Failure"));
        return;
    }

    // The store follows the user's decision, whatever the server held.
    int k = 0;
    for (int n = 1; n <= oldCount; ++n) {
        if (!going[n])
            ctx.messages.at(account, ++k) = copy[n];
    }
    for (int n = k + 1; n <= oldCount; ++n)
        ctx.messages.at(account, n) = MailMessage{};
    a.AcntMsgCount = a.AcntPrevCount = k;
    Recount(ctx, account);
    ShowAccountMessages(ctx, account);
}

void EmailDelete(AppContext& ctx) {
    SuspendAutoCheck(ctx, "Suspend");
    // A deletion cannot be stopped: no Stop button.
    SetCheckingInterface(ctx, false, false);
    DeleteMessages(ctx, ctx.accounts.AcntCurrent, false);
    ctx.list.AcntLastShown = 0;
    SelectEmailTab(ctx, ctx.accounts.AcntCurrent);
    SetCheckingInterface(ctx, true, false);
    SuspendAutoCheck(ctx, "Restore");
}

void EmailSpam(AppContext& ctx) {
    const int remembered = ctx.accounts.AcntCurrent;
    SuspendAutoCheck(ctx, "Suspend");
    SetCheckingInterface(ctx, false, false);
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        if (ctx.accounts[n].AcntSpamCount <= 0)
            continue;
        ctx.list.AcntLastShown = 0;
        SelectEmailTab(ctx, n);
        DeleteMessages(ctx, n, true);
    }
    ctx.accounts.AcntCurrent = remembered;
    SelectEmailTab(ctx, remembered);
    SetCheckingInterface(ctx, true, false);
    SuspendAutoCheck(ctx, "Restore");
}

} // namespace velmora
