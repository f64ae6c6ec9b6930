#include "KilledChild.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace jet_testing {
namespace {

struct Child {
    pid_t id = 0;
    int reports = -1;
};

Child Start(const std::function<void(Reporter&)>& work)
{
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("pipe failed");
    const pid_t id = ::fork();
    if (id < 0)
        throw std::runtime_error("fork failed");
    if (id == 0) {
        ::close(ends[0]);
        Reporter reporter(ends[1]);
        try {
            work(reporter);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "child: %s\n", error.what());
            EndProcessAtOnce(99);
        }
        EndProcessAtOnce(0);
    }
    ::close(ends[1]);
    return {id, ends[0]};
}

bool ReadReport(int descriptor, std::uint64_t& number)
{
    ssize_t n = 0;
    do {
        n = ::read(descriptor, &number, sizeof number); // whole: writes this small are atomic
    } while (n < 0 && errno == EINTR);
    return n == sizeof number;
}

ChildOutcome Finish(const Child& child, std::uint64_t lastReport)
{
    ChildOutcome outcome;
    outcome.lastReport = lastReport;
    std::uint64_t number = 0;
    while (ReadReport(child.reports, number))
        outcome.lastReport = number;
    ::close(child.reports);
    int status = 0;
    while (::waitpid(child.id, &status, 0) < 0 && errno == EINTR) {
    }
    outcome.killed = WIFSIGNALED(status);
    if (WIFEXITED(status))
        outcome.exitCode = WEXITSTATUS(status);
    return outcome;
}

} // namespace

void Reporter::Report(std::uint64_t number)
{
    if (::write(m_descriptor, &number, sizeof number) != sizeof number)
        EndProcessAtOnce(98);
}

ChildOutcome RunAndKill(const std::function<void(Reporter&)>& work, std::chrono::microseconds delay,
                        int reports)
{
    const Child child = Start(work);
    std::uint64_t number = 0;
    bool running = true;
    for (int i = 0; i < reports && running; ++i)
        running = ReadReport(child.reports, number);
    if (running) {
        // The pipe must not fill up while we wait: then the child would stand still.
        const auto end = std::chrono::steady_clock::now() + delay;
        for (auto now = std::chrono::steady_clock::now(); now < end;
             now = std::chrono::steady_clock::now()) {
            pollfd ready{child.reports, POLLIN, 0};
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - now);
            if (left.count() == 0) {
                std::this_thread::sleep_for(end - now);
                break;
            }
            if (::poll(&ready, 1, static_cast<int>(left.count())) > 0 &&
                !ReadReport(child.reports, number))
                break; // it ended by itself
        }
    }
    ::kill(child.id, SIGKILL);
    return Finish(child, number);
}

ChildOutcome RunToItsEnd(const std::function<void(Reporter&)>& work)
{
    return Finish(Start(work), 0);
}

void EndProcessAtOnce(int exitCode)
{
    ::_exit(exitCode);
}

} // namespace jet_testing
