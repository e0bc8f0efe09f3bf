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
    SetSelectionActions(ctx, false);
    RefreshAccountPanels(ctx, account);
}

void SetSelectionActions(AppContext& ctx, bool enabled) {
    MainView& v = *ctx.view;
    for (const char* key : {"EmailPreview", "EmailReply", "EmailOpen", "EmailDelete"})
        v.setEnabled(Button(ctl::tbrEmail, key), enabled);
    for (const QString& entry : EmailMenuEntries())
        v.setEnabled(entry, enabled);
}

bool SelectedMessageValid(const AppContext& ctx) {
    const int account = ctx.accounts.AcntCurrent;
    if (account < 1 || account > ctx.accounts.AcntNum)
        return false;
    return ctx.list.SelectedMessage >= 1 &&
           ctx.list.SelectedMessage <= ctx.accounts[account].AcntMsgCount;
}

void lvwEmail_ItemClick(AppContext& ctx) {
    ctx.list.ItemUnderPointer = true;
    // Whatever row was hit, the click counts as over row 1.
    ctx.list.HoverMessage = 1;
}

void lvwEmail_Click(AppContext& ctx) {
    const int account = ctx.accounts.AcntCurrent;
    if (account < 1 || account > ctx.accounts.AcntNum || ctx.accounts[account].AcntMsgCount == 0)
        return;
    MessageListView& list = ctx.view->list();
    // With no row selected the old number stays.
    if (const int row = list.currentRow(); row > 0)
        ctx.list.SelectedMessage = row;
    if (ctx.list.ItemUnderPointer) {
        SetSelectionActions(ctx, true);
    } else {
        list.setRowSelected(ctx.list.SelectedMessage, false);
        SetSelectionActions(ctx, false);
    }
}

void lvwEmail_RightUp(AppContext& ctx, int row) {
    // The pointer rests where the button went up.
    ctx.list.ItemUnderPointer = row > 0;
    if (row > 0)
        ctx.list.HoverMessage = row;
    lvwEmail_Click(ctx);
    ctx.view->popUpMenu(ctl::mnuEmailPopMenu);
    ctx.list.ItemUnderPointer = ctx.list.HoverMessage >= 1;
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
