#include "platform/qt/HugePages.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace velmora {

namespace {

struct Mapping {
    std::uintptr_t start = 0;
    std::uintptr_t end = 0;
    bool contains(std::uintptr_t at) const { return at >= start && at < end; }
};

// The mapping that holds `at`; false unless it is anonymous memory the
// program writes, the heap included. Without a list of mappings, `found`
// spans everything, so that nobody asks again.
bool MappingOf(std::uintptr_t at, Mapping& found) {
    found = {0, UINTPTR_MAX};
    std::FILE* maps = std::fopen("/proc/self/maps", "re");
    if (!maps)
        return false;
    bool writable = false;
    char line[512];
    while (std::fgets(line, sizeof line, maps)) {
        std::uintptr_t start = 0, end = 0;
        char perms[8] = {};
        unsigned long long offset = 0, inode = 0;
        unsigned major = 0, minor = 0;
        int path = 0;
        if (std::sscanf(line, "%" SCNxPTR "-%" SCNxPTR " %7s %llx %x:%x %llu %n", &start, &end,
                        perms, &offset, &major, &minor, &inode, &path) < 7)
            continue;
        if (at < start || at >= end)
            continue;
        found = {start, end};
        const char* name = line + path;
        writable = inode == 0 && perms[0] == 'r' && perms[1] == 'w' &&
                   (*name == '\n' || *name == '\0' || std::strncmp(name, "[heap]", 6) == 0);
        break;
    }
    std::fclose(maps);
    return writable;
}

// The mappings this thread has looked at. A heap is often several
// mappings side by side, and messages come from all of them in turn.
struct Seen {
    static constexpr int kMost = 16;
    Mapping mappings[kMost];
    int count = 0;
    int next = 0;
    bool contains(std::uintptr_t at) const {
        for (int k = 0; k < count; ++k) {
            if (mappings[k].contains(at))
                return true;
        }
        return false;
    }
    void add(const Mapping& mapping) {
        mappings[next] = mapping;
        next = (next + 1) % kMost;
        count = count < kMost ? count + 1 : kMost;
    }
};

thread_local Seen seen;

} // namespace

void GrowHeapsInLargeSteps() {
    mallopt(M_TOP_PAD, 64 << 20);
}

void UseHugePagesAround(const void* p) {
    const auto at = reinterpret_cast<std::uintptr_t>(p);
    if (!p || seen.contains(at))
        return;
    Mapping mapping;
    const bool heap = MappingOf(at, mapping);
    // Remembered either way: a mapping that is no heap is not read again.
    seen.add(mapping);
    if (heap)
        madvise(reinterpret_cast<void*>(mapping.start), mapping.end - mapping.start, MADV_HUGEPAGE);
}

} // namespace velmora
