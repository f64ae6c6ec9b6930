#include "rekenhart/run/Console.h"

#include "rekenhart/files/TextEncoding.h"

#include <algorithm>

namespace rekenhart {

void Console::Line(std::string_view utf8)
{
    m_out << ToWindows1252(utf8) << '\n' << std::flush;
}

void Console::Progress(double fraction)
{
    const int percent = std::clamp(static_cast<int>(100 * fraction + 1e-9), 0, 100);
    if (percent <= m_percent)
        return;
    m_percent = percent;
    const std::string digits = std::to_string(percent);
    Line("Voortgang: " + std::string(3 - digits.size(), ' ') + digits + " %");
}

void Console::Warning(const std::string& text)
{
    if (std::find(m_warnings.begin(), m_warnings.end(), text) != m_warnings.end())
        return;
    m_warnings.push_back(text);
    Line("WAARSCHUWING: " + text);
}

} // namespace rekenhart
