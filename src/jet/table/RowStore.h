#pragma once

#include "jet/storage/DataPage.h"
#include "jet/storage/PageAllocator.h"

#include <optional>
#include <span>

namespace jet {

/// Puts rows of bytes on the pages of one owner, with its map of owned pages and
/// its map of pages with room. The rows of a table and the parts of long values
/// are kept this way.
class RowStore {
public:
    /// Whether the slot of an erased row may be given to a new one. Not for the
    /// rows of a table: whoever still holds the id of an erased row must find nothing there.
    enum class Slots { Append, Reuse };

    RowStore(Pager& pager, PageAllocator& pages, std::uint32_t owner, RowId ownedMap, RowId freeMap,
             Slots slots);

    /// Throws RowTooLarge never: REQUIRES row.size() <= kLongestRow.
    RowId Insert(std::span<const std::byte> row, std::uint16_t flags = 0);
    /// Gives the row at `home` new bytes. It keeps its id: when its page has no
    /// room it moves and leaves a pointer.
    void Replace(RowId home, std::span<const std::byte> row);
    /// Erases the row, wherever it stands now; gives a page without rows back.
    void Erase(RowId home);
    /// Gives all pages back. The maps stay.
    void FreeAll();

    const UsageMap& Owned() const { return m_owned; }
    RowId FreeMap() const { return m_free ? m_free->Where() : RowId{}; }

    static constexpr std::size_t kLongestRow = 4076; ///< one row alone on a page of 4096 bytes

private:
    PageNumber PageWithRoom(std::size_t length);
    bool HasRoom(PageNumber page, std::size_t length);
    RowId Place(PageNumber page, std::span<const std::byte> row, std::uint16_t flags);
    void ReplaceSlot(RowId where, std::span<const std::byte> row, std::uint16_t flags);
    void EraseSlot(RowId where);
    void NoteRoom(PageNumber page, std::size_t before, std::size_t after);

    Pager& m_pager;
    PageAllocator& m_pages;
    std::uint32_t m_owner;
    UsageMap m_owned;
    std::optional<UsageMap> m_free;
    Slots m_slots;
    PageNumber m_insertPage = 0; // the last insert went there
    PageNumber m_searchFrom = 1;
    std::uint64_t m_rollbacks = 0;
};

/// Where the bytes of a row stand, its pointers followed.
struct FoundRow {
    PageView page;
    RowId at;
    std::span<const std::byte> bytes;
};

/// Finds the row with id `home` of `owner`, or nothing when it is not there
/// (any more). A slot of a moved row is not a row of its own.
std::optional<FoundRow> FindRow(Pager& pager, std::uint32_t owner, RowId home);

} // namespace jet
