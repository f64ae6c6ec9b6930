#include "rekenhart/program/CommandLine.h"

#include <windows.h>

#include <shellapi.h>

std::vector<std::string> CommandLineArguments(int, char**)
{
    // main's own argv has lost what the code page lacks.
    std::vector<std::string> arguments;
    int count = 0;
    LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; wide && i < count; ++i) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, nullptr, 0, nullptr, nullptr);
        std::string text(size > 0 ? size : 1, '\0');
        WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, text.data(), size, nullptr, nullptr);
        text.pop_back(); // the closing null
        arguments.push_back(std::move(text));
    }
    LocalFree(wide);
    return arguments;
}
