#include "checking/Notification.h"

#include "app/AppContext.h"

namespace velmora {

void AnnounceCheck(AppContext&, bool, bool) {}

void PlayCheckSound(AppContext&, int) {}

} // namespace velmora
