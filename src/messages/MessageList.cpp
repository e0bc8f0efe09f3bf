#include "messages/MessageList.h"

#include "app/AppContext.h"
#include "app/StatusBar.h"
#include "platform/MainView.h"

namespace velmora {

void ShowAccountMessages(AppContext& ctx, int account) {
    if (ctx.accounts.AcntNum == 0)
        return;
    MainView& v = *ctx.view;
    const Account& a = ctx.accounts[account];
    v.clearList();
    if (a.AcntMsgCount > 0)
        v.setTabCaption(TabStrip::Email, account,
                        QStringLiteral("%1  (%2)").arg(a.AcntName).arg(a.AcntMsgCount));
    else
        v.setTabCaption(TabStrip::Email, account, a.AcntName);
    SetAccountTabImage(ctx, account);
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
    ctx.view->setTabImage(TabStrip::Email, account, key);
    ctx.view->setTabImage(TabStrip::Accounts, account, key);
}

} // namespace velmora
