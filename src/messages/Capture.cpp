#include "messages/Capture.h"

#include "checking/PopDialogs.h"
#include "checking/PopSession.h"
#include "context/AppContext.h"
#include "messages/DateText.h"
#include "messages/Sorting.h"
#include "platform/PopErrors.h"
#include "rules/RuleCheck.h"

#include <QSet>
#include <cmath>

namespace velmora {

QString CleanFrom(QString from) {
    from.replace(QLatin1Char('&'), QLatin1String("and"));
    from.remove(QLatin1Char('"'));
    return from;
}

QString CleanTo(QString to) {
    to.remove(QLatin1Char('"'));
    return to.isEmpty() ? QStringLiteral("Undisclosed-Recipient") : to;
}

QString SizeText(qint64 bytes) {
    return QString::number(qint64(std::nearbyint(double(bytes) / 1000.0)));
}

namespace {

// Step 7: one cell from one message of the client, in the order the fields
// are read.
void Capture(AppContext& ctx, int account, int i) {
    PopMessage& item = ctx.check.PopClient->Messages().Item(i - 1);
    MailMessage& m = ctx.messages.at(account, i);
    m.Size = SizeText(item.Size());
    m.From = item.From();
    m.To = item.To();
    m.Subject = item.Subject();
    const QDateTime date = item.Date();
    m.Raw = item.HeaderText();
    m.Body = item.BodyText();
    m.MsgID = item.Uid();
    m.From = CleanFrom(m.From);
    m.To = CleanTo(m.To);
    m.Date = MessageDate(date, ctx.svc.locale);
    m.Attach = item.AttachmentCount() > 0;
    // To is never blank by now, so this never holds; the order is kept.
    if (m.From.isEmpty() && m.To.isEmpty() && m.Size.toLongLong() < 2)
        ctx.accounts[account].AcntIncomplete = true;
}

// Steps 3 to 6: the count, room in the store, and the fetch.
void Fetch(AppContext& ctx, int account) {
    Account& a = ctx.accounts[account];
    a.AcntMsgCount = ctx.check.PopClient->Messages().Count();
    if (a.AcntMsgCount > ctx.messages.MessageCapacity) {
        ctx.messages.MessageCapacity = a.AcntMsgCount;
        ctx.messages.GrowMessageStore(ctx.messages.MessageCapacity);
    }
    if (a.AcntMsgCount == 0) {
        CloseConnection(ctx);
        return;
    }
    ctx.check.ReceivedCount = 1;
    ctx.check.PopClient->Messages().FetchAll();
    // The server is left before any parsing or rule work.
    CloseConnection(ctx);
}

// The cells from what the client holds (when `capture`), then marks and
// counters. Each message is filled, told new or not and run through the
// rules in one go: no step looks at another message.
void Evaluate(AppContext& ctx, int account, bool capture) {
    Account& a = ctx.accounts[account];
    // Only the identifiers of the first AcntMsgCount rows count as seen.
    QSet<QString> seen;
    seen.reserve(a.AcntMsgCount);
    for (int j = 1; j <= a.AcntMsgCount; ++j)
        seen.insert(ctx.messages.at(account, j).PrevMsgID);
    for (int i = 1; i <= a.AcntMsgCount; ++i) {
        if (capture)
            Capture(ctx, account, i);
        MailMessage& m = ctx.messages.at(account, i);
        m.New = !seen.contains(m.MsgID);
        RuleCheck(ctx, account, i);
    }
    if (capture && a.AcntIncomplete)
        ctx.check.IncompleteAccounts += a.AcntName + QStringLiteral("\r\n");
    if (a.AcntMsgCount > 0)
        a.AcntHasMessages = true;
    for (int i = 1; i <= a.AcntMsgCount; ++i) {
        MailMessage& m = ctx.messages.at(account, i);
        m.PrevMsgID = m.MsgID;
    }
    ctx.check.TotalMessages += a.AcntMsgCount;
    if (a.AcntMsgCount > a.AcntPrevCount) {
        a.AcntHasNew = true;
        a.AcntNewCount = a.AcntMsgCount - a.AcntPrevCount;
        ctx.check.TotalNew += a.AcntNewCount;
        a.AcntPrevCount = a.AcntMsgCount;
    }
}

void Failed(AppContext& ctx, int account, const Failure& failure) {
    CloseConnection(ctx);
    const int number = ClientErrorNumber(ctx, failure);
    const bool retrieveError = number == PopError::RetrieveFailed ||
                               number == PopError::ConnectionLost ||
                               number == PopError::RetrieveTimedOut;
    if (!ctx.check.StopRequested && !(ctx.options.SuppressRetrieveErrors == 1 && retrieveError))
        ShowFailure(ctx, account, failure, QStringLiteral("Error Processing Messages"));
    Account& a = ctx.accounts[account];
    a.AcntMsgCount = a.AcntNewCount = a.AcntSpamCount = a.AcntDeleteCount = 0;
    a.AcntHasMessages = a.AcntConnected = a.AcntIncomplete = false;
}

} // namespace

void ProcessMessages(AppContext& ctx, int account) {
    Account& a = ctx.accounts[account];
    try {
        a.AcntIncomplete = a.AcntHasNew = a.AcntHasMessages = false;
        a.AcntNewCount = a.AcntSpamCount = a.AcntDeleteCount = 0;
        // Quick Check: the count alone decides that nothing changed.
        const bool unchanged = ctx.options.QuickCheck == 1 &&
                               ctx.check.PopClient->Messages().Count() == a.AcntMsgCount;
        if (unchanged)
            CloseConnection(ctx);
        else
            Fetch(ctx, account);
        if (unchanged || a.AcntMsgCount > 0)
            Evaluate(ctx, account, !unchanged);
        if (ctx.options.MessageSort == 1)
            SortMessages(ctx, account, ctx.list.SortColumnName);
    } catch (const Failure& failure) {
        Failed(ctx, account, failure);
    }
}

} // namespace velmora
