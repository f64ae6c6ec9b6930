#pragma once

#include "jet/table/Table.h"
#include "jet/upkeep/PageLedger.h"

#include <bitset>
#include <map>

namespace jet {

/// Slots of pages, by page.
using SlotSet = std::map<PageNumber, std::bitset<256>>;

/// Examines one table: its definition's pages, its maps, its data pages slot by
/// slot, its rows value by value, its long values part by part.
class TableCheck {
public:
    TableCheck(Pager& pager, std::string name, TableDefinition definition, PageLedger& ledger,
               Findings& findings);

    void Examine();

private:
    struct LongValuePages {
        SlotSet live; ///< slots in use
        SlotSet met;  ///< slots that a reference leads to
    };

    std::string Where() const { return "de tabel \"" + m_name + '"'; }
    void ClaimDefinition();
    /// Claims what the map itself takes; false when it is no map.
    bool ClaimMap(RowId map, const std::string& owner);
    void ExamineRowPages();
    /// Slots, lengths and free count of a page of rows; gives the live slots.
    bool ExamineSlots(PageNumber page, std::uint32_t owner, const std::string& where,
                      std::bitset<256>& live);
    void ExaminePointers();
    void ExamineRows();
    void ExamineRow(PageNumber page, int slot, std::span<const std::byte> row);
    void ExamineLongValue(const Column& column, PageNumber page, int slot,
                          std::span<const std::byte> stored);
    void FollowChain(LongValuePages& pages, const std::string& where, RowId first,
                     std::uint32_t length, bool chain);
    void ExamineLongValuePages();
    void ExamineFreeMap(RowId owned, RowId free, const std::string& owner);
    void ExamineCounters();

    Pager& m_pager;
    std::string m_name;
    TableDefinition m_definition;
    PageLedger& m_ledger;
    Findings& m_findings;

    SlotSet m_rows;                                       ///< rows in their own place
    SlotSet m_pointers;                                   ///< slots that say where a row went
    SlotSet m_hidden;                                     ///< rows that moved
    std::map<std::uint16_t, LongValuePages> m_longValues; ///< by column number
    std::uint32_t m_rowCount = 0;
    std::int64_t m_highestNumber = 0;
};

} // namespace jet
