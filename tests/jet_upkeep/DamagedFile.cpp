#include "DamagedFile.h"

#include "jet/catalog/Catalog.h"
#include "jet/upkeep/Check.h"

#include <algorithm>

namespace {

constexpr std::size_t kPage = 4096;

} // namespace

DamagedFile::DamagedFile()
{
    jet::Workspace workspace(m_files);
    const auto database = workspace.CreateDatabase(kName);
    database->CreateTable(
        {.name = "Dijk",
         .fields = {{.name = "Id", .type = jet::ColumnType::Long, .autoNumber = true},
                    {.name = "Naam", .type = jet::ColumnType::Text},
                    {.name = "Verhaal", .type = jet::ColumnType::Memo}},
         .indexes = {{.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
                     {.name = "OpNaam", .fields = {{"Naam"}}}}});
    const auto rows = database->OpenRecordset("Dijk");
    for (int i = 0; i < 400; ++i) {
        rows->AddNew();
        rows->Set("Naam", "dijk " + std::to_string(i * 37 % 400));
        rows->Set("Verhaal", std::string(i % 10 == 0 ? 9000 : 200, 'v'));
        rows->Update();
    }
    rows->MoveFirst();
    for (int i = 0; i < 30; ++i, rows->MoveNext()) {
        rows->Edit();
        rows->Set("Naam", std::string(200, 'x') + std::to_string(i));
        rows->Update();
    }
}

jet::TableDefinition DamagedFile::Definition()
{
    const auto pager = jet::Pager::Open(m_files, kName, {});
    jet::Catalog catalog(*pager);
    return catalog.Open("Dijk")->Definition();
}

jet_testing::Bytes DamagedFile::Page(jet::PageNumber page) const
{
    const auto all = m_files.Get(kName);
    const auto start = all.begin() + static_cast<std::ptrdiff_t>(page * kPage);
    return {start, start + kPage};
}

void DamagedFile::Change(jet::PageNumber page,
                         const std::function<void(std::span<std::byte>)>& damage)
{
    auto all = m_files.Get(kName);
    damage(std::span(all).subspan(page * kPage, kPage));
    m_files.Put(kName, all);
}

jet::PageNumber DamagedFile::RowPage()
{
    const auto definition = Definition();
    const auto pager = jet::Pager::Open(m_files, kName, {});
    return jet::UsageMap(*pager, definition.ownedMap).NextFrom(1);
}

std::vector<jet::PageNumber> DamagedFile::MemoPages()
{
    const auto definition = Definition();
    const auto pager = jet::Pager::Open(m_files, kName, {});
    const jet::UsageMap owned(*pager, definition.columns[2].ownedMap);
    std::vector<jet::PageNumber> pages;
    for (auto page = owned.NextFrom(1); page != 0; page = owned.NextFrom(page + 1))
        pages.push_back(page);
    return pages;
}

jet::CheckReport DamagedFile::Check()
{
    const auto pager = jet::Pager::Open(m_files, kName, {});
    return jet::CheckFile(*pager);
}

bool Mentions(const std::vector<std::string>& texts, const std::string& part)
{
    return std::ranges::any_of(
        texts, [&](const std::string& text) { return text.find(part) != std::string::npos; });
}
