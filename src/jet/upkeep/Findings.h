#pragma once

#include "jet/base/Error.h"
#include "jet/upkeep/CheckReport.h"

#include <string>

namespace jet {

/// Collects what an examination finds; stops listing when it becomes too much,
/// so that a file of rubbish gives a report one can read.
class Findings {
public:
    void Fault(std::string text) { Add(m_report.faults, m_moreFaults, std::move(text)); }
    void Remark(std::string text) { Add(m_report.remarks, m_moreRemarks, std::move(text)); }

    /// Runs `examine`; what it throws is a fault, and false is returned.
    template <typename Examine>
    bool Guard(Examine&& examine)
    {
        try {
            examine();
            return true;
        } catch (const Error& error) {
            Fault(error.what());
            return false;
        }
    }

    CheckReport Finish()
    {
        const auto note = [](std::vector<std::string>& list, std::size_t more) {
            if (more > 0)
                list.push_back("... en nog " + std::to_string(more) + " andere.");
        };
        note(m_report.faults, m_moreFaults);
        note(m_report.remarks, m_moreRemarks);
        return std::move(m_report);
    }

private:
    static constexpr std::size_t kMostListed = 200;

    static void Add(std::vector<std::string>& list, std::size_t& more, std::string text)
    {
        if (list.size() < kMostListed)
            list.push_back(std::move(text));
        else
            ++more;
    }

    CheckReport m_report;
    std::size_t m_moreFaults = 0;
    std::size_t m_moreRemarks = 0;
};

} // namespace jet
