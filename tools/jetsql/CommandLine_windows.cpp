#include "CommandLine.h"

#include <windows.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

namespace jetsql {

std::vector<std::string> CommandLine(int, char**)
{
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);

    // argv is in the system's code page, which lacks most characters.
    int count = 0;
    LPWSTR* words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> result;
    for (int i = 1; words && i < count; ++i) {
        const int length =
            WideCharToMultiByte(CP_UTF8, 0, words[i], -1, nullptr, 0, nullptr, nullptr);
        std::string word(static_cast<std::size_t>(length > 0 ? length - 1 : 0), '\0');
        WideCharToMultiByte(CP_UTF8, 0, words[i], -1, word.data(), length, nullptr, nullptr);
        result.push_back(std::move(word));
    }
    LocalFree(words);
    return result;
}

} // namespace jetsql
