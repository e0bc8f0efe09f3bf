#include "checking/CheckCycle.h"

#include "checking/Notification.h"
#include "checking/PopSession.h"
#include "checking/Schedule.h"
#include "context/AppContext.h"
#include "context/ShellCalls.h"
#include "messages/MessageList.h"
#include "platform/Controls.h"
#include "platform/EventPump.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "rules/RuleReport.h"

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

QString Plural(int count, const char* one, const char* many) {
    return QString::fromLatin1(count == 1 ? one : many);
}

// The walk shared by the Auto Check and the StartUp Check: enabled accounts
// only, the tab following while the window shows, and the account lines of
// the Auto Check Message collected as it goes.
void TimedWalk(AppContext& ctx, bool& anyNew, bool& anyMessages) {
    QString lines;
    ctx.check.AccountInfoLines = 0;
    ctx.check.TotalMessages = ctx.check.TotalNew = 0;
    anyNew = anyMessages = false;
    const int remembered = ctx.accounts.AcntCurrent;
    SetCheckingInterface(ctx, false, true);
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        const Account& a = ctx.accounts[n];
        if (a.AcntEnabled == 1) {
            if (ctx.check.StopRequested) {
                ctx.view->status().setProgressVisible(false);
                break;
            }
            if (ctx.view->windowState() != WindowState::Minimized)
                SelectEmailTab(ctx, n);
            CheckAccount(ctx, n);
            lines += QString(6, QLatin1Char(' ')) + a.AcntStatusText + CRLF;
            ++ctx.check.AccountInfoLines;
        }
        anyMessages = anyMessages || a.AcntHasMessages;
        anyNew = anyNew || a.AcntHasNew;
    }
    ctx.check.AccountInfoText = QStringLiteral("Account Information:") + CRLF + lines;
    ctx.accounts.AcntCurrent = remembered;
    ctx.list.AcntLastShown = 0;
    SelectEmailTab(ctx, remembered);
}

} // namespace

void CheckAccount(AppContext& ctx, int account) {
    Account& a = ctx.accounts[account];
    a.AcntChecked = true;
    ctx.view->list().clear();
    RetrieveAccount(ctx, account);

    if (a.AcntConnected && a.AcntMsgCount > 1)
        a.AcntStatusText = QStringLiteral("%1 - %2 Messages").arg(a.AcntName).arg(a.AcntMsgCount);
    else if (a.AcntConnected && a.AcntMsgCount == 1)
        a.AcntStatusText = QStringLiteral("%1 - %2 Message").arg(a.AcntName).arg(a.AcntMsgCount);
    else if (a.AcntConnected && a.AcntMsgCount == 0)
        a.AcntStatusText = a.AcntName + QStringLiteral(" - No Messages");
    else if (ctx.check.StopRequested)
        a.AcntStatusText = a.AcntName + QStringLiteral(" - User Stopped Retrieval");
    else
        a.AcntStatusText = a.AcntName + QStringLiteral(" - Error Accessing Account");

    const QDateTime now = ctx.now();
    a.AcntLastCheckTime = ctx.format(now, "h:mm AM/PM");
    a.AcntLastCheckText = QStringLiteral("Checked at: ") + a.AcntLastCheckTime;
    ctx.accounts[0].AcntLastCheckText = QStringLiteral("Checked: ") + a.AcntLastCheckTime +
                                        QStringLiteral(" on ") + ctx.format(now, "mmm d/yy");
    // Every enabled account checked moves the next Auto Check forward.
    if (ctx.options.UseInterval == 1) {
        if (a.AcntEnabled != 0)
            NextAutoCheck(ctx, 0);
    } else {
        ctx.check.NextCheckText = QStringLiteral("Auto Check Off");
    }
    ShowAccountMessages(ctx, account);
}

void CheckAllAccounts(AppContext& ctx) {
    const int remembered = ctx.accounts.AcntCurrent;
    EndStartUpCountdown(ctx);
    SuspendAutoCheck(ctx, "Suspend");
    ctx.check.NoCheckPostponed = false;
    ctx.check.StopRequested = false;
    SetCheckingInterface(ctx, false, true);
    int checked = 0;
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        if (ctx.check.StopRequested) {
            ctx.view->status().setProgressVisible(false);
            ++checked; // a stopped walk is no walk without accounts
            break;
        }
        SelectEmailTab(ctx, n);
        if (ctx.accounts[n].AcntEnabled != 0) {
            CheckAccount(ctx, n);
            ++checked;
        }
    }
    ctx.accounts.AcntCurrent = remembered;
    SelectEmailTab(ctx, remembered);
    SetCheckingInterface(ctx, true, true);
    PlayCheckSound(ctx, 0);
    SuspendAutoCheck(ctx, "Restore");
    if (checked == 0) {
        ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - No Accounts Checked"),
                            QStringLiteral("No Accounts were checked for messags!") +
                                QString(10, QLatin1Char(' ')) + CRLF + CRLF +
                                QStringLiteral("Only Enabled Accounts are checked with") + CRLF +
                                QStringLiteral("the Check All button.") + CRLF + CRLF +
                                QStringLiteral("See the Accounts page.") + CRLF,
                            BoxIcon::Information, BoxButtons::Ok);
    }
    ctx.check.StopRequested = false;
    ctx.view->setBusyCursor(false);
    ReportIncompleteAccounts(ctx);
    ShowRuleReport(ctx);
}

