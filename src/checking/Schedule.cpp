#include "checking/Schedule.h"

#include "checking/CheckCycle.h"
#include "context/AppContext.h"
#include "context/ShellCalls.h"
#include "platform/Controls.h"
#include "platform/MainView.h"

namespace velmora {

namespace {

const QString kPauseButton = Element(ctl::tbrButtons, ctl::PauseStartupCheck);

// An "hh:mm" option as a time; what cannot be read counts as 0.
QTime OptionTime(const QString& text) {
    return QTime(text.mid(0, 2).toInt(), text.mid(3, 2).toInt());
}

} // namespace

void NextAutoCheck(AppContext& ctx, int extraMinutes) {
    const QDateTime now = ctx.now();
    const QDate today = now.date();

    // The interval may carry the time past midnight: then it is tomorrow's.
    const int minutes =
        now.time().hour() * 60 + now.time().minute() + ctx.options.IntervalMinutes + extraMinutes;
    const QDate day = minutes < 24 * 60 ? today : today.addDays(1);
    const QTime t = QTime(0, 0).addSecs((minutes % (24 * 60)) * 60 + now.time().second());
    const QString candidate =
        ctx.format(QDateTime(day, t), "dd/mm/yy-") + ctx.format(QDateTime(day, t), "hh:mm");
    const QString atT =
        QStringLiteral("Auto Check at ") + ctx.format(QDateTime(day, t), "h:mm AM/PM");

    if (ctx.options.NoCheck != 1) {
        ctx.check.NextCheckText = atT;
        ctx.check.NextCheckTime = candidate;
    } else {
        const QTime begin = OptionTime(ctx.options.NoCheckTimeBegin);
        const QTime end = OptionTime(ctx.options.NoCheckTimeEnd);
        const QString beginText = ctx.format(QDateTime(day, begin), "dd/mm/yy-") +
                                  ctx.format(QDateTime(day, begin), "hh:mm");
        QString endText =
            ctx.format(QDateTime(day, end), "dd/mm/yy-") + ctx.format(QDateTime(day, end), "hh:mm");
        // A window across midnight ends tomorrow, counted from today.
        if (beginText > endText) {
            const QDateTime tomorrowEnd(today.addDays(1), end);
            endText = ctx.format(tomorrowEnd, "dd/mm/yy-") + ctx.format(tomorrowEnd, "hh:mm");
        }
        const bool outside = candidate > endText || candidate < beginText || beginText == endText;
        if (outside || ctx.check.NoCheckPostponed) {
            ctx.check.NextCheckText = atT;
            ctx.check.NextCheckTime = candidate;
            ctx.check.NoCheckPostponed = false;
        } else {
            ctx.check.NextCheckText =
                QStringLiteral("Auto Check at ") + ctx.format(QDateTime(day, end), "h:mm AM/PM");
            ctx.check.NextCheckTime = endText;
            ctx.check.NoCheckPostponed = true;
        }
    }
    ctx.check.SavedNextCheckText = ctx.check.NextCheckText;
    ctx.check.SavedNextCheckTime = ctx.check.NextCheckTime;
}

void SetAutoCheckTimers(AppContext& ctx) {
    const bool on = ctx.options.UseInterval == 1;
    ctx.check.tmrMailTime->setEnabled(on);
    ctx.shell.tmrStatusBar->setEnabled(!on);
    ctx.view->setCaption(ctl::mnuTrayAutoCheck,
                         on ? "&Auto Check - On|#AutoCheckOn" : "&Auto Check - Off|#AutoCheckOff");
    if (!on)
        ctx.check.NextCheckText = QStringLiteral("Auto Check Off");
}

void tmrMailTime_Timer(AppContext& ctx) {
    UpdateClockPanel(ctx);
    if (ctx.accounts.AcntNum == 0)
        return;
    ctx.check.CurrentTime = ctx.format(ctx.now(), "dd/mm/yy-hh:mm");
    // Compared as text, day first: across a month end the order is not the
    // order of time, and a check then fires at once.
    if (ctx.check.NextCheckTime.compare(ctx.check.CurrentTime, Qt::CaseInsensitive) <= 0) {
        ctx.check.StopRequested = false;
        AutoCheckAccounts(ctx);
        ctx.view->setBusyCursor(false);
    }
    UpdateTrayIcon(ctx);
}

void tmrMailStartUp_Timer(AppContext& ctx) {
    ctx.view->status().setPanelText(3,
                                    QStringLiteral("StartUp Check: %1 sec")
                                        .arg(ctx.options.StartUpDelay - ctx.check.StartUpSeconds));
    ++ctx.check.StartUpSeconds;
    if (ctx.check.StartUpSeconds > ctx.options.StartUpDelay) {
        ctx.check.StartUpDone = true;
        ctx.view->setVisible(kPauseButton, false);
        ctx.check.tmrMailStartUp->setEnabled(false);
        ctx.check.StopRequested = false;
        StartUpCheckAccounts(ctx);
        ctx.view->setBusyCursor(false);
    }
}

void EndStartUpCountdown(AppContext& ctx) {
    if (ctx.check.StartUpDone)
        return;
    ctx.check.tmrMailStartUp->setEnabled(false);
    ctx.view->setVisible(kPauseButton, false);
    // The highest-numbered account's text, whichever account is shown.
    ctx.view->status().setPanelText(3, ctx.accounts[ctx.accounts.AcntNum].AcntLastCheckText);
    ctx.view->status().setPanelText(4, ctx.check.NextCheckText);
    ctx.check.StartUpDone = true;
}

void ToggleStartUpPause(AppContext& ctx) {
    ctx.check.StartUpPaused = !ctx.check.StartUpPaused;
    if (ctx.check.StartUpPaused) {
        ctx.view->setCaption(kPauseButton, "StartUp: Continue   ");
        ctx.view->setToolTip(kPauseButton, "Continue the StartUp Check Timer");
        ctx.check.tmrMailStartUp->setEnabled(false);
    } else {
        ctx.view->setCaption(kPauseButton, "StartUp: Pause       ");
        ctx.view->setToolTip(kPauseButton, "Pause the StartUp Check Timer");
        ctx.check.tmrMailStartUp->setEnabled(true);
    }
}

void SuspendStartUpTimer(AppContext& ctx, const QString& action) {
    if (ctx.options.EmailCheckStartUp == 0 || ctx.check.StartUpDone)
        return;
    if (action == QLatin1String("Suspend")) {
        ctx.check.StartUpTimerWasOn = ctx.check.tmrMailStartUp->isEnabled();
        ctx.check.StartUpPaused = false;
        ctx.view->setEnabled(kPauseButton, false);
        ToggleStartUpPause(ctx);
    } else if (action == QLatin1String("Restore")) {
        ctx.check.StartUpPaused = ctx.check.StartUpTimerWasOn;
        ctx.view->setEnabled(kPauseButton, true);
        ToggleStartUpPause(ctx);
    }
}

} // namespace velmora
