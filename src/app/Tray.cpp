#include "context/ShellCalls.h"

#include "context/AppContext.h"

namespace velmora {

void UpdateTrayIcon(AppContext&) {}

} // namespace velmora
