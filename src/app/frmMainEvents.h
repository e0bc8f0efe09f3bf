#pragma once

#include "platform/MainViewEvents.h"

namespace velmora {

struct AppContext;

// Routes what the main window reports, through the gate, to the form's
// handlers.
class frmMainEvents : public MainViewEvents {
public:
    explicit frmMainEvents(AppContext& ctx) : ctx(ctx) {}

    void MainButtonClick(const QString& key) override;
    void PageButtonClick(int index) override;
    void ToolbarButtonClick(const QString& toolbar, const QString& key) override;
    void MenuClick(const QString& entry) override;
    void TrayClick(MouseButton button) override;
    void TabClick(const QString& strip) override;
    void TabPress(const QString& strip, int tab) override;
    void TabRelease(const QString& strip) override;
    void TabDrop(const QString& strip, int fromTab, int toTab) override;
    void LinkClick(const QString& label) override;
    void ListRowClick(int row) override;
    void ListDoubleClick(int row) override;
    void ListHeaderClick(int column) override;
    void ListContextMenu(int row) override;
    void ListPointer(int row, int x) override;
    void FocusArrived(const QString& control) override;
    void FramePointer(const QString& frame) override;
    void ValueChanged(const QString& control) override;
    void StatusBarPointer(int panel) override;
    void Resize() override;
    void Unload(bool& cancel) override;

private:
    AppContext& ctx;
};

} // namespace velmora
