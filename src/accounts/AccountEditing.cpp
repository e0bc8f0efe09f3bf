#include "context/AppContext.h"
#include "context/PageCalls.h"

namespace velmora {

// The Accounts page's editor comes with its own change; until then the
// buttons that reach it change nothing.
void SaveAccount(AppContext&) {}
void CancelAccountEdit(AppContext&) {}

} // namespace velmora
