#include "ScratchTable.h"
#include "TreeCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

using namespace jet;

namespace {

struct Less {
    bool operator()(const Bytes& a, const Bytes& b) const { return CompareBytes(a, b) < 0; }
};
using Model = std::set<Bytes, Less>;

/// An empty tree in a file of its own. The transaction stays open.
struct TreeFile {
    ScratchFile file;
    IndexTree tree;

    TreeFile() : tree(Make(file)) {}

    static IndexTree Make(ScratchFile& file)
    {
        file.Pager().Begin();
        const PageNumber owner = file.Pages().Allocate().Number();
        const RowId map = file.Pages().AllocateMap();
        const PageEdit root = file.Pages().Allocate();
        FormatLeaf(root, owner);
        UsageMap(file.Pager(), map).Add(root.Number());
        return IndexTree(file.Pager(), file.Pages(), owner, root.Number(), map);
    }
};

Bytes Entry(std::string_view key, std::uint32_t row)
{
    Bytes entry;
    for (const char c : key)
        entry.push_back(static_cast<std::byte>(c));
    entry.push_back(std::byte{0}); // as in real keys no key is the beginning of another one
    AppendRowPointer({row >> 8, static_cast<std::uint8_t>(row)}, entry);
    return entry;
}

Bytes NumberEntry(std::uint32_t number)
{
    Bytes entry{std::byte{0x7F}};
    for (int shift = 24; shift >= 0; shift -= 8)
        entry.push_back(static_cast<std::byte>(number >> shift));
    AppendRowPointer({20 + number / 100, static_cast<std::uint8_t>(number % 100)}, entry);
    return entry;
}

void ExpectHolds(const IndexTree& tree, const Model& model, int* depth = nullptr)
{
    const std::vector<Bytes> found = ExpectSoundTree(tree, false, depth);
    EXPECT_TRUE(std::ranges::equal(found, model));
}

/// Random inserts and erasures against a set; `entryOf` makes the entry of a number.
template <typename EntryOf>
int PlayAgainstModel(unsigned seed, int steps, int range, EntryOf entryOf)
{
    TreeFile t;
    Model model;
    std::mt19937 random(seed);
    int deepest = 0;
    for (int step = 0; step < steps; ++step) {
        // Grows in the first half, shrinks to nothing in the second.
        const bool insert = random() % 100 < (step < steps / 2 ? 70u : 25u);
        if (insert || model.empty()) {
            const Bytes entry = entryOf(random() % static_cast<unsigned>(range));
            t.tree.Insert(entry);
            model.insert(entry);
        } else {
            auto victim = model.lower_bound(entryOf(random() % static_cast<unsigned>(range)));
            if (victim == model.end())
                victim = std::prev(model.end());
            EXPECT_TRUE(t.tree.Erase(*victim));
            model.erase(victim);
        }
        if (step % 250 == 0) {
            int depth = 0;
            ExpectHolds(t.tree, model, &depth);
            deepest = std::max(deepest, depth);
            if (testing::Test::HasFailure())
                return deepest;
        }
    }
    while (!model.empty()) {
        auto victim = model.lower_bound(entryOf(random() % static_cast<unsigned>(range)));
        if (victim == model.end())
            victim = std::prev(model.end());
        EXPECT_TRUE(t.tree.Erase(*victim));
        model.erase(victim);
        if (model.size() % 250 == 0)
            ExpectHolds(t.tree, model);
    }
    ExpectHolds(t.tree, model);
    return deepest;
}

} // namespace

TEST(IndexTreeTest, AnEmptyTreeHasNothing)
{
    TreeFile t;
    ExpectHolds(t.tree, {});
    EXPECT_FALSE(t.tree.Erase(NumberEntry(1)));
    IndexCursor cursor(t.tree);
    EXPECT_FALSE(cursor.SeekFirst({}));
    EXPECT_FALSE(cursor.SeekLast());
}

TEST(IndexTreeTest, RisingEntriesFillTheirPages)
{
    TreeFile t;
    Model model;
    for (std::uint32_t i = 0; i < 20000; ++i) {
        t.tree.Insert(NumberEntry(i));
        model.insert(NumberEntry(i));
    }
    ExpectHolds(t.tree, model);
    int pages = 0;
    t.tree.ForEachPage([&](PageNumber, int) { ++pages; });
    // Nine bytes each, five after the common prefix: over 400 fit on a page.
    EXPECT_LT(pages, 20000 / 400 + 3);
}

