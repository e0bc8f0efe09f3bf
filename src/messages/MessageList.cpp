#include "messages/MessageList.h"

#include "context/AppContext.h"
#include "context/ShellCalls.h"
#include "platform/Controls.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

// The row's picture by the flags, in this order of precedence, with the
// counters the status bar reads.
QString Picture(AppContext& ctx, const MailMessage& m, bool& spamOffered) {
    if (m.Delete) {
        if (m.Attach) {
            ++ctx.list.ListDeleteAttachCount;
            return QStringLiteral("DeleteAttach");
        }
        return QStringLiteral("Delete");
    }
    if (m.Spam) {
        spamOffered = true;
        return m.New ? QStringLiteral("SpamNew") : QStringLiteral("Spam");
    }
    if (m.Attach) {
        if (m.New) {
            ++ctx.list.ListNewAttachCount;
            return QStringLiteral("AttachNew");
        }
        ++ctx.list.ListAttachCount;
        return QStringLiteral("Attach");
    }
    return m.New ? QStringLiteral("New") : QStringLiteral("Normal");
}

} // namespace

void ShowAccountMessages(AppContext& ctx, int account) {
    if (ctx.accounts.AcntNum == 0)
        return;
    MainView& v = *ctx.view;
    const Account& a = ctx.accounts[account];
    v.list().clear();
    v.setEnabled(Button(ctl::tbrEmail, "EmailSpam"), false);
    ctx.list.ListAttachCount = ctx.list.ListDeleteAttachCount = ctx.list.ListNewAttachCount = 0;
    bool spamOffered = false;
    for (int i = 1; i <= a.AcntMsgCount; ++i) {
        const MailMessage& m = ctx.messages.at(account, i);
        ListRow row;
        row.cells = {m.From, m.To, m.Subject, m.Date, m.Size + QStringLiteral(" KB")};
        row.bold = m.New;
        row.picture = Picture(ctx, m, spamOffered);
        v.list().addRow(row);
    }
    if (spamOffered)
        v.setEnabled(Button(ctl::tbrEmail, "EmailSpam"), true);
    if (a.AcntMsgCount > 0) {
        v.list().setRowSelected(1, false);
        ctx.list.SelectedMessage = 1;
        v.tabs(TabStrip::Email)
            .setCaption(account, QStringLiteral("%1  (%2)").arg(a.AcntName).arg(a.AcntMsgCount));
    } else {
        v.tabs(TabStrip::Email).setCaption(account, a.AcntName);
    }
    SetAccountTabImage(ctx, account);
    // No row is selected after a fill, so nothing acts on a selection yet.
    for (const char* key : {"EmailPreview", "EmailReply", "EmailOpen", "EmailDelete"})
        v.setEnabled(Button(ctl::tbrEmail, key), false);
    for (const auto& entry :
         {ctl::mnuEmailPreview, ctl::mnuEmailDelete, ctl::mnuEmailReply, ctl::mnuEmailOpen})
        v.setEnabled(entry, false);
    RefreshAccountPanels(ctx, account);
}

void SetAccountTabImage(AppContext& ctx, int account) {
    const Account& a = ctx.accounts[account];
    QString key;
    if (a.AcntChecked && !a.AcntConnected)
        key = QStringLiteral("MailError");
    else
        key = a.AcntMsgCount < 1 ? QStringLiteral("MailNo") : QStringLiteral("MailYes");
    if (a.AcntEnabled == 0)
        key += QStringLiteral("Disabled");
    ctx.view->tabs(TabStrip::Email).setImage(account, key);
    ctx.view->tabs(TabStrip::Accounts).setImage(account, key);
}

void TabStripEmail_Click(AppContext& ctx) {
    // The placeholder tab of an empty list is no account.
    if (ctx.accounts.AcntNum == 0)
        return;
    ctx.accounts.AcntCurrent = ctx.view->tabs(TabStrip::Email).selected();
    if (ctx.accounts.AcntCurrent == ctx.list.AcntLastShown)
        return;
    ShowAccountMessages(ctx, ctx.accounts.AcntCurrent);
    ctx.list.AcntLastShown = ctx.accounts.AcntCurrent;
}

void SelectEmailTab(AppContext& ctx, int account) {
    ctx.view->tabs(TabStrip::Email).select(account);
    TabStripEmail_Click(ctx);
}

} // namespace velmora
