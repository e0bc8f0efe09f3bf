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
    // The section of the Options page showing, 1 to 6; help follows it.
    int OptionsPage = 1;
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
    // Without a tray the window stays on the task bar; the user is told once.
    bool NoTraySaid = false;
    // The strip a held press began on, for tmrDragTab.
    QString DragStrip;

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
    // A press held on a tab until its tick becomes a drag.
    std::unique_ptr<Timer> tmrDragTab;
};

} // namespace velmora
