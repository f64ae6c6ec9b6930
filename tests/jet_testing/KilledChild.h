#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace jet_testing {

/// A number that a child process tells its parent, at once and without loss even
/// when the child is killed right after.
class Reporter {
public:
    explicit Reporter(int descriptor) : m_descriptor(descriptor) {}
    void Report(std::uint64_t number);

private:
    int m_descriptor;
};

struct ChildOutcome {
    std::uint64_t lastReport = 0; ///< 0 = none
    bool killed = false;          ///< as opposed to: ended by itself
    int exitCode = 0;             ///< when it ended by itself; 99 = an exception
};

/// Runs `work` in a child process and kills it, without any chance to clean up,
/// `delay` after it has reported `reports` times. The usual pattern:
///
///     const auto outcome = RunAndKill([&](Reporter& parent) {
///         auto db = Open(path);
///         parent.Report(first - 1);   // ready
///         for (std::uint64_t n = first;; ++n) {
///             DoTransaction(*db, n);
///             parent.Report(n);       // committed
///         }
///     }, delay);
///     // the file now holds exactly lastReport or lastReport + 1 transactions
///
/// The child is a copy of this process: nothing may be open when it is made.
/// POSIX only.
ChildOutcome RunAndKill(const std::function<void(Reporter&)>& work, std::chrono::microseconds delay,
                        int reports = 1);
/// As RunAndKill, but waits until the child ends by itself (see
/// FaultyFileSystem::OnDeath and EndProcessAtOnce).
ChildOutcome RunToItsEnd(const std::function<void(Reporter&)>& work);

/// Ends this process on the spot: no destructors, no flushing.
[[noreturn]] void EndProcessAtOnce(int exitCode = 0);

} // namespace jet_testing
