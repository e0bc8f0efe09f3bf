#include "checking/frmMessage.h"

#include "checking/CheckCycle.h"
#include "context/AppContext.h"
#include "platform/MessageView.h"

namespace velmora::frmMessage {

namespace {

constexpr int kMaxLines = 16;

} // namespace

void Show(AppContext& ctx, const QString& headline) {
    if (ctx.shell.Unloading)
        return;
    if (ctx.shell.AutoMessageOpen)
        Unload(ctx);
    CheckState::MessageForm& form = ctx.check.frmMessage;
    form.view = ctx.svc.windows->createMessageView();
    if (!form.timer) {
        form.timer = ctx.svc.timers->create();
        form.timer->setInterval(1000);
        form.timer->setHandler([&ctx] { tmrMessage_Timer(ctx); });
    }
    MessageView& v = *form.view;
    v.setOnClose([&ctx] { Unload(ctx); });

    SuspendAutoCheck(ctx, "Suspend");
    ctx.shell.AutoMessageOpen = true;
    v.setCaption(ctx.shell.AppTitle + QStringLiteral(":  Auto Check - ") +
                 ctx.format(ctx.now(), "mmmm d, yyyy"));
    v.setHeadline(headline);
    if (ctx.check.AccountInfoLines < kMaxLines)
        v.setAccountLines(ctx.check.AccountInfoText, ctx.check.AccountInfoLines);
    else
        v.setAccountLines(ctx.check.AccountInfoText + QStringLiteral("\r\nmore Accounts..."),
                          kMaxLines + 1);
    // 0 seconds keeps the message up until it is closed by hand.
    if (ctx.options.MsgBoxTime == 0) {
        form.timer->setEnabled(false);
        v.setCountdownVisible(false);
    } else {
        form.elapsed = 0;
        form.remaining = ctx.options.MsgBoxTime;
        form.timer->setEnabled(true);
        v.setCountdownVisible(true);
        v.setCountdown(form.remaining);
    }
    v.setNextCheck(QStringLiteral("Next ") + ctx.check.NextCheckText);
    v.setStayOnTop(true);
    v.showWindow();
}

// Closes one tick after the display reached 0.
void tmrMessage_Timer(AppContext& ctx) {
    CheckState::MessageForm& form = ctx.check.frmMessage;
    if (form.elapsed == ctx.options.MsgBoxTime) {
        Unload(ctx);
        return;
    }
    ++form.elapsed;
    --form.remaining;
    if (form.view)
        form.view->setCountdown(form.remaining);
}

void Unload(AppContext& ctx) {
    CheckState::MessageForm& form = ctx.check.frmMessage;
    if (!ctx.shell.AutoMessageOpen)
        return;
    form.timer->setEnabled(false);
    ctx.shell.AutoMessageOpen = false;
    SuspendAutoCheck(ctx, "Restore");
    if (form.view) {
        form.view->hideWindow();
        form.view.reset();
    }
}

} // namespace velmora::frmMessage