void CheckSingleAccount(AppContext& ctx) {
    EndStartUpCountdown(ctx);
    SuspendAutoCheck(ctx, "Suspend");
    ctx.check.NoCheckPostponed = false;
    ctx.check.StopRequested = false;
    SetCheckingInterface(ctx, false, true);
    CheckAccount(ctx, ctx.accounts.AcntCurrent);
    SetCheckingInterface(ctx, true, true);
    PlayCheckSound(ctx, ctx.accounts.AcntCurrent);
    SuspendAutoCheck(ctx, "Restore");
    ctx.check.StopRequested = false;
    ctx.view->setBusyCursor(false);
    ReportIncompleteAccounts(ctx);
    ShowRuleReport(ctx);
}

// Runs on the tick of the Auto Check timer, which is not suspended: the
// timer's tick is simply not delivered again while this runs.
void AutoCheckAccounts(AppContext& ctx) {
    EndStartUpCountdown(ctx);
    bool anyNew = false;
    bool anyMessages = false;
    TimedWalk(ctx, anyNew, anyMessages);
    SetCheckingInterface(ctx, true, true);
    ReportIncompleteAccounts(ctx);
    AnnounceCheck(ctx, anyNew, anyMessages);
    ShowRuleReport(ctx);
}

void StartUpCheckAccounts(AppContext& ctx) {
    SuspendAutoCheck(ctx, "Suspend");
    bool anyNew = false;
    bool anyMessages = false;
    TimedWalk(ctx, anyNew, anyMessages);
    if (ctx.options.UseInterval == 1) {
        NextAutoCheck(ctx, 1);
        ctx.view->status().setPanelText(4, ctx.check.NextCheckText);
    }
    SetCheckingInterface(ctx, true, true);
    SuspendAutoCheck(ctx, "Restore");
    ReportIncompleteAccounts(ctx);
    AnnounceCheck(ctx, anyNew, anyMessages);
    ShowRuleReport(ctx);
}

void ReportIncompleteAccounts(AppContext& ctx) {
    int count = 0;
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        if (ctx.accounts[n].AcntIncomplete) {
            ++count;
            ctx.accounts[n].AcntIncomplete = false;
        }
    }
    if (count == 0)
        return;
    const QString word = Plural(count, "Account", "Accounts");
    ctx.svc.boxes->show(
        ctx.shell.AppTitle + QStringLiteral(" - Message DownLoad Error"),
        QStringLiteral("The following ") + word + QStringLiteral(" may not have completely") +
            QString(15, QLatin1Char(' ')) + CRLF + QStringLiteral("downloaded all messages.") +
            CRLF + ctx.check.IncompleteAccounts + CRLF +
            QStringLiteral("This may be due to a lost connection or a") + CRLF +
            QStringLiteral("Connection TimeOut if the message was large.") + CRLF +
            QStringLiteral("Try checking the ") + word + QStringLiteral(" again.") + CRLF + CRLF +
            QStringLiteral("If the problem persits you could try increasing the") + CRLF +
            QStringLiteral("Connection TimeOut in Program Options/Defaults.") + CRLF + CRLF +
            QStringLiteral("Please Note: Before re-checking you may need to") + CRLF +
            QStringLiteral("temporarily turn off 'Allow Quick Checking'."),
        BoxIcon::Critical, BoxButtons::Ok);
    ctx.check.IncompleteAccounts.clear();
}

void SuspendAutoCheck(AppContext& ctx, const QString& action) {
    if (ctx.options.UseInterval != 1)
        return;
    const bool suspend = action == QLatin1String("Suspend");
    if (!suspend && action != QLatin1String("Restore"))
        return;
    ctx.check.tmrMailTime->setEnabled(!suspend);
    ctx.shell.tmrStatusBar->setEnabled(suspend);
}

void SetCheckingInterface(AppContext& ctx, bool enabled, bool showStop) {
    MainView& v = *ctx.view;
    ctx.check.InterfaceHeld = !enabled;
    v.setVisible(Element(ctl::tbrButtons, 14), false);
    if (enabled) {
        ctx.check.tmrRetrieveMessage->setEnabled(false);
        v.setVisible(Element(ctl::tbrButtons, 1), false);
        ShowPage(ctx, ctx.shell.CurrentPage);
    } else {
        v.setCaption(Element(ctl::tbrButtons, 1), "Stop Retrieval      ");
        v.setVisible(Element(ctl::tbrButtons, 1), showStop);
        if (!ctx.check.TestInProgress)
            ShowPage(ctx, 0);
    }
    for (const auto& control : {ctl::fraMainButtons, ctl::fraEmailToolBar, ctl::fraAcntToolBar,
                                ctl::TabStripEmail, ctl::TabStripAcnts})
        v.setEnabled(control, enabled);
    for (int i : {0, 2, 3, 4})
        v.setEnabled(Element(ctl::tbrButtons, i), enabled);
    for (const auto& entry : {ctl::mnuTrayRunClient, ctl::mnuTrayCheckAll, ctl::mnuTrayNewMessage,
                              ctl::mnuTraySounds, ctl::mnuTrayOptions, ctl::mnuTrayMenuColours,
                              ctl::mnuTrayUpdates, ctl::mnuTrayAbout, ctl::mnuTrayHelp})
        v.setEnabled(entry, enabled);
    // One of the three places the program yields by itself.
    ctx.svc.events->DoEvents();
}

} // namespace velmora