TEST(IndexTreeTest, FallingEntriesKeepTheTreeSound)
{
    TreeFile t;
    Model model;
    for (std::uint32_t i = 12000; i-- > 0;) {
        t.tree.Insert(NumberEntry(i));
        model.insert(NumberEntry(i));
    }
    ExpectHolds(t.tree, model);
    for (std::uint32_t i = 0; i < 12000; ++i) {
        EXPECT_TRUE(t.tree.Erase(NumberEntry(i)));
        model.erase(NumberEntry(i));
        if (i % 1000 == 0)
            ExpectHolds(t.tree, model);
    }
    ExpectHolds(t.tree, {});
}

TEST(IndexTreeTest, ErasingFromTheEndKeepsTheTreeSound)
{
    TreeFile t;
    Model model;
    for (std::uint32_t i = 0; i < 9000; ++i) {
        t.tree.Insert(NumberEntry(i));
        model.insert(NumberEntry(i));
    }
    for (std::uint32_t i = 9000; i-- > 0;) {
        EXPECT_TRUE(t.tree.Erase(NumberEntry(i)));
        model.erase(NumberEntry(i));
        if (i % 700 == 0)
            ExpectHolds(t.tree, model);
    }
    ExpectHolds(t.tree, {});
}

TEST(IndexTreeTest, RandomNumbersAgreeWithAModel)
{
    for (unsigned seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(seed);
        PlayAgainstModel(seed, 12000, 20000, [](unsigned n) { return NumberEntry(n); });
    }
}

// Long keys make a small tree deep: four levels and more.
TEST(IndexTreeTest, LongKeysOfAllLengthsAgreeWithAModel)
{
    int deepest = 0;
    for (unsigned seed = 10; seed <= 14; ++seed) {
        SCOPED_TRACE(seed);
        deepest = std::max(deepest, PlayAgainstModel(seed, 6000, 4000, [](unsigned n) {
                               std::mt19937 random(n);
                               std::string key = std::to_string(random() % 1000);
                               key.append(random() % 700, static_cast<char>('a' + random() % 3));
                               return Entry(key, n);
                           }));
    }
    EXPECT_GE(deepest, 4);
}

// Entries that share a long prefix and some that do not: a page that is laid out with a
// long prefix has to be cut where the stranger comes in.
TEST(IndexTreeTest, LongCommonPrefixesAgreeWithAModel)
{
    int deepest = 0;
    for (unsigned seed = 20; seed <= 23; ++seed) {
        SCOPED_TRACE(seed);
        deepest = std::max(deepest, PlayAgainstModel(seed, 8000, 6000, [](unsigned n) {
                               const std::string prefix(n % 7 == 0 ? 1 + n % 400 : 500, 'p');
                               return Entry(prefix + std::to_string(n), n);
                           }));
    }
    EXPECT_GE(deepest, 3);
}

TEST(IndexTreeTest, TheLongestEntriesCanBeSplit)
{
    PlayAgainstModel(31, 1500, 3000, [](unsigned n) {
        std::string key = std::to_string(100000 + n);
        key.append(IndexTree::kLongestEntry - 5 - key.size() - (n % 3 == 0 ? n % 1700 : 0), 'x');
        return Entry(key, n);
    });
}

TEST(IndexTreeTest, EqualKeysStandInTheOrderOfTheirRows)
{
    TreeFile t;
    Model model;
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i) {
        const Bytes entry = Entry("same", 6000 + random() % 100000);
        const bool fresh = model.insert(entry).second;
        EXPECT_EQ(t.tree.Insert(entry), fresh && model.size() == 1);
    }
    ExpectHolds(t.tree, model);
    EXPECT_TRUE(t.tree.HasKey(Bytes(model.begin()->begin(), model.begin()->end() - 4)));
    for (const Bytes& entry : model)
        EXPECT_TRUE(t.tree.Erase(entry));
    ExpectHolds(t.tree, {});
}

TEST(IndexTreeTest, HasKeyLooksPastTheRowThatIsExcepted)
{
    TreeFile t;
    const Bytes one = Entry("k", 300), two = Entry("k", 301);
    const ByteSpan key = ByteSpan(one).first(one.size() - 4);
    t.tree.Insert(one);
    EXPECT_TRUE(t.tree.HasKey(key));
    EXPECT_FALSE(t.tree.HasKey(key, RowOfEntry(one)));
    t.tree.Insert(two);
    EXPECT_TRUE(t.tree.HasKey(key, RowOfEntry(one)));
    EXPECT_TRUE(t.tree.HasKey(key, RowOfEntry(two)));
    EXPECT_FALSE(t.tree.HasKey(ByteSpan(one).first(1)));
}

