#include "context/ShellCalls.h"

#include "context/AppContext.h"
#include "platform/MainView.h"

#include <utility>

namespace velmora {

void UpdateClockPanel(AppContext& ctx) {
    const QDateTime now = ctx.now();
    ctx.view->status().setPanelText(5, ctx.format(now, "mmm d/yy") + QLatin1Char(' ') +
                                           ctx.format(now, "h:mm AM/PM"));
}

namespace {

// Panel 2 shows the most pressing fact about the account: new messages
// first, then spam, deletions and attachments.
std::pair<int, QString> PanelTwo(const AppContext& ctx, const Account& a) {
    if (a.AcntNewCount >= 1) {
        if (a.AcntSpamCount >= 1)
            return {a.AcntSpamCount, "SpamNew"};
        if (a.AcntDeleteCount >= 1 && ctx.list.ListDeleteAttachCount >= 1)
            return {ctx.list.ListDeleteAttachCount, "DeleteAttach"};
        if (ctx.list.ListNewAttachCount == 0)
            return {a.AcntNewCount, "New"};
        return {ctx.list.ListNewAttachCount, "AttachNew"};
    }
    if (a.AcntSpamCount >= 1)
        return {a.AcntSpamCount, "Spam"};
    if (a.AcntDeleteCount >= 1) {
        if (ctx.list.ListDeleteAttachCount >= 1)
            return {ctx.list.ListDeleteAttachCount, "DeleteAttach"};
        return {a.AcntDeleteCount, "Delete"};
    }
    if (ctx.list.ListAttachCount >= 1)
        return {ctx.list.ListAttachCount, "Attach"};
    if (a.AcntStatusText == a.AcntName + QStringLiteral(" - User Stopped Retrieval") ||
        a.AcntLastCheckText == QLatin1String("Not Checked"))
        return {-1, QString()};
    return {a.AcntMsgCount, "Normal"};
}

} // namespace

void RefreshAccountPanels(AppContext& ctx, int account) {
    const Account& a = ctx.accounts[account];
    MainView& v = *ctx.view;
    v.status().setPanelText(1, a.AcntStatusText);
    v.status().setPanelText(3, a.AcntLastCheckText);
    v.status().setPanelText(4, ctx.check.NextCheckText);
    const auto [count, picture] = PanelTwo(ctx, a);
    v.status().setPanelText(2, count < 0 ? QString() : QString::number(count));
    v.status().setPanelPicture(2, picture);
}

} // namespace velmora
