#include "jet/upkeep/TableCheck.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Text.h"
#include "jet/storage/DataPage.h"
#include "jet/table/LongValues.h"
#include "jet/table/RowView.h"

#include <algorithm>

namespace jet {

namespace {

std::string RowText(PageNumber page, int slot)
{
    return "rij " + std::to_string(page) + ':' + std::to_string(slot);
}

/// A row number is one byte: what a damaged page claims beyond that is not looked at.
int SlotsOf(const DataPage& page)
{
    return std::min(page.SlotCount(), 256);
}

bool Has(const SlotSet& set, RowId row)
{
    const auto at = set.find(row.page);
    return at != set.end() && at->second.test(row.slot);
}

std::size_t CountUnmet(const SlotSet& live, const SlotSet& met)
{
    std::size_t count = 0;
    for (const auto& [page, slots] : live) {
        const auto at = met.find(page);
        count += (at == met.end() ? slots : slots & ~at->second).count();
    }
    return count;
}

} // namespace

TableCheck::TableCheck(Pager& pager, std::string name, TableDefinition definition,
                       PageLedger& ledger, Findings& findings)
    : m_pager(pager),
      m_name(std::move(name)),
      m_definition(std::move(definition)),
      m_ledger(ledger),
      m_findings(findings)
{}

void TableCheck::Examine()
{
    m_findings.Guard([&] { ClaimDefinition(); });
    m_findings.Guard([&] { ExamineRowPages(); });
    m_findings.Guard([&] { ExamineLongValuePages(); });
    ExaminePointers();
    ExamineRows();
    for (const auto& [number, pages] : m_longValues) {
        const std::size_t unmet = CountUnmet(pages.live, pages.met);
        if (unmet > 0)
            m_findings.Remark("Veld \"" +
                              m_definition.columns[m_definition.FindColumnNumber(number)].name +
                              "\" van " + Where() + ": naar " + std::to_string(unmet) +
                              " opgeslagen delen van lange waarden wijst niets meer.");
    }
    ExamineCounters();
}

void TableCheck::ClaimDefinition()
{
    const std::string owner = "de definitie van " + Where();
    PageNumber page = m_definition.page;
    while (page != 0 && m_ledger.Claim(page, owner)) {
        const PageView view = m_pager.Read(page);
        page = GetU32(view.Data(), 4);
    }
}

bool TableCheck::ClaimMap(RowId map, const std::string& owner)
{
    if (!IsUsageMap(m_pager, map)) {
        m_findings.Fault("Van " + owner + " ontbreekt de lijst van pagina's: " +
                         RowText(map.page, map.slot) + " is er geen.");
        return false;
    }
    m_ledger.ClaimShared(map.page, "de paginalijsten");
    bool sound = true;
    m_findings.Guard([&] {
        for (const PageNumber page : UsageMap(m_pager, map).BitmapPages())
            sound = m_ledger.Claim(page, "de paginalijst van " + owner) && sound;
    });
    return sound;
}

void TableCheck::ExamineRowPages()
{
    const std::string owner = Where();
    if (!ClaimMap(m_definition.ownedMap, owner))
        return;
    const UsageMap owned(m_pager, m_definition.ownedMap);
    for (PageNumber page = owned.NextFrom(1); page != 0; page = owned.NextFrom(page + 1)) {
        if (!m_ledger.Claim(page, owner))
            continue;
        std::bitset<256> live;
        if (!ExamineSlots(page, m_definition.page, owner, live))
            continue;
        const PageView view = m_pager.Read(page);
        const DataPage rows(m_pager, page, view.Data());
        for (int slot = 0; slot < SlotsOf(rows); ++slot) {
            if (!live.test(static_cast<std::size_t>(slot)))
                continue;
            const Slot at = rows.At(slot);
            SlotSet& kind = at.IsPointer() ? m_pointers : at.IsHidden() ? m_hidden : m_rows;
            kind[page].set(static_cast<std::size_t>(slot));
        }
    }
    ExamineFreeMap(m_definition.ownedMap, m_definition.freeMap, owner);
}

void TableCheck::ExamineFreeMap(RowId ownedMap, RowId freeMap, const std::string& owner)
{
    if (freeMap.page == 0 || !IsUsageMap(m_pager, freeMap))
        return;
    if (!ClaimMap(freeMap, "de ruimte van " + owner))
        return;
    const UsageMap owned(m_pager, ownedMap);
    const UsageMap free(m_pager, freeMap);
    for (PageNumber page = free.NextFrom(1); page != 0; page = free.NextFrom(page + 1))
        if (!owned.Contains(page))
            m_findings.Fault("Pagina " + std::to_string(page) + " staat te boek als ruimte van " +
                             owner + ", maar hoort er niet bij.");
}

bool TableCheck::ExamineSlots(PageNumber number, std::uint32_t owner, const std::string& where,
                              std::bitset<256>& live)
{
    return m_findings.Guard([&] {
        const std::string page = "Pagina " + std::to_string(number) + " van " + where;
        const PageView view = m_pager.Read(number);
        const DataPage rows(m_pager, number, view.Data());
        if (!rows.BelongsTo(owner)) {
            m_findings.Fault(page + " is geen pagina met rijen daarvan.");
            return;
        }
        if (rows.SlotCount() > 256)
            m_findings.Fault(page + " heeft meer dan 256 rijen.");
        const bool jet3 = m_pager.Version() == FileVersion::Jet3;
        const std::size_t header = jet3 ? 10 : 14;
        std::size_t lowest = m_pager.PageSize();
        for (int i = 0; i < SlotsOf(rows); ++i) {
            const Slot slot = rows.At(i); // throws when it lies outside the page
            if (slot.start > lowest)
                m_findings.Fault(page + ": " + RowText(number, i) + " ligt over een andere.");
            lowest = std::min<std::size_t>(lowest, slot.start);
            if (!slot.IsDeleted())
                live.set(static_cast<std::size_t>(i));
        }
        const std::size_t slotsEnd = header + 2u * static_cast<std::size_t>(rows.SlotCount());
        if (slotsEnd > lowest)
            m_findings.Fault(page + ": de rijen liggen over hun lijst heen.");
        else if (GetU16(view.Data(), 2) != lowest - slotsEnd)
            m_findings.Fault(page + " zegt " + std::to_string(GetU16(view.Data(), 2)) +
                             " bytes vrij te hebben; het zijn er " +
                             std::to_string(lowest - slotsEnd) + '.');
    });
}

void TableCheck::ExaminePointers()
{
    SlotSet met;
    for (const auto& entry : m_pointers) {
        m_findings.Guard([&] {
            const PageNumber number = entry.first;
            const auto& slots = entry.second;
            const PageView view = m_pager.Read(number);
            const DataPage page(m_pager, number, view.Data());
            for (int i = 0; i < SlotsOf(page); ++i) {
                if (!slots.test(static_cast<std::size_t>(i)))
                    continue;
                const auto bytes = page.Row(page.At(i));
                const std::string row = "De " + RowText(number, i) + " van " + Where();
                if (bytes.size() < 4) {
                    m_findings.Fault(row + " is verplaatst, maar zegt niet waarheen.");
                    continue;
                }
                const RowId target = RowIdFromPointer(GetU32(bytes, 0));
                if (!Has(m_hidden, target) && !Has(m_pointers, target))
                    m_findings.Fault(row + " is verplaatst naar " +
                                     RowText(target.page, target.slot) + ", waar niets staat.");
                else if (Has(met, target))
                    m_findings.Fault(row + " is verplaatst naar " +
                                     RowText(target.page, target.slot) +
                                     ", net als een andere rij.");
                met[target.page].set(target.slot);
            }
        });
    }
    const std::size_t orphans = CountUnmet(m_hidden, met);
    if (orphans > 0)
        m_findings.Remark("In " + Where() + " staan " + std::to_string(orphans) +
                          " verplaatste rijen waar niets meer naar wijst.");
}

void TableCheck::ExamineRows()
{
    const auto examine = [&](const SlotSet& set, bool counts) {
        for (const auto& entry : set) {
            m_findings.Guard([&] {
                const PageNumber number = entry.first;
                const auto& slots = entry.second;
                const PageView view = m_pager.Read(number);
                const DataPage page(m_pager, number, view.Data());
                for (int i = 0; i < SlotsOf(page); ++i) {
                    if (!slots.test(static_cast<std::size_t>(i)))
                        continue;
                    m_rowCount += counts ? 1 : 0;
                    m_findings.Guard([&] { ExamineRow(number, i, page.Row(page.At(i))); });
                }
            });
        }
    };
    examine(m_rows, true);
    examine(m_hidden, false);
    for (const auto& [number, slots] : m_pointers)
        m_rowCount += static_cast<std::uint32_t>(slots.count());
    // A pointer that another pointer leads to is no row of its own; never seen in good files.
}

void TableCheck::ExamineRow(PageNumber page, int slot, std::span<const std::byte> bytes)
{
    const RowView row(m_pager, page, m_definition, bytes);
    for (const Column& column : m_definition.columns) {
        if (!row.HasValue(column) || column.type == ColumnType::Boolean)
            continue;
        const auto stored = row.Bytes(column);
        if (column.IsLongValue()) {
            ExamineLongValue(column, page, slot, stored);
            continue;
        }
        const Value value = DecodeValue(column, stored, m_pager.Version());
        if (column.autoNumber && column.type == ColumnType::Long)
            m_highestNumber = std::max<std::int64_t>(m_highestNumber, value.AsIntOr(0));
        if (column.type == ColumnType::Text &&
            Utf16FromUtf8(value.AsTextOr("")).size() > static_cast<std::size_t>(column.Size()))
            m_findings.Fault("Veld \"" + column.name + "\" in " + RowText(page, slot) + " van " +
                             Where() + " is langer dan het veld.");
    }
}

void TableCheck::ExamineLongValue(const Column& column, PageNumber page, int slot,
                                  std::span<const std::byte> stored)
{
    if (stored.empty()) // as some programs store an empty value
        return;
    const auto reference = LongValueReference::Parse(m_pager, page, stored);
    const std::string where =
        "veld \"" + column.name + "\" in " + RowText(page, slot) + " van " + Where();
    if (reference.form == LongValueReference::Form::Inline) {
        if (stored.size() < LongValueReference::kSize + reference.length)
            m_findings.Fault("De lange waarde van " + where + " is korter dan zij zegt.");
        return;
    }
    FollowChain(m_longValues[column.number], where, reference.first, reference.length,
                reference.form == LongValueReference::Form::Chain);
}

void TableCheck::FollowChain(LongValuePages& pages, const std::string& where, RowId part,
                             std::uint32_t length, bool chain)
{
    std::uint64_t found = 0;
    while (part.page != 0) {
        if (!Has(pages.live, part)) {
            m_findings.Fault("De lange waarde van " + where + " verwijst naar " +
                             RowText(part.page, part.slot) + ", waar geen deel ervan staat.");
            return;
        }
        auto& met = pages.met[part.page];
        if (met.test(part.slot)) {
            m_findings.Fault("De lange waarde van " + where + " deelt " +
                             RowText(part.page, part.slot) + " met een andere, of loopt rond.");
            return;
        }
        met.set(part.slot);
        const PageView view = m_pager.Read(part.page);
        const DataPage page(m_pager, part.page, view.Data());
        const auto bytes = page.Row(page.At(part.slot));
        if (!chain) {
            found = bytes.size();
            break;
        }
        found += bytes.size() < 4 ? 0 : bytes.size() - 4;
        part = RowIdFromPointer(GetU32(bytes, 0));
    }
    // A single row may be longer than its value: the rest is of an older one.
    if (found < length || (chain && found != length))
        m_findings.Fault("De lange waarde van " + where + " zou " + std::to_string(length) +
                         " bytes zijn; het zijn er " + std::to_string(found) + '.');
}

void TableCheck::ExamineLongValuePages()
{
    for (const Column& column : m_definition.columns) {
        if (!column.IsLongValue() || column.ownedMap.page == 0 ||
            !IsUsageMap(m_pager, column.ownedMap))
            continue;
        const std::string owner = "het veld \"" + column.name + "\" van " + Where();
        if (!ClaimMap(column.ownedMap, owner))
            continue;
        LongValuePages& pages = m_longValues[column.number];
        const UsageMap owned(m_pager, column.ownedMap);
        for (PageNumber page = owned.NextFrom(1); page != 0; page = owned.NextFrom(page + 1)) {
            std::bitset<256> live;
            if (m_ledger.Claim(page, owner) && ExamineSlots(page, kLongValueOwner, owner, live))
                pages.live[page] = live;
        }
        ExamineFreeMap(column.ownedMap, column.freeMap, owner);
    }
}

void TableCheck::ExamineCounters()
{
    if (m_rowCount != m_definition.rowCount)
        m_findings.Remark("De teller van " + Where() + " staat op " +
                          std::to_string(m_definition.rowCount) + " rijen; het zijn er " +
                          std::to_string(m_rowCount) + '.');
    if (m_highestNumber > static_cast<std::int64_t>(m_definition.lastAutoNumber))
        m_findings.Remark("De autonummering van " + Where() + " staat op " +
                          std::to_string(m_definition.lastAutoNumber) +
                          ", maar er is al een nummer " + std::to_string(m_highestNumber) + '.');
}

} // namespace jet
