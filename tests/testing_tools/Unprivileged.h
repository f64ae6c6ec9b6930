#pragma once

#ifdef __linux__
#include <sys/fsuid.h>
#include <unistd.h>
#endif

/// While it lives, this thread meets the file system as a user who owns nothing:
/// administrators, who run tests in containers, pass every lock otherwise.
class Unprivileged {
public:
#ifdef __linux__
    Unprivileged() : m_user(setfsuid(kNobody)), m_group(setfsgid(kNobody)) {}
    ~Unprivileged()
    {
        setfsgid(static_cast<gid_t>(m_group));
        setfsuid(static_cast<uid_t>(m_user));
    }
    /// Whether it can be had here.
    static bool Works()
    {
        return geteuid() == 0;
    }
#else
    static bool Works()
    {
        return false;
    }
#endif
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
#ifdef __linux__
    static constexpr unsigned kNobody = 65534;
    int m_user;
    int m_group;
#else
    Unprivileged() = default;
#endif
};
