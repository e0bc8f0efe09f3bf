#include "platform/GMimeLibrary.h"

#include <dlfcn.h>

namespace velmora {

const GMimeLibrary* GMime() {
    static const GMimeLibrary* const loaded = []() -> const GMimeLibrary* {
        // Never closed: its objects live as long as the program.
        void* handle = dlopen("libgmime-3.0.so.0", RTLD_NOW | RTLD_LOCAL);
        if (!handle)
            return nullptr;
        static GMimeLibrary calls;
        bool complete = true;
#define VELMORA_GMIME_FIND(name)                                                                   \
    calls.name = reinterpret_cast<decltype(calls.name)>(dlsym(handle, #name));                     \
    complete = complete && calls.name;
        VELMORA_GMIME_CALLS(VELMORA_GMIME_FIND)
#undef VELMORA_GMIME_FIND
        if (!complete)
            return nullptr;
        calls.g_mime_init();
        return &calls;
    }();
    return loaded;
}

} // namespace velmora
