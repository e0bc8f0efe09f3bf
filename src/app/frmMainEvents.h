#pragma once

#include "platform/MainViewEvents.h"

namespace velmora {

struct AppContext;

// Routes what the main window reports to the form's handlers.
class frmMainEvents : public MainViewEvents {
public:
    explicit frmMainEvents(AppContext& ctx) : ctx(ctx) {}

    void Click(const QString& control) override;
    void Resize() override;
    void Unload(bool& cancel) override;

private:
    AppContext& ctx;
};

} // namespace velmora
