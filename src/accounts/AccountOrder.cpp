#include "accounts/AccountEditing.h"

#include "app/Pages.h"
#include "app/frmMain.h"
#include "context/AppContext.h"
#include "context/PageCalls.h"
#include "messages/MessageList.h"
#include "options/ClientChoice.h"
#include "options/Setting.h"
#include "platform/Controls.h"
#include "platform/MessageBoxes.h"
#include "platform/SettingsStore.h"

#include <utility>

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

void SaveAcntNum(AppContext& ctx) {
    setting::saveInt(*ctx.svc.settings, setting::SectionSettings, QStringLiteral("AcntNum"),
                     ctx.accounts.AcntNum);
}

// Caption and picture of tab `from` over tab `to`, on both strips.
void CopyTab(MainView& v, int from, int to) {
    for (TabStrip strip : {TabStrip::Email, TabStrip::Accounts}) {
        TabStripView& tabs = v.tabs(strip);
        tabs.setCaption(to, tabs.caption(from));
        tabs.setImage(to, tabs.image(from));
    }
}

void SwapTabs(MainView& v, int a, int b) {
    for (TabStrip strip : {TabStrip::Email, TabStrip::Accounts}) {
        TabStripView& tabs = v.tabs(strip);
        const QString caption = tabs.caption(a);
        const QString image = tabs.image(a);
        tabs.setCaption(a, tabs.caption(b));
        tabs.setImage(a, tabs.image(b));
        tabs.setCaption(b, caption);
        tabs.setImage(b, image);
    }
}

// The last tab goes from a strip. The view offers no removal of one tab:
// the strip is built again without it.
void RemoveLastTab(TabStripView& tabs) {
    const int selected = tabs.selected();
    QVector<std::pair<QString, QString>> kept;
    for (int tab = 1; tab < tabs.count(); ++tab)
        kept.append({tabs.caption(tab), tabs.image(tab)});
    tabs.clear();
    for (const auto& [caption, image] : kept)
        tabs.addTab(caption, image);
    tabs.select(std::min(selected, int(kept.size())));
}

} // namespace

