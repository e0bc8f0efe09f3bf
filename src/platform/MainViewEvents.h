#pragma once

#include <QString>

namespace velmora {

// What the main window reports to the logic. Controls are named as in
// MainView: "tbrMainButtons/Email", "tbrButtons(3)", "mnuTrayQuitApplication",
// "TabStripEmail".
class MainViewEvents {
public:
    virtual ~MainViewEvents() = default;

    virtual void Click(const QString& control) = 0;
    virtual void Resize() = 0;
    // The window is asked to close; setting cancel keeps it loaded.
    virtual void Unload(bool& cancel) = 0;
};

} // namespace velmora
