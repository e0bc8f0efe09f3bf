#include "rules/RuleReport.h"

#include "checking/CheckCycle.h"
#include "checking/Deletion.h"
#include "context/AppContext.h"
#include "messages/MessageList.h"
#include "platform/MainView.h"
#include "platform/MessageBoxes.h"

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
    return true;
}

} // namespace velmora
