#pragma once

#include <dlfcn.h>

#include <type_traits>

namespace velmora {

// Opens a library for the rest of the program and fills a table of its calls:
// `fill` is handed find(name, pointer), which looks one call up. False when
// the library or any call is missing.
template <class Fill> bool LoadCalls(const char* soname, Fill fill) {
    void* handle = dlopen(soname, RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return false;
    bool complete = true;
    fill([&](const char* name, auto& pointer) {
        pointer = reinterpret_cast<std::remove_reference_t<decltype(pointer)>>(dlsym(handle, name));
        complete = complete && pointer;
    });
    return complete;
}

// For a list of calls: looks up the one of that name in `calls`.
#define VELMORA_FIND_CALL(name) find(#name, calls.name);

} // namespace velmora
