#include "app/SecondaryWindows.h"

#include "app/Preview.h"
#include "checking/CheckCycle.h"
#include "checking/frmMessage.h"
#include "context/AppContext.h"
#include "context/Product.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

const QStringList FirstUseParagraphs = {
    QStringLiteral("Velmora must be set up with a least one Email Account before you can "
                   "actually use it to monitor your messages. Please follow these steps."),
    QStringLiteral("After you start Velmora, click 'Accounts' just under the Title Bar."),
    QStringLiteral(
        "Click 'Add Account' and enter all the appropriate information into the textboxes."),
    QStringLiteral("Click 'Save Account' when you are done and then click 'Test Account.'"),
    QStringLiteral("If you entered all your information correctly you should receive a "
                   "'Connection Successfull' message. If not, you will need to try re-entering "
                   "your information or check with someone who knows the proper connection "
                   "settings."),
    QStringLiteral("Once an Account is setup you can make changes to control Velmora. To do "
                   "this click 'Options' and browse through the various settings."),
};

// Major and minor of the build's version.
QString VersionLine() {
    return QStringLiteral("Version ") + Product::Version().section(QLatin1Char('.'), 0, 1);
}

void UnloadFirstUse(AppContext& ctx) {
    if (!ctx.shell.FirstUseOpen)
        return;
    ctx.shell.FirstUseOpen = false;
    SuspendAutoCheck(ctx, "Restore");
    if (ctx.shell.frmFirstUse) {
        ctx.shell.frmFirstUse->hideWindow();
        ctx.shell.frmFirstUse.reset();
    }
}

} // namespace

void HideSecondaryWindows(AppContext& ctx) {
    if (ctx.shell.FirstUseOpen && ctx.shell.frmFirstUse)
        ctx.shell.frmFirstUse->hideWindow();
    if (ctx.shell.AutoMessageOpen && ctx.check.frmMessage.view)
        ctx.check.frmMessage.view->hideWindow();
    HidePreview(ctx);
}

void ShowSecondaryWindows(AppContext& ctx) {
    if (ctx.shell.FirstUseOpen && ctx.shell.frmFirstUse)
        ctx.shell.frmFirstUse->showWindow();
    if (ctx.shell.AutoMessageOpen && ctx.check.frmMessage.view)
        ctx.check.frmMessage.view->showWindow();
    ShowPreviewAgain(ctx);
}

void UnloadSecondaryWindows(AppContext& ctx) {
    UnloadPreview(ctx);
    UnloadFirstUse(ctx);
    frmMessage::Unload(ctx);
}

void ShowFirstUse(AppContext& ctx) {
    if (ctx.shell.FirstUseOpen)
        return;
    std::unique_ptr<FirstUseView> view = ctx.svc.windows->createFirstUseView();
    view->setCaption(ctx.shell.AppTitle + QStringLiteral(" - First Time Use"));
    view->setVersion(VersionLine());
    view->setCopyright(QStringLiteral("Copyright ") + Product::BuildYear() +
                       QStringLiteral(" Kestrum"));
    view->setWelcome(QStringLiteral("Welcome to ") + ctx.shell.AppTitle);
    view->setParagraphs(FirstUseParagraphs);
    view->setRaisedButtons(ctx.options.ButtonStyle == 1);
    // Its button and its close box alike count as having seen it.
    view->setOnClose([&ctx] { UnloadFirstUse(ctx); });
    ctx.shell.frmFirstUse = std::move(view);
    ctx.shell.FirstUseOpen = true;
    SuspendAutoCheck(ctx, "Suspend");
    // Minimised at start-up, it waits for the window to come back.
    if (ctx.view->windowState() != WindowState::Minimized)
        ctx.shell.frmFirstUse->showWindow();
}

} // namespace velmora
