#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace rekenhart {

/// Standard output as the caller reads it: whole lines in Windows-1252, each
/// flushed at once, because the caller's window lives on our output.
class Console {
public:
    explicit Console(std::ostream& out) : m_out(out) {}

    void Line(std::string_view utf8);
    /// "Voortgang:  42 %"; nothing when that stands there already.
    void Progress(double fraction);
    /// Once per run, whatever is given twice.
    void Warning(const std::string& text);
    const std::vector<std::string>& Warnings() const { return m_warnings; }

private:
    std::ostream& m_out;
    int m_percent = -1;
    std::vector<std::string> m_warnings;
};

} // namespace rekenhart
