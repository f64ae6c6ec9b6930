#pragma once

#include "jet/index/IndexPage.h"

#include <functional>

namespace jet {

/// One index of one table: an ordered set of entries (key bytes and row id),
/// stored as a B-tree of file pages.
///
/// Keys arrive encoded (see KeyEncoder), so that comparing bytes gives the order
/// of the column values; the tree never looks inside a key. Equal keys stand in
/// the order of their row ids.
/// The root keeps its page number for life: a root that is full moves its
/// content down one level instead. The table definition therefore never has to
/// be rewritten because an index grew.
/// Node entries name their child's last entry exactly, as other readers expect.
///
/// Changes need an open transaction; duplicates are the caller's business.
class IndexTree {
public:
    /// `owner` is the definition page of the table. `pager` and `pages` must outlive the tree.
    IndexTree(Pager& pager, PageAllocator& pages, PageNumber owner, PageNumber root,
              RowId ownedMap);

    /// An entry longer than this is refused by the table: two must fit on a page, so that
    /// every page that overflows can be split.
    static constexpr std::size_t kLongestEntry = 1800;

    Pager& File() const { return m_pager; }
    PageNumber Owner() const { return m_owner; }
    PageNumber Root() const { return m_root; }
    RowId OwnedMap() const { return m_owned.Where(); }

    /// Whether an entry with exactly this key exists, for another row than `except`.
    bool HasKey(ByteSpan key, RowId except = {}) const;
    /// Adds `entry` (key and row pointer). Returns whether its key seems to be a
    /// new one: neighbours on the same page are looked at, more is not worth it for a statistic.
    bool Insert(ByteSpan entry);
    /// Returns false when there is no such entry.
    bool Erase(ByteSpan entry);
    /// Erases all entries of a row whose key is not known. Walks the whole tree.
    bool EraseRow(RowId row);

    /// Fills an empty tree from `entries`, sorted and without equals.
    void Build(std::span<const ByteSpan> entries);
    /// All pages of the tree, parents first, with their depth (0 = root). Bears
    /// damage: throws Damaged rather than going round in a circle.
    void ForEachPage(const std::function<void(PageNumber page, int depth)>& visit) const;
    /// Gives all pages but the root back; the root becomes an empty leaf.
    void Clear();

    /// The leaf where `target` stands or would stand.
    PageNumber FindLeaf(ByteSpan target) const;
    PageNumber FirstLeaf() const;
    PageNumber LastLeaf() const;

private:
    /// Pages from the root down.
    using Path = std::vector<PageNumber>;
    Path PathTo(ByteSpan target) const;
    template <typename Choose>
    Path Descend(Choose choose) const;

    IndexNode ReadNode(PageNumber page) const;
    void Store(PageNumber page, const IndexNode& node);
    /// Stores what became of the page at path[depth], in two pages when it is
    /// too large. `appended`: the change was a new last entry of the whole tree.
    void StoreOrSplit(const Path& path, std::size_t depth, IndexNode& node, bool appended);
    void SplitRoot(IndexNode& node, std::size_t at);
    std::size_t SplitPoint(const IndexNode& node, bool appended) const;
    std::pair<IndexNode, IndexNode> Halves(const IndexNode& node, std::size_t at,
                                           Bytes& separator) const;
    /// The last entry below path[depth] is `key` now: tells the ancestor that names it.
    void RenameLast(const Path& path, std::size_t depth, ByteSpan key);
    void RemoveLeaf(const Path& path, const IndexNode& leaf);
    void DropEmptyNode(const Path& path, std::size_t depth, PageNumber onlyChild,
                       const std::optional<Bytes>& lastKey);
    void PullUpRoot();
    void RemovePage(PageNumber page, const IndexNode& node);
    void Link(PageNumber page, bool nextOfPage, PageNumber to);

    PageNumber NewPage();
    void FreePage(PageNumber page);
    [[noreturn]] void Fail(PageNumber page, const char* what) const;

    Pager& m_pager;
    PageAllocator& m_pages;
    PageNumber m_owner;
    PageNumber m_root;
    UsageMap m_owned;
    Bytes m_scratch;
};

/// Walks the entries of a tree in either direction. Changes of the tree
/// are borne: the walk goes on behind (before) the entry it stands on.
class IndexCursor {
public:
    explicit IndexCursor(const IndexTree& tree) : m_tree(&tree) {}

    /// Goes to the first entry >= `target`; false when there is none.
    bool SeekFirst(ByteSpan target);
    /// Goes to the last entry < `target`; false when there is none.
    bool SeekBefore(ByteSpan target);
    bool SeekLast(); ///< the last of all
    bool Next();
    bool Previous();

    /// The whole entry: key and row pointer.
    ByteSpan Entry() const { return m_entry; }
    ByteSpan Key() const { return Entry().first(m_entry.size() - kRowPointerSize); }
    RowId Row() const { return RowOfEntry(m_entry); }

private:
    void Load(PageNumber leaf);
    /// To the first entry of the next leaf that has one; it must be beyond `floor`.
    bool MoveRight(ByteSpan floor);
    bool MoveLeft(ByteSpan ceiling);
    [[noreturn]] void FailOrder() const;
    bool IsStale() const;
    bool Take(std::size_t position);

    const IndexTree* m_tree;
    PageView m_page;
    std::optional<IndexPage> m_leaf;
    std::size_t m_position = 0;
    std::size_t m_after = 0;
    Bytes m_entry;
    std::uint64_t m_changes = 0;
};

} // namespace jet
