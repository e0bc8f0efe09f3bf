#pragma once

#include "accounts/AccountStore.h"
#include "messages/MessageStore.h"
#include "options/Options.h"
#include "platform/MessageView.h"
#include "platform/PopClient.h"
#include "platform/Services.h"
#include "platform/Timer.h"
#include "rules/RuleCheck.h"
#include "rules/Rules.h"

#include <QDateTime>
#include <QStringList>
#include <memory>
#include <vector>

namespace velmora {

class MainView;

// Everything the program keeps for the length of a run: the stores, the
// program-wide flags and texts, the main form's timers, and the platform it
// runs on. Each run (and each test) makes its own.
struct AppContext {
    // Refuses a set of services with a gap, so no caller ever tests for one.
    explicit AppContext(const Services& services);

    Services svc;
    // The controls of frmMain; a StateView where no window is shown.
    MainView* view = nullptr;

    // Application shell.
    QString AppTitle = QStringLiteral("Velmora");
    QStringList PageBanners;
    int CurrentPage = 0;
    QString HelpFile;
    int FirstUse = 0;
    bool FormLoading = false;
    bool QuitRequested = false;
    // The main form is being unloaded: a check still on the call stack
    // winds down without boxes, sounds or windows.
    bool Unloading = false;
    bool MenuHooked = false;

    // The stores.
    AccountStore accounts;
    Options options;
    MessageStore messages;
    RuleSet LiveRules;
    RuleSet WorkingRules;
    // The rule shown on the Rules page; 0 with no rules.
    int CurrentRule = 0;
    // The profile file callers last named; a new IniFile starts on it.
    QString ProfilePath;
    RuleParseCache RuleCache;

    // The POP client and its events. A client dropped by a stop is kept
    // until the next connection, as it may still be on the call stack.
    std::unique_ptr<class PopClient> PopClient;
    std::unique_ptr<PopNotify> PopEvents;
    std::vector<std::unique_ptr<class PopClient>> RetiredPopClients;
    int ReceivedCount = 0;
    int AnimationFrame = 0;

    // Checking.
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

    // Secondary windows and notification.
    bool RuleReportOpen = false;
    bool PreviewOpen = false;
    bool AutoMessageOpen = false;
    bool FirstUseOpen = false;
    bool SoundMaster = true;
    bool DefaultSoundValid = false;
    bool DefaultClientValid = false;

    // The message list.
    int AcntLastShown = 0;
    int SelectedMessage = 0;
    int ListAttachCount = 0;
    int ListDeleteAttachCount = 0;
    int ListNewAttachCount = 0;

    // Sorting of the message list.
    QString SortColumnName;
    QString LastClickedColumn;
    int SortDescending = 0;

    // The timers of frmMain, made when the form loads.
    std::unique_ptr<Timer> tmrStatusBar;
    std::unique_ptr<Timer> tmrMailTime;
    std::unique_ptr<Timer> tmrMailStartUp;
    std::unique_ptr<Timer> tmrRetrieveMessage;

    QDateTime now() const;
    QString format(const QDateTime& moment, const QString& pattern) const;
};

} // namespace velmora
