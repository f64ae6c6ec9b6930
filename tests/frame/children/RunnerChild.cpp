// What the process runner's tests start. The first argument says how it behaves.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

void Write(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

void Sleep(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// Numbered lines of 64 characters.
void WriteLines(long lines)
{
    char line[72];
    std::string block;
    for (long i = 0; i < lines; ++i) {
        std::snprintf(line, sizeof line, "%061ld\r\n", i);
        block += line;
        block += '.';
        if (block.size() >= 65536 || i + 1 == lines) {
            std::fwrite(block.data(), 1, block.size(), stdout);
            block.clear();
        }
    }
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    const std::string mode = argc > 1 ? argv[1] : "silent";
    const long number = argc > 2 ? std::atol(argv[2]) : 0;
    if (mode == "exit")
        return int(std::strtoul(argv[2], nullptr, 0));
    if (mode == "lines")
        WriteLines(number);
    if (mode == "slow") {
        for (long i = 0; i < number; ++i) {
            Write("stap\r\n");
            Sleep(50);
        }
    }
    if (mode == "bytes") {
        std::string all;
        for (int byte = 0; byte < 256; ++byte)
            all += char(byte);
        Write(all);
    }
    if (mode == "both") {
        Write("een ");
        std::fputs("twee ", stderr);
        std::fflush(stderr);
        Write("drie");
    }
    if (mode == "quiet")
        Sleep(int(number));
    if (mode == "stubborn") {
        std::signal(SIGTERM, SIG_IGN);
        std::signal(SIGINT, SIG_IGN);
        Write("ik blijf\r\n");
        Sleep(int(number));
    }
    if (mode == "line") { // one line of so many characters, which nothing ends
        Write(std::string(std::size_t(number), 'x'));
        Write("einde");
    }
    if (mode == "halves") { // a character of two bytes, parted between two writes
        Write("caf\xC3");
        Sleep(80);
        Write("\xA9");
    }
#ifndef _WIN32
    if (mode == "leaves" || mode == "waits") { // a child of its own keeps the output open
        Write("ik ga\r\n");
        if (fork() == 0) {
            Sleep(int(number));
            _exit(0);
        }
        if (mode == "waits")
            Sleep(int(number));
    }
#endif
    if (mode == "crash") {
        Write("voor de val");
        std::abort();
    }
    if (mode == "arguments") {
        for (int i = 2; i < argc; ++i)
            Write(std::string(argv[i]) + "\n");
    }
    return 0;
}
