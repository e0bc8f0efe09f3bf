#pragma once

#include "platform/MessageView.h"
#include "platform/PopClient.h"
#include "platform/RuleReportView.h"
#include "platform/Timer.h"

#include <QString>
#include <memory>
#include <vector>

namespace velmora {

// The checking subsystem's state: the POP client, what a walk has found,
// the schedule's texts and timers, and the Auto Check Message.
struct CheckState {
    // The POP client and its events. A client dropped by a stop is kept
    // until the next connection, as it may still be on the call stack.
    std::unique_ptr<class PopClient> PopClient;
    std::unique_ptr<PopNotify> PopEvents;
    std::vector<std::unique_ptr<class PopClient>> RetiredPopClients;
    int ReceivedCount = 0;
    int AnimationFrame = 0;

    bool StopRequested = false;
    bool PopConnected = false;
    bool TestInProgress = false;
    // A check, connection test or deletion holds the interface: the gate
    // lets only a few user events through.
    bool InterfaceHeld = false;
    bool NoCheckPostponed = false;
    bool StartUpDone = false;
    bool StartUpPaused = false;
    // Seconds of the start-up countdown gone by; never reset.
    int StartUpSeconds = 0;
    // Whether the countdown ran when a dialog suspended it.
    bool StartUpTimerWasOn = false;
    int TotalMessages = 0;
    int TotalNew = 0;
    // Names of accounts whose download may be incomplete, a line each.
    QString IncompleteAccounts;
    // The Auto Check Message's account lines.
    QString AccountInfoText;
    int AccountInfoLines = 0;
    QString CurrentTime;
    QString NextCheckTime;
    QString NextCheckText;
    QString SavedNextCheckTime;
    QString SavedNextCheckText;

    // The Auto Check Message while it stands, and its headline of the last
    // walk (null when none showed).
    struct MessageForm {
        std::unique_ptr<MessageView> view;
        std::unique_ptr<Timer> timer;
        int remaining = 0;
        int elapsed = 0;
    } frmMessage;
    QString AutoCheckHeadline;
    // Whether the last check's end would have opened the Rule Report.
    bool RuleReportWanted = false;
    // The Rule Report while it stands.
    struct RuleReportForm {
        std::unique_ptr<RuleReportView> view;
        std::unique_ptr<Timer> timer;
        int deleteAccounts = 0;
        int spamAccounts = 0;
        QString deleteText;
        QString spamText;
        int lines = 0;
        int remaining = 0;
        int elapsed = 0;
        QString currentTab;
        bool timerOn = false;
    } frmRuleReport;

    std::unique_ptr<Timer> tmrMailTime;
    std::unique_ptr<Timer> tmrMailStartUp;
    std::unique_ptr<Timer> tmrRetrieveMessage;
};

} // namespace velmora
