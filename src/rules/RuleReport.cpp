#include "rules/RuleReport.h"

#include "checking/CheckCycle.h"
#include "checking/Deletion.h"
#include "context/AppContext.h"
#include "messages/MessageList.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"
#include "platform/MessageView.h"
#include "platform/Timer.h"

#include <exception>

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

QString AccountLine(const QString& name, int count) {
    return name + QStringLiteral(" has ") + QString::number(count) +
           (count < 2 ? QStringLiteral(" message") : QStringLiteral(" messages")) + CRLF;
}

} // namespace

const QStringList& RuleReportTabs() {
    static const QStringList tabs = {QStringLiteral("Delete from Server"),
                                     QStringLiteral("Mark as Spam")};
    return tabs;
}

RuleReportContent RuleReportTexts(const AppContext& ctx) {
    RuleReportContent c;
    for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
        const Account& a = ctx.accounts[n];
        if (a.AcntDeleteCount > 0) {
            ++c.deleteAccounts;
            c.deleteText += AccountLine(a.AcntName, a.AcntDeleteCount);
        }
        if (a.AcntSpamCount > 0) {
            ++c.spamAccounts;
            c.spamText += AccountLine(a.AcntName, a.AcntSpamCount);
        }
    }
    if (c.deleteAccounts == 0)
        c.deleteText = QStringLiteral("No Messages to Delete");
    if (c.spamAccounts == 0)
        c.spamText = QStringLiteral("No Spam Messages to Delete");
    // Up to fifteen accounts the labels fit the longer side; beyond, they
    // stop at seventeen lines and say that more follow.
    if (c.deleteAccounts < 16 && c.spamAccounts < 16) {
        c.lines = qMax(1, qMax(c.deleteAccounts, c.spamAccounts));
        return c;
    }
    c.lines = 17;
    if (c.deleteAccounts >= 16)
        c.deleteText += CRLF + QStringLiteral("more Accounts...");
    if (c.spamAccounts >= 16)
        c.spamText += CRLF + QStringLiteral("more Accounts...");
    return c;
}

void RuleReportDeleteNow(AppContext& ctx, const QString& tab) {
    SetCheckingInterface(ctx, false, false);
    const int remembered = ctx.accounts.AcntCurrent;
    const int confirmation = ctx.options.DeleteConfirmation;
    // The report's caution line says so: Delete Now asks nothing.
    ctx.options.DeleteConfirmation = 0;
    try {
        const bool deleteSide = tab == RuleReportTabs()[0];
        for (int n = 1; n <= ctx.accounts.AcntNum; ++n) {
            Account& a = ctx.accounts[n];
            if (deleteSide && a.AcntDeleteCount > 0) {
                SelectEmailTab(ctx, n);
                for (int m = 1; m <= a.AcntMsgCount; ++m) {
                    if (ctx.messages.at(n, m).Delete)
                        ctx.view->list().setRowSelected(m, true);
                }
                DeleteMessages(ctx, n, false);
                a.AcntDeleteCount = 0;
            } else if (!deleteSide && a.AcntSpamCount > 0) {
                SelectEmailTab(ctx, n);
                DeleteMessages(ctx, n, true);
                a.AcntSpamCount = 0;
            }
        }
    } catch (const std::exception&) {
        ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - Unknown Error"),
                            QStringLiteral("There was an unknown error during Deletion.") + CRLF +
                                CRLF + QStringLiteral("Perhaps the connection was disabled.") +
                                CRLF + CRLF +
                                QStringLiteral("You should check your messages carefully") + CRLF +
                                QStringLiteral("since some messages may have been deleted") + CRLF +
                                QStringLiteral("and some may not have been deleted."),
                            BoxIcon::Critical, BoxButtons::Ok);
    }
    ctx.options.DeleteConfirmation = confirmation;
    ctx.accounts.AcntCurrent = remembered;
    SelectEmailTab(ctx, remembered);
    SetCheckingInterface(ctx, true, false);
}

bool ShowRuleReport(AppContext& ctx) {
    ctx.check.RuleReportWanted = false;
    if (ctx.rules.LiveRules.Show != 1)
        return false;
    int first = 0;
    for (int n = 1; n <= ctx.accounts.AcntNum && first == 0; ++n) {
        const Account& a = ctx.accounts[n];
        if (a.AcntDeleteCount > 0 || a.AcntSpamCount > 0)
            first = n;
    }
    if (first == 0)
        return false;
    // Only the first marked account is asked whether it has new mail.
    const int showNew = ctx.rules.LiveRules.ShowNew;
    if (showNew != 0 && !(showNew == 1 && ctx.accounts[first].AcntHasNew))
        return false;
    if (ctx.shell.RuleReportOpen)
        return false;
    ctx.check.RuleReportWanted = true;
    LoadRuleReport(ctx);
    return true;
}

