// How a tree grows and shrinks: splits, removed pages, and the names that nodes
// keep of the last entries below them.

#include "jet/index/IndexTree.h"

#include "jet/base/ByteOrder.h"

#include <algorithm>
#include <cstdlib>

namespace jet {

/// How many entries go to the left page. Any split is sound whose halves fit;
/// the one nearest to the middle is taken, or, for a tree that only grows at its
/// end, the one that leaves the left page full.
std::size_t IndexTree::SplitPoint(const IndexNode& node, bool appended) const
{
    // The last entry of the left half of a node becomes that half's tail, and a
    // half without any entry is avoided.
    const std::size_t least = node.leaf ? 1 : 2;
    const std::size_t most = node.Count() - 1;
    const auto fits = [&](std::size_t at) {
        return node.StoredSize(0, node.leaf ? at : at - 1) <= kIndexPageCapacity &&
               node.StoredSize(at, node.Count()) <= kIndexPageCapacity;
    };
    if (appended && most >= least && fits(most))
        return most;
    std::size_t best = 0;
    std::int64_t bestDistance = 0;
    for (std::size_t at = least; at <= most; ++at) {
        const std::int64_t distance = std::llabs(2 * static_cast<std::int64_t>(node.starts[at]) -
                                                 static_cast<std::int64_t>(node.bytes.size()));
        if ((best == 0 || distance < bestDistance) && fits(at)) {
            best = at;
            bestDistance = distance;
        }
    }
    if (best == 0)
        Fail(m_root, "een pagina van de index is niet te splitsen");
    return best;
}

std::pair<IndexNode, IndexNode> IndexTree::Halves(const IndexNode& node, std::size_t at,
                                                  Bytes& separator) const
{
    IndexNode left = node.Part(0, node.leaf ? at : at - 1);
    IndexNode right = node.Part(at, node.Count());
    const ByteSpan last = node.leaf ? node.Entry(at - 1) : node.Key(at - 1);
    separator.assign(last.begin(), last.end());
    if (!node.leaf) {
        left.tail = node.Child(at - 1);
        right.tail = node.tail;
    }
    return {std::move(left), std::move(right)};
}

void IndexTree::StoreOrSplit(const Path& path, std::size_t depth, IndexNode& node, bool appended)
{
    const PageNumber page = path[depth];
    if (node.StoredSize(0, node.Count()) <= kIndexPageCapacity) {
        Store(page, node);
        return;
    }
    const std::size_t at = SplitPoint(node, appended);
    if (depth == 0) {
        SplitRoot(node, at);
        return;
    }
    Bytes separator;
    auto [left, right] = Halves(node, at, separator);
    // The half that keeps the page is the one that stays as it was: no more
    // references than needed change.
    const PageNumber fresh = NewPage();
    const PageNumber leftPage = appended ? page : fresh;
    const PageNumber rightPage = appended ? fresh : page;
    const bool linked = node.leaf || node.previous != 0 || node.next != 0;
    if (linked) {
        left.previous = node.previous;
        left.next = rightPage;
        right.previous = leftPage;
        right.next = node.next;
        if (appended)
            Link(node.next, false, rightPage);
        else
            Link(node.previous, true, leftPage);
    }
    Store(leftPage, left);
    Store(rightPage, right);

    IndexNode parent = ReadNode(path[depth - 1]);
    const int reference = parent.FindChild(page);
    if (reference < 0)
        Fail(path[depth - 1], "een knoop van de index noemt zijn kind niet");
    parent.SetChild(static_cast<std::size_t>(reference), rightPage);
    parent.InsertChild(static_cast<std::size_t>(reference), separator, leftPage);
    StoreOrSplit(path, depth - 1, parent, appended);
}

void IndexTree::SplitRoot(IndexNode& node, std::size_t at)
{
    Bytes separator;
    auto [left, right] = Halves(node, at, separator);
    const PageNumber leftPage = NewPage(), rightPage = NewPage();
    if (node.leaf) {
        left.next = rightPage;
        right.previous = leftPage;
    }
    Store(leftPage, left);
    Store(rightPage, right);
    IndexNode root;
    root.leaf = false;
    root.level = node.level + 1;
    root.tail = rightPage;
    root.InsertChild(0, separator, leftPage);
    Store(m_root, root);
}

/// Sets the next (or previous) pointer of `page`, if there is such a page.
void IndexTree::Link(PageNumber page, bool nextOfPage, PageNumber to)
{
    if (page == 0)
        return;
    const PageEdit edit = m_pager.Write(page);
    const IndexPage check(m_pager, page, m_owner, edit.Data());
    const IndexLayout& layout = IndexLayoutOf(FileVersion::Jet4);
    PutU32(edit.Data(), nextOfPage ? layout.next : layout.previous, to);
}

/// Takes a page out of its level and gives it back. Nodes are linked only in
/// trees of some other writers.
void IndexTree::RemovePage(PageNumber page, const IndexNode& node)
{
    Link(node.previous, true, node.next);
    Link(node.next, false, node.previous);
    FreePage(page);
}

void IndexTree::RenameLast(const Path& path, std::size_t depth, ByteSpan key)
{
    for (std::size_t d = depth; d-- > 0;) {
        IndexNode node = ReadNode(path[d]);
        const int reference = node.FindChild(path[d + 1]);
        if (reference < 0)
            Fail(path[d], "een knoop van de index noemt zijn kind niet");
        const auto i = static_cast<std::size_t>(reference);
        if (i == node.Count())
            continue; // the tail has no name here, but may be named further up
        node.Erase(i);
        node.InsertChild(i, key, path[d + 1]);
        StoreOrSplit(path, d, node, false);
        return;
    }
}

void IndexTree::RemoveLeaf(const Path& path, const IndexNode& leaf)
{
    // Upwards past nodes that had this child only.
    std::size_t d = path.size() - 1;
    IndexNode parent;
    int reference = -1;
    RemovePage(path[d], leaf);
    while (true) {
        --d;
        parent = ReadNode(path[d]);
        reference = parent.FindChild(path[d + 1]);
        if (reference < 0)
            Fail(path[d], "een knoop van de index noemt zijn kind niet");
        if (parent.Count() > 0)
            break;
        if (d == 0) { // nothing is left
            Store(m_root, IndexNode());
            return;
        }
        RemovePage(path[d], parent);
    }

    std::optional<Bytes> lastKey; // set when the last entry below `parent` is another one now
    if (static_cast<std::size_t>(reference) == parent.Count()) {
        const ByteSpan key = parent.Key(parent.Count() - 1);
        lastKey = Bytes(key.begin(), key.end());
        parent.tail = parent.Child(parent.Count() - 1);
        parent.Erase(parent.Count() - 1);
    } else {
        parent.Erase(static_cast<std::size_t>(reference));
    }
    Store(path[d], parent);
    if (parent.Count() > 0) {
        if (lastKey)
            RenameLast(path, d, *lastKey);
    } else if (d == 0) {
        PullUpRoot();
    } else {
        DropEmptyNode(path, d, parent.tail, lastKey);
    }
}

/// The node at path[depth] has one child left and no entry: the child moves to a
/// sibling, so that every node keeps an entry and all leaves stay equally deep.
void IndexTree::DropEmptyNode(const Path& path, std::size_t depth, PageNumber onlyChild,
                              const std::optional<Bytes>& lastKey)
{
    IndexNode parent = ReadNode(path[depth - 1]);
    const int reference = parent.FindChild(path[depth]);
    if (reference < 0)
        Fail(path[depth - 1], "een knoop van de index noemt zijn kind niet");
    const auto i = static_cast<std::size_t>(reference);
    if (parent.Count() == 0)
        return; // a lone chain of nodes, as another program may have left it: sound as it is

    IndexNode sibling;
    PageNumber siblingPage = 0;
    Bytes target; // leads to the sibling, whatever else changes
    if (i < parent.Count()) {
        const ByteSpan named = parent.Key(i);
        const Bytes key = lastKey ? *lastKey : Bytes(named.begin(), named.end());
        siblingPage = parent.Child(i + 1);
        sibling = ReadNode(siblingPage);
        sibling.InsertChild(0, key, onlyChild);
        target = key;
        parent.Erase(i);
    } else {
        const ByteSpan named = parent.Key(i - 1);
        target.assign(named.begin(), named.end());
        siblingPage = parent.Child(i - 1);
        sibling = ReadNode(siblingPage);
        sibling.InsertChild(sibling.Count(), target, sibling.tail);
        sibling.tail = onlyChild;
        parent.Erase(i - 1);
        parent.tail = siblingPage;
    }
    RemovePage(path[depth], ReadNode(path[depth]));
    Store(path[depth - 1], parent);
    const bool lastChanged = i == parent.Count() + 1 && lastKey.has_value();
    if (lastChanged)
        RenameLast(path, depth - 1, *lastKey);

    // The renaming may have split pages above: find the way anew.
    const Path now = PathTo(target);
    const auto place = std::find(now.begin(), now.end(), siblingPage);
    if (place == now.end())
        Fail(siblingPage, "een knoop van de index is niet te vinden");
    StoreOrSplit(now, static_cast<std::size_t>(place - now.begin()), sibling, false);

    // The parent has lost a child itself.
    const Path after = PathTo(target);
    const auto parentPlace = std::find(after.begin(), after.end(), path[depth - 1]);
    if (parentPlace == after.end())
        return;
    const auto parentDepth = static_cast<std::size_t>(parentPlace - after.begin());
    const IndexNode left = ReadNode(after[parentDepth]);
    if (left.leaf || left.Count() > 0)
        return;
    if (parentDepth == 0)
        PullUpRoot();
    else
        DropEmptyNode(after, parentDepth, left.tail, std::nullopt);
}

/// While the root has one child and no entry, the child takes its place.
void IndexTree::PullUpRoot()
{
    for (IndexNode root = ReadNode(m_root); !root.leaf && root.Count() == 0;) {
        const PageNumber child = root.tail;
        root = ReadNode(child);
        root.previous = 0;
        root.next = 0;
        Store(m_root, root);
        FreePage(child);
    }
}

} // namespace jet
