// Whole trees: filled from sorted entries, walked, and taken apart.

#include "jet/index/IndexTree.h"

#include "jet/base/ByteOrder.h"

#include <algorithm>
#include <unordered_set>

namespace jet {

namespace {

// Pages of a new tree are filled to nine tenths, so that it does not split all over at once.
constexpr std::size_t kFilled = kIndexPageCapacity * 9 / 10;

struct Built {
    PageNumber page;
    Bytes lastKey;
};

/// Adds an entry at the end, unless that would overfill the page.
bool Append(IndexNode& node, ByteSpan entry)
{
    node.Insert(node.Count(), entry);
    if (node.Count() <= 2 || node.StoredSize(0, node.Count()) <= kFilled)
        return true;
    node.Erase(node.Count() - 1);
    return false;
}

} // namespace

void IndexTree::Build(std::span<const ByteSpan> entries)
{
    // Leaves first. The page of a full one is known only when the next is
    // started: one that stays alone becomes the root itself.
    std::vector<Built> level;
    IndexNode node;
    PageNumber page = 0;
    const auto finishLeaf = [&](PageNumber next) {
        node.next = next;
        Store(page, node);
        const ByteSpan last = node.Entry(node.Count() - 1);
        level.push_back({page, Bytes(last.begin(), last.end())});
    };
    for (const ByteSpan entry : entries) {
        if (Append(node, entry))
            continue;
        if (page == 0)
            page = NewPage();
        const PageNumber next = NewPage();
        finishLeaf(next);
        node = IndexNode();
        node.previous = page;
        page = next;
        Append(node, entry);
    }
    if (level.empty()) {
        Store(m_root, node);
        return;
    }
    finishLeaf(0);

    for (int depth = 1;; ++depth) {
        std::vector<IndexNode> nodes;
        std::vector<Bytes> lastKeys;
        Bytes entry;
        for (std::size_t i = 0; i < level.size(); ++i) {
            if (nodes.size() == lastKeys.size()) {
                nodes.emplace_back();
                nodes.back().leaf = false;
                nodes.back().level = depth;
            }
            entry = level[i].lastKey;
            entry.resize(entry.size() + kChildSize);
            PutU32BigEndian(entry, entry.size() - kChildSize, level[i].page);
            // The last child of a node has no entry of its own.
            if (i + 1 == level.size() || !Append(nodes.back(), entry)) {
                nodes.back().tail = level[i].page;
                lastKeys.push_back(std::move(level[i].lastKey));
            }
        }
        if (nodes.size() > 1 && nodes.back().Count() == 0) {
            // Nor is a child left alone: it gets the last one of the node before as company.
            IndexNode& before = nodes[nodes.size() - 2];
            Bytes& beforeLast = lastKeys[nodes.size() - 2];
            nodes.back().InsertChild(0, beforeLast, before.tail);
            const std::size_t last = before.Count() - 1;
            beforeLast.assign(before.Key(last).begin(), before.Key(last).end());
            before.tail = before.Child(last);
            before.Erase(last);
        }
        if (nodes.size() == 1) {
            Store(m_root, nodes.front());
            return;
        }
        std::vector<Built> above;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const PageNumber nodePage = NewPage();
            Store(nodePage, nodes[i]);
            above.push_back({nodePage, std::move(lastKeys[i])});
        }
        level = std::move(above);
    }
}

void IndexTree::ForEachPage(const std::function<void(PageNumber, int)>& visit) const
{
    std::vector<std::pair<PageNumber, int>> waiting{{m_root, 0}};
    std::unordered_set<PageNumber> seen{m_root};
    while (!waiting.empty()) {
        const auto [number, depth] = waiting.back();
        waiting.pop_back();
        std::vector<PageNumber> children;
        {
            const PageView view = m_pager.Read(number);
            const IndexPage page(m_pager, number, m_owner, view.Data());
            if (!page.IsLeaf()) {
                for (std::size_t at = 0; at < page.End(); at = page.After(at))
                    children.push_back(page.ChildAt(at));
                if (page.Tail() != 0)
                    children.push_back(page.Tail());
            }
        }
        visit(number, depth);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            if (!seen.insert(*child).second)
                Fail(*child, "de boom van de index komt hier twee keer");
            waiting.emplace_back(*child, depth + 1);
        }
    }
}

void IndexTree::Clear()
{
    std::vector<PageNumber> pages;
    ForEachPage([&](PageNumber page, int) { pages.push_back(page); });
    for (const PageNumber page : pages) {
        if (page != m_root)
            FreePage(page);
    }
    FormatLeaf(m_pager.Write(m_root), m_owner);
}

} // namespace jet
