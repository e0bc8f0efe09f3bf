#include "app/Tray.h"

#include "app/AppContext.h"

namespace velmora {

void UpdateTrayIcon(AppContext&) {}

} // namespace velmora
