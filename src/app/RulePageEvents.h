#pragma once

#include "app/frmMainEvents.h"

namespace velmora {

// The main window's events with the Rules page's own: its toolbars, its
// inputs, and the page opened with no rule yet.
class RulePageEvents : public frmMainEvents {
public:
    explicit RulePageEvents(AppContext& ctx) : frmMainEvents(ctx), ctx(ctx) {}

    void MainButtonClick(const QString& key) override;
    void ToolbarButtonClick(const QString& toolbar, const QString& key) override;
    void ValueChanged(const QString& control) override;

private:
    AppContext& ctx;
};

} // namespace velmora
