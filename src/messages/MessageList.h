#pragma once

namespace velmora {

struct AppContext;

// The single refresh of the Email page for an account: list, tab, panels.
void ShowAccountMessages(AppContext& ctx, int account);
void SetAccountTabImage(AppContext& ctx, int account);

} // namespace velmora
