#pragma once

#include "platform/FirstUseView.h"
#include "platform/Timer.h"

#include <QStringList>
#include <memory>

namespace velmora {

// The application shell's run-time state: the main form, its pages and the
// flags of the secondary windows.
struct ShellState {
    QString AppTitle = QStringLiteral("Velmora");
    QStringList PageBanners;
    int CurrentPage = 0;
    QString HelpFile;
    int FirstUse = 0;
    // The account whose count the tray shows next.
    int TrayAccount = 0;
    bool FormLoading = false;
    bool QuitRequested = false;
    // The main form is being unloaded: a check still on the call stack
    // winds down without boxes, sounds or windows.
    bool Unloading = false;
    bool MenuHooked = false;

    bool RuleReportOpen = false;
    bool PreviewOpen = false;
    bool AutoMessageOpen = false;
    bool FirstUseOpen = false;
    bool SoundMaster = true;
    bool DefaultSoundValid = false;
    bool DefaultClientValid = false;

    // The welcome window while it is open.
    std::unique_ptr<FirstUseView> frmFirstUse;

    // The clock while Auto Check is off or suspended.
    std::unique_ptr<Timer> tmrStatusBar;
};

} // namespace velmora
