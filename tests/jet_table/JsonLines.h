#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// As much JSON as the dumps of the sample databases need.
struct Json {
    enum class Kind { Null, Bool, Number, Text, List, Object };
    Kind kind = Kind::Null;
    bool boolean = false;
    double number = 0;
    std::string text; ///< UTF-8
    std::vector<Json> list;
    std::map<std::string, Json> members;

    bool Has(const std::string& name) const { return members.contains(name); }
    const Json& operator[](const std::string& name) const;
    int Int() const { return static_cast<int>(number); }

    static Json Parse(std::string_view source);
};

/// One value for each line of the file.
std::vector<Json> ReadJsonLines(const std::filesystem::path& path);
