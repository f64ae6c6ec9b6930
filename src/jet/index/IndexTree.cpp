#include "jet/index/IndexTree.h"

#include "jet/storage/Faults.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t kDeepest = 24; // a sound tree of 2 GB is far less deep

} // namespace

IndexTree::IndexTree(Pager& pager, PageAllocator& pages, PageNumber owner, PageNumber root,
                     RowId ownedMap)
    : m_pager(pager), m_pages(pages), m_owner(owner), m_root(root), m_owned(pager, ownedMap)
{}

template <typename Choose>
IndexTree::Path IndexTree::Descend(Choose choose) const
{
    Path path;
    path.reserve(8);
    for (PageNumber number = m_root;;) {
        path.push_back(number);
        if (path.size() > kDeepest)
            Fail(number, "de boom van de index heeft geen einde");
        const PageView view = m_pager.Read(number);
        const IndexPage page(m_pager, number, m_owner, view.Data());
        if (page.IsLeaf())
            return path;
        number = choose(page);
    }
}

IndexTree::Path IndexTree::PathTo(ByteSpan target) const
{
    return Descend([&](const IndexPage& page) { return page.ChildFor(page.LowerBound(target)); });
}

PageNumber IndexTree::FindLeaf(ByteSpan target) const
{
    PageNumber number = m_root;
    for (std::size_t depth = 0; depth < kDeepest; ++depth) {
        const PageView view = m_pager.Read(number);
        const IndexPage page(m_pager, number, m_owner, view.Data());
        if (page.IsLeaf())
            return number;
        number = page.ChildFor(page.LowerBound(target));
    }
    Fail(number, "de boom van de index heeft geen einde");
}

PageNumber IndexTree::FirstLeaf() const
{
    return Descend([](const IndexPage& page) { return page.ChildFor(0); }).back();
}

PageNumber IndexTree::LastLeaf() const
{
    return Descend([](const IndexPage& page) { return page.ChildFor(page.End()); }).back();
}

bool IndexTree::HasKey(ByteSpan key, RowId except) const
{
    // Nearly always the answer lies inside the leaf where the key belongs.
    {
        const PageNumber number = FindLeaf(key);
        const PageView view = m_pager.Read(number);
        const IndexPage page(m_pager, number, m_owner, view.Data());
        const std::size_t at = page.LowerBound(key);
        if (at < page.End()) {
            Bytes entry;
            page.CopyEntry(at, entry);
            const bool equal = entry.size() == key.size() + kRowPointerSize &&
                               std::equal(key.begin(), key.end(), entry.begin());
            if (!equal)
                return false;
            if (RowOfEntry(entry) != except)
                return true;
        }
    }
    IndexCursor cursor(*this);
    for (bool found = cursor.SeekFirst(key); found; found = cursor.Next()) {
        if (!std::ranges::equal(cursor.Key(), key))
            return false;
        if (cursor.Row() != except)
            return true;
    }
    return false;
}

bool IndexTree::Insert(ByteSpan entry)
{
    const Path path = PathTo(entry);
    const PageNumber leaf = path.back();
    bool distinct = true;
    bool last = false;
    {
        const PageEdit edit = m_pager.Write(leaf);
        const IndexPage page(m_pager, leaf, m_owner, edit.Data());
        const std::size_t at = page.LowerBound(entry);
        const ByteSpan key = entry.first(entry.size() - kRowPointerSize);
        const auto hasKey = [&](std::size_t position) {
            page.CopyEntry(position, m_scratch);
            return std::ranges::equal(ByteSpan(m_scratch).first(m_scratch.size() - kRowPointerSize),
                                      key);
        };
        last = at == page.End();
        if (!last && hasKey(at)) {
            distinct = false;
            if (std::ranges::equal(m_scratch, entry))
                return false; // it is there already
        }
        if (at > 0 && distinct && hasKey(page.Before(at)))
            distinct = false;
        if (IndexPageEdit::Insert(page, edit, at, entry))
            return distinct;
    }
    IndexNode node = ReadNode(leaf);
    std::size_t i = 0;
    while (i < node.Count() && CompareBytes(node.Entry(i), entry) < 0)
        ++i;
    node.Insert(i, entry);
    StoreOrSplit(path, path.size() - 1, node, last && node.next == 0);
    return distinct;
}

bool IndexTree::Erase(ByteSpan entry)
{
    const Path path = PathTo(entry);
    const PageNumber leaf = path.back();
    bool last = false;
    {
        const PageView view = m_pager.Read(leaf);
        const IndexPage page(m_pager, leaf, m_owner, view.Data());
        const std::size_t at = page.LowerBound(entry);
        if (at == page.End())
            return false;
        page.CopyEntry(at, m_scratch);
        if (!std::ranges::equal(m_scratch, entry))
            return false;
        last = page.After(at) == page.End();
        const PageEdit edit = m_pager.Write(leaf);
        IndexPageEdit::Erase(IndexPage(m_pager, leaf, m_owner, edit.Data()), edit, at);
    }
    if (!last || path.size() == 1)
        return true;
    const IndexNode node = ReadNode(leaf);
    if (node.Count() == 0)
        RemoveLeaf(path, node);
    else
        RenameLast(path, path.size() - 1, node.Entry(node.Count() - 1));
    return true;
}

bool IndexTree::EraseRow(RowId row)
{
    bool erased = false;
    IndexCursor cursor(*this);
    for (bool found = cursor.SeekFirst({}); found; found = cursor.Next()) {
        if (cursor.Row() == row) {
            const Bytes entry(cursor.Entry().begin(), cursor.Entry().end());
            erased = Erase(entry) || erased;
        }
    }
    return erased;
}

IndexNode IndexTree::ReadNode(PageNumber page) const
{
    return IndexNode::Read(m_pager, page, m_owner);
}

void IndexTree::Store(PageNumber page, const IndexNode& node)
{
    node.Write(m_pager.Write(page), m_owner);
}

PageNumber IndexTree::NewPage()
{
    const PageNumber page = m_pages.Allocate().Number();
    if (m_owned.Where().page != 0)
        m_owned.Add(page);
    return page;
}

void IndexTree::FreePage(PageNumber page)
{
    if (m_owned.Where().page != 0)
        m_owned.Remove(page);
    m_pages.Free(page);
}

void IndexTree::Fail(PageNumber page, const char* what) const
{
    ThrowDamaged(m_pager, page, what);
}

} // namespace jet
