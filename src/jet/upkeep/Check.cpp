#include "jet/upkeep/Check.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Text.h"
#include "jet/catalog/Catalog.h"
#include "jet/catalog/PropertyMap.h"
#include "jet/storage/FileHeader.h"
#include "jet/upkeep/IndexCheck.h"
#include "jet/upkeep/TableCheck.h"

#include <set>

namespace jet {

namespace {

class FileCheck {
public:
    explicit FileCheck(Pager& pager) : m_pager(pager), m_ledger(pager, m_findings) {}

    CheckReport Run()
    {
        m_findings.Guard([&] { ExamineHeader(); });
        m_findings.Guard([&] {
            PageAllocator pages(m_pager);
            ClaimGlobalMaps(pages);
            ExamineTables(pages);
            m_ledger.CompareWithFree(pages.FreePages());
        });
        return m_findings.Finish();
    }

private:
    void ExamineHeader()
    {
        m_ledger.Claim(0, "de kop van het bestand");
        const PageView header = m_pager.Read(0);
        const std::size_t words = CommitWordsOffset(m_pager.Version());
        for (std::size_t i = 0; i < 256; ++i)
            if (GetU16(header.Data(), words + 2 * i) == 0)
                m_findings.Fault("Vastleggingswoord " + std::to_string(i) +
                                 " is 0: het schrijven is een keer afgebroken.");
    }

    void ClaimGlobalMaps(PageAllocator& pages)
    {
        const UsageMap& free = pages.FreePages();
        m_ledger.Claim(free.Where().page, "de lijst van vrije pagina's");
        for (const PageNumber page : free.BitmapPages())
            m_ledger.Claim(page, "de lijst van vrije pagina's");
        // The second map on that page has no known use; it keeps its own pages.
        m_findings.Guard([&] {
            const RowId second{free.Where().page, static_cast<std::uint8_t>(free.Where().slot + 1)};
            for (const PageNumber page : UsageMap(m_pager, second).BitmapPages())
                m_ledger.Claim(page, "de tweede algemene paginalijst");
        });
    }

    void ExamineTables(PageAllocator& pages)
    {
        Catalog catalog(m_pager);
        const auto entries = catalog.Tables();
        const auto objects = catalog.Open("MSysObjects");
        const int properties = objects->Definition().FindColumn("LvProp");
        std::set<PageNumber> seen;
        for (const TableEntry& entry : entries) {
            if (!seen.insert(entry.page).second) {
                m_findings.Fault("Twee tabellen delen definitiepagina " +
                                 std::to_string(entry.page) + "; een ervan is \"" + entry.name +
                                 "\".");
                continue;
            }
            m_findings.Guard([&] { ExamineTable(pages, entry); });
            if (properties >= 0)
                ExamineProperties(*objects, entry, properties);
        }
        ExamineRelationships(catalog);
    }

    void ExamineTable(PageAllocator& pages, const TableEntry& entry)
    {
        const TableDefinition definition = ReadTableDefinition(m_pager, entry.page);
        TableCheck(m_pager, entry.name, definition, m_ledger, m_findings).Examine();
        Table table(m_pager, pages, entry.name, definition);
        for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i)
            IndexCheck(table, static_cast<int>(i), m_ledger, m_findings).Examine();
    }

    void ExamineProperties(Table& objects, const TableEntry& entry, int column)
    {
        try {
            const Value blob = objects.Get(entry.row, column);
            if (!blob.IsNull())
                PropertyMap::Parse(blob.AsBytes(), m_pager.Version());
        } catch (const Error& error) {
            m_findings.Fault("Tabel \"" + entry.name + "\": " + error.what());
        }
    }

    void ExamineRelationships(Catalog& catalog)
    {
        if (!catalog.HasTable("MSysRelationships"))
            return;
        m_findings.Guard([&] {
            const auto table = catalog.Open("MSysRelationships");
            for (const char* name : {"szObject", "szReferencedObject"}) {
                const int column = table->Definition().FindColumn(name);
                if (column < 0)
                    continue;
                for (TableScan scan(*table); scan.Next();) {
                    const Value named = scan.Get(column);
                    if (!named.IsNull() && !catalog.HasTable(named.AsText()))
                        m_findings.Remark("Een relatie noemt de tabel \"" + named.AsText() +
                                          "\", die er niet is.");
                }
            }
        });
    }

    Pager& m_pager;
    Findings m_findings;
    PageLedger m_ledger;
};

} // namespace

CheckReport CheckFile(Pager& pager)
{
    return FileCheck(pager).Run();
}

} // namespace jet