void LoadRuleReport(AppContext& ctx) {
    CheckState::RuleReportForm& form = ctx.check.frmRuleReport;
    form.view = ctx.svc.windows->createRuleReportView();
    if (!form.timer) {
        form.timer = ctx.svc.timers->create();
        form.timer->setInterval(1000);
        form.timer->setHandler([&ctx] { tmrRuleReport_Timer(ctx); });
    }
    RuleReportView& v = *form.view;
    v.setHandlers({[&ctx](int tab) { RuleReportTabClick(ctx, tab); },
                   [&ctx](const QString& key) { RuleReportButtonClick(ctx, key); },
                   [&ctx] {
                       UnloadRuleReport(ctx);
                   }});
    ctx.shell.RuleReportOpen = true;
    SuspendAutoCheck(ctx, "Suspend");
    // The Auto Check Message must not cover the report.
    if (ctx.shell.AutoMessageOpen && ctx.check.frmMessage.view)
        ctx.check.frmMessage.view->setStayOnTop(false);

    const RuleReportContent c = RuleReportTexts(ctx);
    form.deleteAccounts = c.deleteAccounts;
    form.spamAccounts = c.spamAccounts;
    form.deleteText = c.deleteText;
    form.spamText = c.spamText;
    form.lines = c.lines;
    v.setTabs(RuleReportTabs());
    v.setTexts(c.deleteText, c.spamText, c.lines);
    v.setCaption(ctx.shell.AppTitle + QStringLiteral(" - Rule Report Notification"));
    v.setHeading(QStringLiteral("Your Rules indicate the following Account(s)") +
                 QStringLiteral(" have messages that match your criteria."));
    v.setCaution(
        QStringLiteral("Caution: Deleting messages will not display any confirmation warning."));
    v.setButton(QStringLiteral("Timer"), QStringLiteral("Stop Timer   "),
                QStringLiteral("Start or Stop the Timer"));
    v.setButton(QStringLiteral("DeleteNow"), QStringLiteral("Delete Now   "),
                QStringLiteral("Delete Messages Now"));
    v.setButton(QStringLiteral("Exit"), QStringLiteral("Exit  "),
                QStringLiteral("Exit Rule Report"));
    v.selectTab(1);
    RuleReportTabClick(ctx, 1);
    form.elapsed = 0;
    form.timerOn = true;
    form.timer->setEnabled(true);
    form.remaining = ctx.rules.LiveRules.Time;
    v.setCountdown(form.remaining);
    v.setStayOnTop(true);
    v.showWindow();
}

void UnloadRuleReport(AppContext& ctx) {
    CheckState::RuleReportForm& form = ctx.check.frmRuleReport;
    if (!ctx.shell.RuleReportOpen)
        return;
    form.timer->setEnabled(false);
    ctx.shell.RuleReportOpen = false;
    SuspendAutoCheck(ctx, "Restore");
    if (ctx.shell.AutoMessageOpen && ctx.check.frmMessage.view)
        ctx.check.frmMessage.view->setStayOnTop(true);
    if (form.view) {
        form.view->hideWindow();
        form.view.reset();
    }
}

void RuleReportTabClick(AppContext& ctx, int tab) {
    CheckState::RuleReportForm& form = ctx.check.frmRuleReport;
    if (!form.view || tab < 1 || tab > RuleReportTabs().size())
        return;
    form.currentTab = RuleReportTabs()[tab - 1];
    form.view->showSide(tab);
    const int accounts = tab == 1 ? form.deleteAccounts : form.spamAccounts;
    form.view->setButtonEnabled(QStringLiteral("DeleteNow"), accounts >= 1);
}

// Closes one tick after the display reached 0; Time is read at each tick.
void tmrRuleReport_Timer(AppContext& ctx) {
    CheckState::RuleReportForm& form = ctx.check.frmRuleReport;
    if (form.elapsed == ctx.rules.LiveRules.Time) {
        UnloadRuleReport(ctx);
        return;
    }
    ++form.elapsed;
    --form.remaining;
    if (form.view)
        form.view->setCountdown(form.remaining);
}

void RuleReportButtonClick(AppContext& ctx, const QString& key) {
    CheckState::RuleReportForm& form = ctx.check.frmRuleReport;
    if (!form.view)
        return;
    if (key == QLatin1String("Timer")) {
        form.timerOn = !form.timerOn;
        form.timer->setEnabled(form.timerOn);
        form.view->setButton(
            key, form.timerOn ? QStringLiteral("Stop Timer   ") : QStringLiteral("Start Timer  "),
            QStringLiteral("Start or Stop the Timer"));
    } else if (key == QLatin1String("DeleteNow")) {
        const QString tab = form.currentTab;
        RuleReportDeleteNow(ctx, tab);
        if (!form.view)
            return;
        // Only the side deleted changes; the other keeps what it showed.
        if (tab == RuleReportTabs()[0]) {
            form.deleteAccounts = 0;
            form.deleteText = QStringLiteral("No Messages to Delete");
        } else if (tab == RuleReportTabs()[1]) {
            form.spamAccounts = 0;
            form.spamText = QStringLiteral("No Spam Messages to Delete");
        }
        form.view->setTexts(form.deleteText, form.spamText, form.lines);
        form.view->setButtonEnabled(QStringLiteral("DeleteNow"), false);
        form.view->setStayOnTop(true);
    } else if (key == QLatin1String("Exit")) {
        UnloadRuleReport(ctx);
    }
}

} // namespace velmora
