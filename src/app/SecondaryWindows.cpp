#include "app/SecondaryWindows.h"

#include "app/AppContext.h"

namespace velmora {

void HideSecondaryWindows(AppContext&) {}

void ShowSecondaryWindows(AppContext&) {}

void UnloadSecondaryWindows(AppContext&) {}

void ShowFirstUse(AppContext&) {}

} // namespace velmora
