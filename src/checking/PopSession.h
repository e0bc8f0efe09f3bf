#pragma once

namespace velmora {

struct AppContext;

// The one POP client of the program, made when the main form loads.
void CreatePopClient(AppContext& ctx);
void ReleasePopClient(AppContext& ctx);
void tmrRetrieveMessage_Timer(AppContext& ctx);

} // namespace velmora
