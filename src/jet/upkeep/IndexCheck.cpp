#include "jet/upkeep/IndexCheck.h"

#include "jet/base/ByteOrder.h"
#include "jet/table/LongValues.h"
#include "jet/table/TableChange.h"

#include <algorithm>
#include <set>

namespace jet {

namespace {

constexpr int kDeepest = 32; // far beyond what two gigabytes need

std::string RowText(RowId row)
{
    return "rij " + std::to_string(row.page) + ':' + std::to_string(row.slot);
}

ByteSpan KeyOf(ByteSpan entry)
{
    return entry.first(entry.size() - kRowPointerSize);
}

/// Entries one after another, each found by its end.
class EntryList {
public:
    EntryList(const Bytes& bytes, const std::vector<std::size_t>& ends)
        : m_bytes(bytes), m_ends(ends)
    {}
    std::size_t Count() const { return m_ends.size(); }
    ByteSpan operator[](std::size_t i) const
    {
        const std::size_t start = i == 0 ? 0 : m_ends[i - 1];
        return ByteSpan(m_bytes).subspan(start, m_ends[i] - start);
    }

private:
    const Bytes& m_bytes;
    const std::vector<std::size_t>& m_ends;
};

} // namespace

IndexCheck::IndexCheck(Table& table, int physical, PageLedger& ledger, Findings& findings)
    : m_table(table),
      m_pager(table.File()),
      m_index(table.Definition().physicalIndexes[static_cast<std::size_t>(physical)]),
      m_physical(physical),
      m_ledger(ledger),
      m_findings(findings)
{}

std::string IndexCheck::Where() const
{
    return "de index \"" + m_table.Definition().NameOfPhysical(m_physical) + "\" van de tabel \"" +
           m_table.Name() + '"';
}

void IndexCheck::Examine()
{
    Bytes last;
    m_sound = m_findings.Guard([&] { m_sound = ExaminePage(m_index.root, 0, last); }) && m_sound;
    ExamineChain();
    m_findings.Guard([&] { ExamineMap(); });
    if (m_sound)
        m_findings.Guard([&] { CompareWithRows(); });
}

bool IndexCheck::ExaminePage(PageNumber number, int depth, Bytes& lastEntry)
{
    const std::string where = "Pagina " + std::to_string(number) + " van " + Where();
    if (depth > kDeepest) {
        m_findings.Fault(where + " ligt dieper dan een index diep kan zijn.");
        return false;
    }
    if (!m_ledger.Claim(number, Where()))
        return false;
    m_treePages.push_back(number);

    struct Child {
        PageNumber page;
        Bytes entry; ///< that names it; empty for the last
    };
    std::vector<Child> children;
    {
        const PageView view = m_pager.Read(number);
        const IndexPage page(m_pager, number, m_table.Definition().page, view.Data());
        const std::size_t free = IndexLayoutOf(m_pager.Version()).capacity - page.End();
        if (page.FreeField() != free)
            m_findings.Fault(where + " zegt " + std::to_string(page.FreeField()) +
                             " bytes vrij te hebben; het zijn er " + std::to_string(free) + '.');
        Bytes previous, entry;
        for (std::size_t at = 0; at < page.End(); at = page.After(at)) {
            page.CopyEntry(at, entry);
            const std::size_t least = kRowPointerSize + (page.IsLeaf() ? 0 : kChildSize);
            if (entry.size() < least) {
                m_findings.Fault(where + " heeft een regel die te kort is.");
                return false;
            }
            const ByteSpan comparable =
                page.IsLeaf() ? ByteSpan(entry) : ByteSpan(entry).first(entry.size() - kChildSize);
            if (at > 0 && CompareBytes(previous, comparable) >= 0) {
                m_findings.Fault(where + ": de regels staan niet op volgorde.");
                return false;
            }
            previous.assign(comparable.begin(), comparable.end());
            if (page.IsLeaf()) {
                m_bytes.insert(m_bytes.end(), entry.begin(), entry.end());
                m_ends.push_back(m_bytes.size());
            } else {
                children.push_back({page.ChildAt(at), previous});
            }
        }
        if (page.IsLeaf()) {
            m_leaves.push_back({number, page.Previous(), page.Next()});
            lastEntry = previous;
            return true;
        }
        if (page.Tail() != 0)
            children.push_back({page.Tail(), {}});
    }
    if (children.empty()) {
        m_findings.Fault(where + " verwijst naar geen enkele pagina.");
        return false;
    }
    bool sound = true;
    for (const Child& child : children) {
        lastEntry.clear();
        if (!ExaminePage(child.page, depth + 1, lastEntry)) {
            sound = false;
        } else if (!child.entry.empty() && !std::ranges::equal(child.entry, lastEntry)) {
            m_findings.Fault(where + " noemt niet de laatste regel van pagina " +
                             std::to_string(child.page) + '.');
            sound = false;
        }
    }
    return sound;
}

void IndexCheck::ExamineChain()
{
    for (std::size_t i = 0; i < m_leaves.size(); ++i) {
        const PageNumber previous = i == 0 ? 0 : m_leaves[i - 1].page;
        const PageNumber next = i + 1 == m_leaves.size() ? 0 : m_leaves[i + 1].page;
        if (m_sound && (m_leaves[i].previous != previous || m_leaves[i].next != next)) {
            m_findings.Fault("Pagina " + std::to_string(m_leaves[i].page) + " van " + Where() +
                             " noemt niet de pagina's ernaast.");
            m_sound = false;
        }
    }
    const EntryList entries(m_bytes, m_ends);
    for (std::size_t i = 1; m_sound && i < entries.Count(); ++i) {
        if (CompareBytes(entries[i - 1], entries[i]) >= 0) {
            m_findings.Fault("De regels van " + Where() + " staan niet op volgorde.");
            m_sound = false;
        }
    }
}

void IndexCheck::ExamineMap()
{
    if (!IsUsageMap(m_pager, m_index.ownedMap)) {
        m_findings.Fault("Van " + Where() + " ontbreekt de lijst van pagina's.");
        return;
    }
    m_ledger.ClaimShared(m_index.ownedMap.page, "de paginalijsten");
    const UsageMap owned(m_pager, m_index.ownedMap);
    for (const PageNumber page : owned.BitmapPages())
        m_ledger.Claim(page, "de paginalijst van " + Where());
    for (const PageNumber page : m_treePages)
        if (!owned.Contains(page))
            m_findings.Fault("Pagina " + std::to_string(page) + " van " + Where() +
                             " staat niet in zijn lijst van pagina's.");
    // Some programs leave pages in the list that they gave back.
    const std::set<PageNumber> tree(m_treePages.begin(), m_treePages.end());
    std::size_t stale = 0;
    for (PageNumber page = owned.NextFrom(1); page != 0; page = owned.NextFrom(page + 1))
        stale += tree.contains(page) ? 0 : 1;
    if (stale > 0)
        m_findings.Remark("De lijst van pagina's van " + Where() + " noemt er " +
                          std::to_string(stale) + " die niet in gebruik zijn.");
}

void IndexCheck::CompareWithRows()
{
    const auto& columns = m_table.Definition().columns;
    const EntryList stored(m_bytes, m_ends);

    // What the rows ask for. Where a key cannot be computed only the row counts.
    Bytes bytes;
    struct Wanted {
        std::size_t start, end;
        bool allNull;
    };
    std::vector<Wanted> wanted;
    std::set<RowId> keyUnknown;
    const bool orderKnown = std::ranges::all_of(m_index.columns, [&](const IndexColumn& part) {
        return columns[static_cast<std::size_t>(part.column)].HasKnownOrder();
    });
    for (TableScan scan(m_table); scan.Next();) {
        const std::size_t start = bytes.size();
        bool known = orderKnown;
        std::size_t nulls = 0;
        for (const IndexColumn& part : m_index.columns) {
            const Value value = scan.Get(part.column);
            nulls += value.IsNull() ? 1 : 0;
            known = known && AppendKey(value, columns[static_cast<std::size_t>(part.column)].type,
                                       part.ascending, m_pager.Version(), bytes);
        }
        const bool allNull = nulls == m_index.columns.size();
        if (m_index.ignoreNulls && allNull) {
            bytes.resize(start);
            continue;
        }
        if (!known) {
            bytes.resize(start);
            keyUnknown.insert(scan.Id());
            continue;
        }
        AppendRowPointer(scan.Id(), bytes);
        wanted.push_back({start, bytes.size(), allNull});
    }
    const auto entryOf = [&](const Wanted& w) {
        return ByteSpan(bytes).subspan(w.start, w.end - w.start);
    };
    std::ranges::sort(wanted, [&](const Wanted& a, const Wanted& b) {
        return CompareBytes(entryOf(a), entryOf(b)) < 0;
    });

    std::size_t w = 0;
    for (std::size_t i = 0; i < stored.Count(); ++i) {
        const RowId row = RowOfEntry(stored[i]);
        while (w < wanted.size() && CompareBytes(entryOf(wanted[w]), stored[i]) < 0)
            m_findings.Fault("De " + RowText(RowOfEntry(entryOf(wanted[w++]))) + " ontbreekt in " +
                             Where() + '.');
        if (w < wanted.size() && CompareBytes(entryOf(wanted[w]), stored[i]) == 0) {
            ++w;
        } else if (keyUnknown.erase(row) == 0) {
            m_findings.Fault("In " + Where() + " staat een regel voor " + RowText(row) +
                             " die niet bij een rij past.");
        }
    }
    for (; w < wanted.size(); ++w)
        m_findings.Fault("De " + RowText(RowOfEntry(entryOf(wanted[w]))) + " ontbreekt in " +
                         Where() + '.');
    for (const RowId row : keyUnknown)
        m_findings.Fault("De " + RowText(row) + " ontbreekt in " + Where() + '.');

    if (!m_index.unique)
        return;
    for (std::size_t i = 1; i < wanted.size(); ++i)
        if (!wanted[i].allNull &&
            std::ranges::equal(KeyOf(entryOf(wanted[i - 1])), KeyOf(entryOf(wanted[i]))))
            m_findings.Fault("De " + RowText(RowOfEntry(entryOf(wanted[i]))) +
                             " heeft dezelfde sleutel als een andere in " + Where() +
                             ", die uniek is.");
}

} // namespace jet
