#include "rekenhart/program/OutsideProgram.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

ProgramRun RunProgram(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& workingFolder, const KillMoment& kill)
{
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe(pipe.data()), 0);
    std::vector<std::string> copies{program.string()};
    copies.insert(copies.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& copy : copies)
        argv.push_back(copy.data());
    argv.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        dup2(pipe[1], STDOUT_FILENO);
        dup2(pipe[1], STDERR_FILENO);
        close(pipe[0]);
        close(pipe[1]);
        if (chdir(workingFolder.c_str()) == 0)
            execv(argv[0], argv.data());
        _exit(127);
    }
    close(pipe[1]);

    using Clock = std::chrono::steady_clock;
    ProgramRun run;
    bool marked = false;
    Clock::time_point markedAt;
    std::array<char, 4096> buffer;
    for (ssize_t count; (count = read(pipe[0], buffer.data(), buffer.size())) > 0;) {
        run.output.append(buffer.data(), static_cast<std::size_t>(count));
        if (marked || kill.marker.empty() || run.output.find(kill.marker) == std::string::npos)
            continue;
        marked = true;
        markedAt = Clock::now();
        if (kill.microseconds >= 0) {
            usleep(static_cast<useconds_t>(kill.microseconds));
            ::kill(child, SIGKILL);
        }
    }
    close(pipe[0]);
    int status = 0;
    waitpid(child, &status, 0);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (marked)
        run.afterMarker = static_cast<long>(
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - markedAt).count());
    return run;
}