TEST(IndexTreeTest, TreesBuiltFromSortedEntriesAreSound)
{
    for (const std::size_t count : {0u, 1u, 2u, 3u, 300u, 361u, 362u, 1000u, 70000u}) {
        SCOPED_TRACE(count);
        TreeFile t;
        Model model;
        for (std::uint32_t i = 0; i < count; ++i)
            model.insert(NumberEntry(i * 3));
        std::vector<ByteSpan> entries(model.begin(), model.end());
        t.tree.Build(entries);
        ExpectHolds(t.tree, model);
    }
}

TEST(IndexTreeTest, BuiltTreesOfLongKeysAreSoundAndCanBeChanged)
{
    for (unsigned count = 1; count < 90; ++count) {
        SCOPED_TRACE(count);
        TreeFile t;
        Model model;
        std::mt19937 random(count);
        while (model.size() < count)
            model.insert(
                Entry(std::string(1 + random() % 3, 'a') + std::string(1000 + random() % 790, 'b'),
                      random() % 100000));
        std::vector<ByteSpan> entries(model.begin(), model.end());
        t.tree.Build(entries);
        ExpectHolds(t.tree, model);
        while (!model.empty()) {
            const auto victim =
                std::next(model.begin(), static_cast<std::ptrdiff_t>(random() % model.size()));
            EXPECT_TRUE(t.tree.Erase(*victim));
            model.erase(victim);
        }
        ExpectHolds(t.tree, model);
    }
}

TEST(IndexTreeTest, ErasedAndClearedTreesGiveTheirPagesBack)
{
    TreeFile t;
    const std::size_t before = CountPagesInUse(t.file);
    for (std::uint32_t i = 0; i < 5000; ++i)
        t.tree.Insert(NumberEntry(i));
    EXPECT_GT(CountPagesInUse(t.file), before + 5);
    for (std::uint32_t i = 0; i < 5000; ++i)
        t.tree.Erase(NumberEntry(i));
    EXPECT_EQ(CountPagesInUse(t.file), before);
    for (std::uint32_t i = 0; i < 5000; ++i)
        t.tree.Insert(NumberEntry(i));
    t.tree.Clear();
    EXPECT_EQ(CountPagesInUse(t.file), before);
    ExpectHolds(t.tree, {});
}

TEST(IndexTreeTest, ARowWhoseKeyIsUnknownIsFoundByItsId)
{
    TreeFile t;
    Model model;
    for (std::uint32_t i = 0; i < 3000; ++i) {
        t.tree.Insert(NumberEntry(i));
        model.insert(NumberEntry(i));
    }
    const RowId row = RowOfEntry(NumberEntry(1234));
    EXPECT_TRUE(t.tree.EraseRow(row));
    model.erase(NumberEntry(1234));
    ExpectHolds(t.tree, model);
    EXPECT_FALSE(t.tree.EraseRow(row));
}

TEST(IndexTreeTest, ACursorGoesOnBehindWhereItWasWhenTheTreeChanges)
{
    TreeFile t;
    for (std::uint32_t i = 0; i < 4000; i += 2)
        t.tree.Insert(NumberEntry(i));
    IndexCursor forwards(t.tree);
    std::uint32_t expected = 0;
    for (bool found = forwards.SeekFirst({}); found; found = forwards.Next()) {
        const Bytes here(forwards.Entry().begin(), forwards.Entry().end());
        ASSERT_EQ(here, NumberEntry(expected));
        if (expected % 2 == 0)
            t.tree.Insert(NumberEntry(expected + 1)); // met next
        if (expected > 0)
            t.tree.Erase(NumberEntry(expected - 1));
        t.tree.Erase(here); // what it stands on
        ++expected;
    }
    EXPECT_EQ(expected, 4000u);

    for (std::uint32_t i = 0; i < 3000; ++i)
        t.tree.Insert(NumberEntry(i));
    IndexCursor backwards(t.tree);
    std::uint32_t left = 4000;
    for (bool found = backwards.SeekLast(); found; found = backwards.Previous()) {
        const Bytes here(backwards.Entry().begin(), backwards.Entry().end());
        t.tree.Erase(here);
        --left;
        if (left > 3000)
            left = 2999;
        ASSERT_EQ(here, NumberEntry(left));
    }
    EXPECT_EQ(left, 0u);
}
