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

// One line of /proc/self/maps: its range, and whether it is anonymous
// memory that the program may write, or that is reserved without access.
struct MapsLine {
    Mapping range;
    bool anonymous = false;
    bool writable = false;
    bool reserved = false;
};

bool ReadMapsLine(const char* line, MapsLine& out) {
    char perms[8] = {};
    unsigned long long offset = 0, inode = 0;
    unsigned major = 0, minor = 0;
    int path = 0;
    if (std::sscanf(line, "%" SCNxPTR "-%" SCNxPTR " %7s %llx %x:%x %llu %n", &out.range.start,
                    &out.range.end, perms, &offset, &major, &minor, &inode, &path) < 7)
        return false;
    const char* name = line + path;
    out.anonymous =
        inode == 0 && (*name == '\n' || *name == '\0' || std::strncmp(name, "[heap]", 6) == 0);
    out.writable = perms[0] == 'r' && perms[1] == 'w';
    out.reserved = perms[0] == '-' && perms[1] == '-' && perms[2] == '-';
    return true;
}

// The anonymous mapping that holds `at`, with the reserve right behind it
// that a thread's heap grows into; false when `at` lies elsewhere. Without
// a list of mappings, `found` spans everything, so that nobody asks again.
bool HeapMappingOf(std::uintptr_t at, Mapping& found) {
    found = {0, UINTPTR_MAX};
    std::FILE* maps = std::fopen("/proc/self/maps", "re");
    if (!maps)
        return false;
    bool heap = false;
    char line[512];
    MapsLine entry;
    while (std::fgets(line, sizeof line, maps)) {
        if (!ReadMapsLine(line, entry) || !entry.range.contains(at))
            continue;
        found = entry.range;
        heap = entry.anonymous && entry.writable;
        if (heap && std::fgets(line, sizeof line, maps) && ReadMapsLine(line, entry) &&
            entry.range.start == found.end && entry.anonymous && entry.reserved)
            found.end = entry.range.end;
        break;
    }
    std::fclose(maps);
    return heap;
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
    static const bool once = [] {
        mallopt(M_MMAP_THRESHOLD, 32 << 20);
        mallopt(M_TOP_PAD, 64 << 20);
        return true;
    }();
    (void)once;
}

void UseHugePagesAround(const void* p) {
    const auto at = reinterpret_cast<std::uintptr_t>(p);
    if (!p || seen.contains(at))
        return;
    Mapping mapping;
    const bool heap = HeapMappingOf(at, mapping);
    // Remembered either way: a mapping that is no heap is not read again.
    seen.add(mapping);
    if (heap)
        madvise(reinterpret_cast<void*>(mapping.start), mapping.end - mapping.start, MADV_HUGEPAGE);
}

} // namespace velmora
