#include "checking/PopSession.h"

#include "app/AppContext.h"

namespace velmora {

void CreatePopClient(AppContext&) {}

void ReleasePopClient(AppContext&) {}

void tmrRetrieveMessage_Timer(AppContext&) {}

} // namespace velmora
