#include "TreeCheck.h"

#include "jet/table/TableChange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace jet;

namespace {

class Examiner {
public:
    Examiner(const IndexTree& tree, bool lenient) : m_tree(tree), m_lenient(lenient) {}

    /// Returns the last entry below `number` (leaf entry).
    Bytes Visit(PageNumber number, int depth)
    {
        SCOPED_TRACE("page " + std::to_string(number));
        if (!m_seen.insert(number).second) {
            ADD_FAILURE() << "met twice";
            return {};
        }
        Pager& pager = m_tree.File();
        if (m_tree.OwnedMap().page != 0) {
            EXPECT_TRUE(UsageMap(pager, m_tree.OwnedMap()).Contains(number));
        }
        const PageView view = pager.Read(number);
        const IndexPage page(pager, number, m_tree.Owner(), view.Data());
        std::vector<Bytes> entries;
        std::vector<PageNumber> children;
        for (std::size_t at = 0; at < page.End(); at = page.After(at)) {
            Bytes entry;
            page.CopyEntry(at, entry);
            if (!page.IsLeaf()) {
                children.push_back(page.ChildAt(at));
                entry.resize(entry.size() - kChildSize);
            }
            entries.push_back(std::move(entry));
        }
        EXPECT_EQ(page.FreeField(), IndexLayoutOf(pager.Version()).capacity - page.End());
        EXPECT_TRUE(std::ranges::is_sorted(
            entries, [](const Bytes& a, const Bytes& b) { return CompareBytes(a, b) < 0; }));
        m_depth = std::max(m_depth, depth);
        if (page.IsLeaf()) {
            EXPECT_EQ(page.Level(), 0);
            m_leaves.push_back({number, page.Previous(), page.Next()});
            m_leafDepths.insert(depth);
            EXPECT_TRUE(depth == 0 || !entries.empty()) << "an empty leaf";
            m_entries.insert(m_entries.end(), entries.begin(), entries.end());
            return entries.empty() ? Bytes() : entries.back();
        }
        if (!m_lenient) {
            EXPECT_GT(page.Level(), 0);
            EXPECT_NE(page.Tail(), 0u);
            EXPECT_FALSE(entries.empty()) << "a node with its tail alone";
            EXPECT_EQ(page.Previous(), 0u);
            EXPECT_EQ(page.Next(), 0u);
        }
        Bytes last;
        for (std::size_t i = 0; i < children.size(); ++i) {
            last = Visit(children[i], depth + 1);
            EXPECT_EQ(entries[i], last) << "entry " << i << " does not name its child's last";
        }
        if (page.Tail() != 0)
            last = Visit(page.Tail(), depth + 1);
        return last;
    }

    std::vector<Bytes> Finish(int* depth)
    {
        EXPECT_EQ(m_leafDepths.size(), 1u) << "leaves are not equally deep";
        for (std::size_t i = 0; i < m_leaves.size(); ++i) {
            EXPECT_EQ(m_leaves[i].previous, i == 0 ? 0 : m_leaves[i - 1].page);
            EXPECT_EQ(m_leaves[i].next, i + 1 == m_leaves.size() ? 0 : m_leaves[i + 1].page);
        }
        EXPECT_TRUE(std::ranges::is_sorted(
            m_entries, [](const Bytes& a, const Bytes& b) { return CompareBytes(a, b) < 0; }));
        if (depth != nullptr)
            *depth = m_depth + 1;
        if (!m_lenient && m_tree.OwnedMap().page != 0) {
            const UsageMap owned(m_tree.File(), m_tree.OwnedMap());
            std::set<PageNumber> inMap;
            for (PageNumber p = owned.NextFrom(1); p != 0; p = owned.NextFrom(p + 1))
                inMap.insert(p);
            EXPECT_EQ(inMap, m_seen);
        }
        return std::move(m_entries);
    }

private:
    struct Leaf {
        PageNumber page, previous, next;
    };
    const IndexTree& m_tree;
    bool m_lenient;
    std::set<PageNumber> m_seen;
    std::vector<Leaf> m_leaves;
    std::set<int> m_leafDepths;
    std::vector<Bytes> m_entries;
    int m_depth = 0;
};

} // namespace

std::vector<Bytes> ExpectSoundTree(const IndexTree& tree, bool lenient, int* depth)
{
    Examiner examiner(tree, lenient);
    examiner.Visit(tree.Root(), 0);
    return examiner.Finish(depth);
}

int ExpectIndexesMatchRows(const Table& table)
{
    const TableParts& parts = table.Internals();
    int compared = 0;
    for (std::size_t i = 0; i < parts.trees.size(); ++i) {
        const PhysicalIndex& index = parts.definition.physicalIndexes[i];
        SCOPED_TRACE("index " + parts.definition.NameOfPhysical(static_cast<int>(i)));
        std::vector<Bytes> expected;
        for (TableScan scan(table); scan.Next();) {
            Bytes entry;
            bool allNull = true;
            for (const IndexColumn& part : index.columns) {
                const Column& column =
                    parts.definition.columns[static_cast<std::size_t>(part.column)];
                const Value value = scan.Get(part.column);
                allNull = allNull && value.IsNull();
                EXPECT_TRUE(
                    AppendColumnKey(value, column, part.ascending, parts.pager.Version(), entry));
            }
            if (allNull && index.ignoreNulls)
                continue;
            AppendRowPointer(scan.Id(), entry);
            expected.push_back(std::move(entry));
        }
        std::ranges::sort(expected,
                          [](const Bytes& a, const Bytes& b) { return CompareBytes(a, b) < 0; });
        const std::vector<Bytes> found = ExpectSoundTree(parts.trees[i], true);
        EXPECT_EQ(found, expected);
        compared += static_cast<int>(found.size());

        std::vector<RowId> forwards, backwards;
        for (IndexScan scan(table, static_cast<int>(i), {}); scan.Next();)
            forwards.push_back(scan.Id());
        for (IndexScan scan(table, static_cast<int>(i), {}, true); scan.Next();)
            backwards.push_back(scan.Id());
        std::ranges::reverse(backwards);
        EXPECT_EQ(forwards.size(), found.size());
        EXPECT_EQ(forwards, backwards);
    }
    return compared;
}
