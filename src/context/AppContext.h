#pragma once

#include "accounts/AccountStore.h"
#include "context/CheckState.h"
#include "context/ListState.h"
#include "context/RulesState.h"
#include "context/ShellState.h"
#include "messages/MessageStore.h"
#include "options/Options.h"
#include "platform/Services.h"

#include <QDateTime>

namespace velmora {

class MainView;

// Everything the program keeps for the length of a run, by subsystem, and
// the platform it runs on. Each run (and each test) makes its own; nothing
// of it lives in a global.
struct AppContext {
    // Refuses a set of services with a gap, so no caller ever tests for one.
    explicit AppContext(const Services& services);
    ~AppContext();
    AppContext(const AppContext&) = delete;
    AppContext& operator=(const AppContext&) = delete;

    Services svc;
    // The controls of frmMain; a StateView where no window is shown.
    MainView* view = nullptr;

    ShellState shell;
    AccountStore accounts;
    Options options;
    MessageStore messages;
    ListState list;
    RulesState rules;
    CheckState check;

    QDateTime now() const;
    QString format(const QDateTime& moment, const QString& pattern) const;
};

} // namespace velmora
