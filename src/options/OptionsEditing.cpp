#include "context/AppContext.h"
#include "context/PageCalls.h"

namespace velmora {

// The Options page's editor comes with its own change; the section shown is
// kept already, since help follows it.
void SaveOptionsPage(AppContext&) {}
void CancelOptionsEdit(AppContext&) {}

void ShowOptionsPage(AppContext& ctx, int node) {
    if (node >= 1 && node <= 6)
        ctx.shell.OptionsPage = node;
}

} // namespace velmora
