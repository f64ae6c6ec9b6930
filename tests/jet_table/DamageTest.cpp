#include "MemoryFileSystem.h"
#include "SampleFile.h"

#include "jet/base/Error.h"
#include "jet/table/TableInternals.h"

#include <gtest/gtest.h>

#include <random>

using namespace jet;

namespace {

/// Bytes of any pages but the header are changed: single ones, runs, whole words.
void Damage(Bytes& file, std::size_t pageSize, std::mt19937& random)
{
    const auto at = [&] { return pageSize + random() % (file.size() - pageSize - 8); };
    for (unsigned count = 1 + random() % 20; count > 0; --count) {
        switch (random() % 4) {
        case 0:
            file[at()] ^= static_cast<std::byte>(1u << random() % 8);
            break;
        case 1:
            file[at()] = static_cast<std::byte>(random());
            break;
        case 2: { // the front of a page, where its numbers stand
            const std::size_t page = 1 + random() % (file.size() / pageSize - 1);
            file[page * pageSize + random() % 64] = static_cast<std::byte>(random());
            break;
        }
        default: {
            const std::size_t start = at();
            for (std::size_t i = 0; i < 4; ++i)
                file[start + i] =
                    random() % 2 == 0 ? std::byte{0xFF} : static_cast<std::byte>(random() % 40);
        }
        }
    }
}

struct Outcome {
    int read = 0;    ///< operations that went well
    int refused = 0; ///< those that told the damage
};

template <typename Operation>
void Try(Outcome& outcome, Operation operation)
{
    try {
        operation();
        ++outcome.read;
    } catch (const Error& error) {
        // Damage may show as a value that no longer fits as well.
        EXPECT_NE(std::string(error.what()), "");
        ++outcome.refused;
    }
}

void ReadEverything(Pager& pager, PageAllocator& pages, PageNumber page, Outcome& outcome)
{
    Try(outcome, [&] {
        Table table(pager, pages, "T", ReadTableDefinition(pager, page));
        Try(outcome, [&] {
            for (TableScan scan(table); scan.Next();) {
                for (std::size_t i = 0; i < table.Definition().columns.size(); ++i)
                    Try(outcome, [&] { (void)scan.Get(static_cast<int>(i)); });
            }
        });
        Try(outcome, [&] { (void)table.RowCount(); });
        for (int i = 0; i < static_cast<int>(table.Definition().physicalIndexes.size()); ++i) {
            for (const bool backwards : {false, true}) {
                Try(outcome, [&] {
                    for (IndexScan scan(table, i, {}, backwards); scan.Next();)
                        (void)table.Exists(scan.Id());
                });
            }
            Try(outcome, [&] {
                table.Internals().trees[static_cast<std::size_t>(i)].ForEachPage(
                    [](PageNumber, int) {});
            });
        }
    });
}

/// Changes made to a damaged file may fail, and may do what the damage says, but
/// must end.
void ChangeAndRollBack(Pager& pager, PageAllocator& pages, PageNumber page, Outcome& outcome,
                       std::mt19937& random)
{
    pager.Begin();
    Try(outcome, [&] {
        Table table(pager, pages, "T", ReadTableDefinition(pager, page));
        std::vector<RowId> rows;
        for (TableScan scan(table); scan.Next() && rows.size() < 50;)
            rows.push_back(scan.Id());
        for (const RowId id : rows) {
            Row row = table.GetRow(id);
            if (random() % 2 == 0)
                table.Delete(id);
            std::vector<Table::Change> changes;
            for (std::size_t i = 0; i < row.size(); ++i) {
                if (table.Definition().columns[i].IsText())
                    changes.push_back({static_cast<int>(i), std::string(random() % 50, 'x')});
            }
            if (random() % 2 == 0 && table.Exists(id))
                table.Update(id, changes);
            table.Insert(row);
        }
    });
    pager.Rollback();
}

} // namespace

TEST(DamageTest, DamagedFilesAreReadAndChangedWithoutCrashOrHang)
{
    std::mt19937 random(2024);
    Outcome outcome;
    for (const std::string& name : SampleFile::Names()) {
        SCOPED_TRACE(name);
        const SampleFile original(name);
        const Bytes content = ReadWholeFile(SampleFile::Folder() / (name + ".mdb"));
        const bool jet3 = name.ends_with("1997");
        for (int variant = 0; variant < 200; ++variant) {
            Bytes damaged = content;
            Damage(damaged, jet3 ? 2048 : 4096, random);
            jet_testing::MemoryFileSystem files;
            files.Put("/damaged.mdb", damaged);
            std::unique_ptr<Pager> pager;
            std::unique_ptr<PageAllocator> pages;
            Try(outcome, [&] {
                pager = Pager::Open(files, "/damaged.mdb", {});
                pages = std::make_unique<PageAllocator>(*pager);
            });
            if (!pages)
                continue;
            ReadEverything(*pager, *pages, 2, outcome);
            for (const auto& [table, page] : original.Tables()) {
                ReadEverything(*pager, *pages, page, outcome);
                if (!jet3)
                    ChangeAndRollBack(*pager, *pages, page, outcome, random);
            }
        }
    }
    EXPECT_GT(outcome.read, 10000);
    EXPECT_GT(outcome.refused, 100);
}
