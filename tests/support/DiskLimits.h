#pragma once

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

// A full disk, as the test process sees it: no file may grow past `bytes`,
// and a write past it fails with EFBIG rather than ending the process.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved);
        previous = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, saved.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, previous);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit saved{};
    void (*previous)(int) = nullptr;
};

// The process's umask for the length of a scope.
class UmaskScope {
public:
    explicit UmaskScope(mode_t mask) : saved(::umask(mask)) {}
    ~UmaskScope() { ::umask(saved); }
    UmaskScope(const UmaskScope&) = delete;
    UmaskScope& operator=(const UmaskScope&) = delete;

private:
    mode_t saved;
};

// The permission bits of a path; -1 when it is missing.
inline int ModeOf(const char* path) {
    struct stat info {};
    return ::stat(path, &info) == 0 ? int(info.st_mode & 07777) : -1;
}
