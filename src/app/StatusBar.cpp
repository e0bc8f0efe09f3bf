#include "app/StatusBar.h"

#include "context/AppContext.h"
#include "context/ShellCalls.h"
#include "context/TimeFormat.h"
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

QString Noun(int count) {
    return count < 2 ? QStringLiteral(" Message") : QStringLiteral(" Messages");
}

QString PanelTwoTip(const PanelTipFacts& f) {
    const QString& text = f.panels.value(1);
    if (f.AcntSpamCount > 0)
        return text + Noun(f.AcntSpamCount) + QStringLiteral(" Marked as Spam");
    if (f.AcntDeleteCount > 0)
        return text + Noun(f.AcntDeleteCount) + QStringLiteral(" for Deletion");
    if (f.AcntMsgCount >= 1 && f.listAttachments)
        return text + Noun(f.AcntMsgCount) + QStringLiteral(" with an Attachment");
    if (f.AcntNewCount >= 1)
        return text + QStringLiteral(" New") + Noun(f.AcntNewCount);
    if (text.isEmpty())
        return QString();
    return text + (f.AcntMsgCount == 1 ? QStringLiteral(" Message") : QStringLiteral(" Messages"));
}

// The panels' times are the program's own texts, so they are read with
// fixed patterns whatever the locale.
QTime ReadTimeOfDay(const QString& text) {
    return QLocale::c().toTime(text.trimmed(), QStringLiteral("h:mm AP"));
}

// "dd/mm/yy-hh:mm", in the 2000s.
QDateTime ReadClockText(const QString& text) {
    const QDateTime read = QLocale::c().toDateTime(text, QStringLiteral("dd/MM/yy-HH:mm"));
    return read.isValid() ? read.addYears(100) : read;
}

} // namespace

QString PanelTip(int panel, const PanelTipFacts& f, const QLocale& locale) {
    const QString text = f.panels.value(panel - 1);
    // "at" is kept out of the pattern, where its "a" could be read as a marker.
    const auto longDate = [&locale](const QDateTime& moment) {
        return FormatTime(moment, QStringLiteral("mmmm dd, yyyy"), locale) +
               QStringLiteral(" at ") + FormatTime(moment, QStringLiteral("h:mm AM/PM"), locale);
    };
    switch (panel) {
    case 1:
        return text;
    case 2:
        return PanelTwoTip(f);
    case 3: {
        if (!text.startsWith(QLatin1String("Checked at:")))
            return text;
        // The panel keeps only the time: the date is today's.
        const QDateTime at(f.now.date(), ReadTimeOfDay(text.mid(11)));
        return QStringLiteral("Last Check: ") + longDate(at);
    }
    case 4:
        if (text.startsWith(QLatin1String("Auto Check at")))
            return QStringLiteral("Next Auto Check: ") + longDate(ReadClockText(f.NextCheckTime));
        if (text.startsWith(QLatin1String("Retrieving")))
            return text;
        return QStringLiteral("Auto Check is Off");
    case 5:
        return QStringLiteral("Current: ") +
               FormatTime(f.now, QStringLiteral("mmmm dd, yyyy h:mm AM/PM"), locale);
    default:
        return QString();
    }
}

PanelTipFacts CurrentPanelFacts(const AppContext& ctx) {
    PanelTipFacts f;
    for (int panel = 1; panel <= 5; ++panel)
        f.panels << ctx.view->status().panelText(panel);
    const Account& a = ctx.accounts[ctx.accounts.AcntCurrent];
    f.AcntMsgCount = a.AcntMsgCount;
    f.AcntNewCount = a.AcntNewCount;
    f.AcntSpamCount = a.AcntSpamCount;
    f.AcntDeleteCount = a.AcntDeleteCount;
    f.listAttachments = ctx.list.ListAttachCount >= 1 || ctx.list.ListDeleteAttachCount >= 1 ||
                        ctx.list.ListNewAttachCount >= 1;
    f.NextCheckTime = ctx.check.NextCheckTime;
    f.now = ctx.now();
    return f;
}

void ShowPanelTip(AppContext& ctx, int panel) {
    ctx.view->status().setToolTip(PanelTip(panel, CurrentPanelFacts(ctx), ctx.svc.locale));
}

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
