#pragma once

#include "jet/base/Value.h"
#include "jet/storage/PageAllocator.h"

#include <span>
#include <vector>

namespace jet {

using ByteSpan = std::span<const std::byte>;

/// Compares as unsigned bytes; the shorter of two that agree comes first.
int CompareBytes(ByteSpan a, ByteSpan b);

inline constexpr std::size_t kRowPointerSize = 4; // behind the key of every entry
inline constexpr std::size_t kChildSize = 4;      // behind that, in nodes

/// Bytes for entries on an index page of a Jet 4 file.
inline constexpr std::size_t kIndexPageCapacity = 3616;

/// Appends the row pointer that ends an index entry: unlike elsewhere big-endian.
void AppendRowPointer(RowId row, Bytes& entry);
/// The row pointer at the end of a leaf entry (of a node entry without its child).
RowId RowOfEntry(ByteSpan entry);

/// Where the parts of an index page stand.
struct IndexLayout {
    std::size_t previous, next, tail, prefix, level, mask, entries;
    std::size_t capacity; ///< bytes for entries
};
const IndexLayout& IndexLayoutOf(FileVersion version);

/// Reads one page of a tree in place, without decoding its entries.
///
/// Entries lie one after another; a bit mask tells at which offsets one ends.
/// All but the first leave out the page's prefix, which is taken from the first.
/// A position is the offset of an entry's first byte; End() is behind the last.
/// A leaf entry is key and row; a node entry is the last entry of a child and
/// the child's page number. The right-most child has no entry: it is the tail.
class IndexPage {
public:
    /// Throws Damaged when `data` is no index page of `owner`.
    IndexPage(const Pager& pager, PageNumber number, PageNumber owner, ByteSpan data);

    bool IsLeaf() const { return m_leaf; }
    PageNumber Previous() const;
    PageNumber Next() const;
    /// The right-most child; 0 in leaves, and in nodes that list every child.
    PageNumber Tail() const;
    int Level() const;
    std::size_t Prefix() const { return m_prefix; }
    std::size_t FreeField() const;

    std::size_t End() const { return m_end; }
    /// The position behind the entry at `position`. REQUIRES: position < End().
    std::size_t After(std::size_t position) const;
    /// The position of the entry before `position`. REQUIRES: position > 0.
    std::size_t Before(std::size_t position) const;
    /// The first entry that is not less than `target` (in nodes: without its child); End() when
    /// there is none.
    std::size_t LowerBound(ByteSpan target) const;
    /// Copies the whole entry (prefix included) at `position` to `out`.
    void CopyEntry(std::size_t position, Bytes& out) const;
    /// REQUIRES: a node. Throws Damaged when the entry is too short to name a child.
    PageNumber ChildAt(std::size_t position) const;
    /// The child to go on with for entries not less than the one at `position`.
    PageNumber ChildFor(std::size_t position) const;

private:
    friend class IndexPageEdit;
    bool IsBoundary(std::size_t at) const;
    std::size_t BoundaryUpTo(std::size_t at) const; ///< the last one <= at
    std::size_t HighestBoundary() const;
    [[noreturn]] void Fail(const char* what) const;

    const Pager& m_pager;
    const IndexLayout& m_layout;
    PageNumber m_number;
    ByteSpan m_data;
    ByteSpan m_entries;
    bool m_leaf;
    std::size_t m_prefix;
    std::size_t m_end;
};

/// All entries of one page, to be rearranged: for splits and everything else
/// that cannot be done in place.
struct IndexNode {
    bool leaf = true;
    int level = 0;
    PageNumber previous = 0, next = 0;
    PageNumber tail = 0; ///< in nodes never 0: one that lists all children is read with a tail
    Bytes bytes;         ///< the entries, whole, one after another
    std::vector<std::uint32_t> starts{0}; ///< of each entry, and behind the last

    std::size_t Count() const { return starts.size() - 1; }
    ByteSpan Entry(std::size_t i) const
    {
        return ByteSpan(bytes).subspan(starts[i], starts[i + 1] - starts[i]);
    }
    /// Node entries: without the child.
    ByteSpan Key(std::size_t i) const { return Entry(i).first(Entry(i).size() - kChildSize); }
    PageNumber Child(std::size_t i) const;
    /// Which reference leads to `child`: an entry, Count() for the tail, -1 for none.
    int FindChild(PageNumber child) const;

    void Insert(std::size_t i, ByteSpan entry);
    void InsertChild(std::size_t i, ByteSpan key, PageNumber child);
    void Erase(std::size_t i);
    void SetChild(std::size_t i, PageNumber child);
    /// Bytes that entries [from, to) take on a page with the best prefix.
    std::size_t StoredSize(std::size_t from, std::size_t to) const;
    /// Entries [from, to), with this node's kind and level, without links and tail.
    IndexNode Part(std::size_t from, std::size_t to) const;

    static IndexNode Read(Pager& pager, PageNumber page, PageNumber owner);
    /// REQUIRES: StoredSize(0, Count()) fits.
    void Write(const PageEdit& edit, PageNumber owner) const;
};

/// Changes entries of a Jet 4 index page in place.
class IndexPageEdit {
public:
    /// False, and nothing changed, when there is no room or the page would have to be laid out
    /// anew.
    static bool Insert(const IndexPage& page, const PageEdit& edit, std::size_t position,
                       ByteSpan entry);
    static void Erase(const IndexPage& page, const PageEdit& edit, std::size_t position);
};

/// Makes `edit` an empty leaf.
void FormatLeaf(const PageEdit& edit, PageNumber owner);

} // namespace jet
