#include "platform/qt/OpenSsl.h"

#include <dlfcn.h>

namespace velmora {

const OpenSslLibrary* OpenSsl() {
    static const OpenSslLibrary* const loaded = []() -> const OpenSslLibrary* {
        // Never closed; libssl brings libcrypto, whose calls are found
        // through the same handle.
        void* handle = dlopen("libssl.so.3", RTLD_NOW | RTLD_LOCAL);
        if (!handle)
            return nullptr;
        static OpenSslLibrary calls;
        bool complete = true;
#define VELMORA_OPENSSL_FIND(name)                                                                 \
    calls.name = reinterpret_cast<decltype(calls.name)>(dlsym(handle, #name));                     \
    complete = complete && calls.name;
        VELMORA_OPENSSL_CALLS(VELMORA_OPENSSL_FIND)
#undef VELMORA_OPENSSL_FIND
        return complete ? &calls : nullptr;
    }();
    return loaded;
}

} // namespace velmora
