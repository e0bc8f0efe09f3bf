#pragma once

#include "context/AppContext.h"
#include "platform/Headless.h"
#include "platform/StateView.h"
#include "platform/qt/IniProfileFiles.h"
#include "support/CountingEventPump.h"
#include "support/FakeFiles.h"
#include "support/FakePopServer.h"
#include "support/FakeSettingsStore.h"
#include "support/ManualTimer.h"
#include "support/SettableClock.h"

#include <memory>

namespace velmora {

// A fresh program on fakes: settings in memory, a settable clock, timers
// that tick on demand, boxes that are recorded, a window without a screen.
struct TestRig {
    TestRig();

    // Loads the program as its start does; false if Main declined.
    bool start();

    FakeSettingsStore settings;
    SettableClock clock;
    CountingEventPump pump;
    FakeFiles files;
    FakePopServer server;
    FakePopClientFactory pop{server};
    IniProfileFiles profiles;
    // Boxes, sounds, shell, dialogs, timers and the rest, recorded.
    Headless headless;
    RecordedBoxes& boxes = headless.boxes;
    RecordedSounds& sounds = headless.sounds;
    RecordedAutoStart& autoStart = headless.autoStart;
    SoleInstance& instance = headless.instance;
    StateWindowFactory& windows = headless.windows;
    StateView view;
    std::unique_ptr<AppContext> ctx;

    // Writes account n's keys as the Accounts page would; its server is a
    // mailbox of `server` named after the account.
    void addAccount(int n, const QString& name, bool enabled = true);
    // Runs a `velmora-cli ui` script's lines on the started program; false,
    // with the reason in the log, when it failed or refused a control.
    bool runScript(const QString& lines);
    // Account 1, "Home", on a server of this machine, with a short timeout.
    void addLoopbackAccount(quint16 port, const QString& login, const QString& password);
    FakeMailbox& mailbox(const QString& account) { return server.host(account + ".example"); }
};

} // namespace velmora
