#pragma once

#ifdef __linux__
#include <csignal>
#include <sys/resource.h>
#endif

/// While it lives, no file of this process can be written beyond `bytes`: what a disk that
/// runs full does to a change, at a chosen moment.
class FullDisk {
public:
#ifdef __linux__
    explicit FullDisk(long bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN); // the write itself is to fail
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit full = m_before;
        full.rlim_cur = static_cast<rlim_t>(bytes);
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
    }
    static bool Works()
    {
        return true;
    }
#else
    explicit FullDisk(long) {}
    static bool Works()
    {
        return false;
    }
#endif
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

#ifdef __linux__
private:
    rlimit m_before;
#endif
};