void DeleteAccount(AppContext& ctx) {
    AccountStore& acc = ctx.accounts;
    MainView& v = *ctx.view;
    const int d = acc.AcntCurrent;
    if (d < 1)
        return;
    const BoxAnswer answer = ctx.svc.boxes->show(
        QStringLiteral("Delete Account - Proceed With Caution"),
        QStringLiteral("You are about to delete the following Account...") +
            QString(10, QLatin1Char(' ')) + CRLF + QStringLiteral("Account Name:  '") +
            acc[d].AcntName + QStringLiteral("'") + CRLF + CRLF +
            QStringLiteral("Please proceed with caution since this action") + CRLF +
            QStringLiteral("is NOT reversible!") + CRLF + CRLF +
            QStringLiteral("Would you like to proceed?") + CRLF,
        BoxIcon::Critical, BoxButtons::YesNo);
    if (answer != BoxAnswer::Yes)
        return;
    acc.AcntBusy = true;
    ForgetClientIcon(ctx, d);
    SettingsStore& settings = *ctx.svc.settings;

    // Every account from 1 is written again under its (new) number, so the
    // tree stays a plain image of the list.
    if (d != acc.AcntNum) {
        for (int i = 1; i <= acc.AcntNum - 1; ++i) {
            acc.DeleteAccountFields(settings, i);
            if (i >= d) {
                acc.CopyRow(i + 1, i);
                for (int m = 1; m <= acc[i].AcntMsgCount; ++m)
                    ctx.messages.at(i, m) = ctx.messages.at(i + 1, m);
                CopyTab(v, i + 1, i);
            }
            acc.SaveAccountFields(settings, i);
        }
    }
    acc.DeleteAccountFields(settings, acc.AcntNum);

    Account& last = acc[acc.AcntNum];
    last.AcntMsgCount = last.AcntNewCount = last.AcntPrevCount = 0;
    last.AcntConnected = last.AcntChecked = last.AcntHasMessages = last.AcntHasNew = false;
    last.AcntSpamCount = last.AcntDeleteCount = 0;
    last.AcntStatusText.clear();
    last.AcntLastCheckTime.clear();

    RemoveLastTab(v.tabs(TabStrip::Email));
    RemoveLastTab(v.tabs(TabStrip::Accounts));
    --acc.AcntNum;
    acc.ResizeAccounts(acc.AcntNum);
    ctx.messages.ResizeAccountStore(acc.AcntNum, ctx.messages.MessageCapacity);
    SaveAcntNum(ctx);

    acc.AcntCurrent = d;
    if (acc.AcntCurrent > acc.AcntNum)
        --acc.AcntCurrent;
    if (acc.AcntCurrent == 0 && acc.AcntNum > 0)
        acc.AcntCurrent = 1;

    if (acc.AcntNum > 0) {
        for (int i = 1; i <= acc.AcntNum; ++i) {
            acc.LoadAccount(settings, i);
            acc.CopyAccountToEdit(i);
        }
        v.tabs(TabStrip::Accounts).select(acc.AcntCurrent);
        ShowAccount(ctx, acc.AcntCurrent);
        AccountDirtyCheck(ctx);
        ShowAccountMessages(ctx, acc.AcntCurrent);
        ctx.list.AcntLastShown = acc.AcntCurrent;
    } else {
        // Nothing left to check: no start-up check, and Auto Check off
        // through the tray's toggle, which saves both.
        ctx.options.EmailCheckStartUp = 0;
        ctx.options.UseInterval = 1;
        frmMain::mnuTrayAutoCheck_Click(ctx);
        v.status().setPanelText(1, QStringLiteral("No Accounts have been created..."));
        v.status().setPanelText(3, QString());
        v.status().setPanelText(4, ctx.check.NextCheckText);
        for (TabStrip strip : {TabStrip::Email, TabStrip::Accounts}) {
            v.tabs(strip).clear();
            v.tabs(strip).addTab(QString(), QStringLiteral("MailNo"));
        }
        v.list().clear();
        acc.BlankAccountRow();
        ShowAccount(ctx, 0);
        ShowNoAccountState(ctx);
    }
    FillRuleAccounts(ctx);
    acc.AcntBusy = false;
}

void SwapAccounts(AppContext& ctx, int a, int offset) {
    AccountStore& acc = ctx.accounts;
    const int b = a + offset;
    if (a < 1 || b < 1 || a > acc.AcntNum || b > acc.AcntNum || a == b)
        return;
    acc.SwapRows(a, b);
    const int messages = std::max(acc[a].AcntMsgCount, acc[b].AcntMsgCount);
    for (int m = 1; m <= messages; ++m)
        std::swap(ctx.messages.at(a, m), ctx.messages.at(b, m));
    std::swap(acc[a].AcntMsgCount, acc[b].AcntMsgCount);
    for (int i = 1; i <= acc.AcntNum; ++i)
        acc.SaveAccountFields(*ctx.svc.settings, i);
    MainView& v = *ctx.view;
    SwapTabs(v, a, b);
    acc.AcntCurrent = b;
    ShowAccount(ctx, b);
    v.tabs(TabStrip::Email).select(b);
    v.tabs(TabStrip::Accounts).select(b);
}

void AccountTabDropped(AppContext& ctx, TabStrip strip, int target) {
    AccountStore& acc = ctx.accounts;
    if (target < 1 || target > acc.AcntNum || target == acc.AcntCurrent)
        return;
    SwapAccounts(ctx, acc.AcntCurrent, target - acc.AcntCurrent);
    acc.AcntCurrent = target;
    // The list follows on either page: the Email page's through the tab's
    // click, the Accounts page's at once.
    if (strip == TabStrip::Email) {
        ctx.list.AcntLastShown = 0;
        SelectEmailTab(ctx, target);
    } else {
        ShowAccountMessages(ctx, target);
        ctx.list.AcntLastShown = target;
    }
    ctx.view->tabs(TabStrip::Email).select(target);
    ctx.view->tabs(TabStrip::Accounts).select(target);
}

} // namespace velmora
