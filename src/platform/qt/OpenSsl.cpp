#include "platform/qt/OpenSsl.h"

#include "platform/CallTable.h"

namespace velmora {

const OpenSslLibrary* OpenSsl() {
    static const OpenSslLibrary* const loaded = []() -> const OpenSslLibrary* {
        // Never closed; libssl brings libcrypto, whose calls are found
        // through the same handle.
        static OpenSslLibrary calls;
        return LoadCalls("libssl.so.3", [](auto find) { VELMORA_OPENSSL_CALLS(VELMORA_FIND_CALL) })
                   ? &calls
                   : nullptr;
    }();
    return loaded;
}

} // namespace velmora
