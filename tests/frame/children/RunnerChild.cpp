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
