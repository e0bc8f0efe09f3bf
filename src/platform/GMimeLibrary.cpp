#include "platform/GMimeLibrary.h"

#include "platform/CallTable.h"

namespace velmora {

const GMimeLibrary* GMime() {
    static const GMimeLibrary* const loaded = []() -> const GMimeLibrary* {
        // Never closed: its objects live as long as the program.
        static GMimeLibrary calls;
        if (!LoadCalls("libgmime-3.0.so.0",
                       [](auto find) { VELMORA_GMIME_CALLS(VELMORA_FIND_CALL) }))
            return nullptr;
        calls.g_mime_init();
        return &calls;
    }();
    return loaded;
}

} // namespace velmora
