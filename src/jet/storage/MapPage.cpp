#include "jet/storage/MapPage.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"

#include <algorithm>
#include <cstring>

namespace jet {
namespace {

constexpr std::uint16_t kOffsetBits = 0x1FFF;
constexpr std::uint16_t kDeleted = 0xC000;
constexpr int kMostRows = 255;

/// Offset of the slot count; the slots follow it.
std::size_t CountOffset(FileVersion version)
{
    return version == FileVersion::Jet3 ? 8 : 12;
}

} // namespace

MapPage::MapPage(const Pager& pager, PageNumber number, std::span<const std::byte> data)
    : m_pager(pager),
      m_number(number),
      m_data(data),
      m_slots(CountOffset(pager.Version()) + 2),
      m_rowCount(GetU16(data, m_slots - 2))
{
    if (GetU8(data, 0) != 0x01)
        ThrowDamaged("is geen pagina met paginakaarten");
    if (m_rowCount > kMostRows + 1 || SlotsEnd() > data.size())
        ThrowDamaged("heeft een onmogelijk aantal rijen (" + std::to_string(m_rowCount) + ")");
}

void MapPage::ThrowDamaged(const std::string& what) const
{
    throw Error(ErrorKind::Damaged, "De database " + Utf8FromPath(m_pager.Path()) +
                                        " is beschadigd: pagina " + std::to_string(m_number) + " " +
                                        what + ".");
}

MapPage::Row MapPage::At(int slot) const
{
    if (slot < 0 || slot >= m_rowCount)
        ThrowDamaged("heeft geen rij " + std::to_string(slot) + " voor een paginakaart");
    const auto offsetOf = [&](int s) -> std::size_t {
        return s < 0 ? m_data.size()
                     : GetU16(m_data, m_slots + 2u * static_cast<std::size_t>(s)) & kOffsetBits;
    };
    const std::uint16_t word = GetU16(m_data, m_slots + 2u * static_cast<std::size_t>(slot));
    Row row;
    row.start = word & kOffsetBits;
    row.deleted = (word & ~kOffsetBits) != 0;
    const std::size_t end = offsetOf(slot - 1);
    if (row.start < SlotsEnd() || end > m_data.size() || row.start > end)
        ThrowDamaged("heeft een rij " + std::to_string(slot) + " buiten de pagina");
    row.length = end - row.start;
    return row;
}

std::size_t MapPage::FreeBytes() const
{
    return (m_rowCount == 0 ? m_data.size() : At(m_rowCount - 1).start) - SlotsEnd();
}

bool MapPage::IsForNewMaps() const
{
    return GetU32(m_data, 4) == 0;
}

bool MapPage::HasLiveRows() const
{
    for (int slot = 0; slot < m_rowCount; ++slot) {
        if (!At(slot).deleted)
            return true;
    }
    return false;
}

std::optional<int> MapPage::RoomFor(std::size_t length) const
{
    for (int slot = 0; slot < m_rowCount; ++slot) {
        const Row row = At(slot);
        if (row.deleted && row.length == 0 && FreeBytes() >= length)
            return slot;
    }
    if (m_rowCount < kMostRows && FreeBytes() >= length + 2)
        return m_rowCount;
    return std::nullopt;
}

std::size_t MapPage::NewRowLength(FileVersion version)
{
    return version == FileVersion::Jet3 ? 133 : 69;
}

void MapPage::Format(std::span<std::byte> page, FileVersion version)
{
    std::fill(page.begin(), page.end(), std::byte{0});
    PutU16(page, 0, 0x0101);
    PutU16(page, 2, static_cast<std::uint16_t>(page.size() - CountOffset(version) - 2));
}

void MapPage::Resize(const Pager& pager, PageEdit& edit, int slot, std::size_t length)
{
    const std::span<std::byte> data = edit.Data();
    const std::size_t count = CountOffset(pager.Version());
    if (slot == GetU16(data, count)) { // a new row begins empty, where the last one begins
        const MapPage before(pager, edit.Number(), data);
        const std::size_t start = slot == 0 ? data.size() : before.At(slot - 1).start;
        PutU16(data, count + 2 + 2u * static_cast<std::size_t>(slot),
               static_cast<std::uint16_t>(start));
        PutU16(data, count, static_cast<std::uint16_t>(slot + 1));
    }
    const MapPage page(pager, edit.Number(), data);
    const Row row = page.At(slot);
    const std::size_t lowest = page.At(page.RowCount() - 1).start;
    const std::size_t slotsEnd = page.SlotsEnd();
    if (length > row.length + lowest - slotsEnd)
        page.ThrowDamaged("heeft geen ruimte voor een langere paginakaart");

    // This row keeps its end, so that its bytes move down together with all rows
    // behind it; then its own bytes go back to its new start.
    const std::ptrdiff_t shift =
        static_cast<std::ptrdiff_t>(length) - static_cast<std::ptrdiff_t>(row.length);
    const std::span<const std::byte> old = data.subspan(row.start, std::min(length, row.length));
    std::vector<std::byte> content(old.begin(), old.end());
    content.resize(length);
    std::memmove(data.data() + lowest - shift, data.data() + lowest, row.start - lowest);
    std::copy(content.begin(), content.end(),
              data.begin() + static_cast<std::ptrdiff_t>(row.start) - shift);
    for (int s = slot; s < page.RowCount(); ++s) {
        const std::size_t at = count + 2 + 2u * static_cast<std::size_t>(s);
        const std::uint16_t word = GetU16(data, at);
        const std::uint16_t marks = s == slot ? 0 : word & static_cast<std::uint16_t>(~kOffsetBits);
        const auto moved = static_cast<std::uint16_t>((word & kOffsetBits) - shift);
        PutU16(data, at, static_cast<std::uint16_t>(marks | moved));
    }
    PutU16(data, 2, static_cast<std::uint16_t>(MapPage(pager, edit.Number(), data).FreeBytes()));
}

void MapPage::Erase(const Pager& pager, PageEdit& edit, int slot)
{
    Resize(pager, edit, slot, 0);
    const std::size_t at = CountOffset(pager.Version()) + 2 + 2u * static_cast<std::size_t>(slot);
    PutU16(edit.Data(), at, static_cast<std::uint16_t>(GetU16(edit.Data(), at) | kDeleted));
}

} // namespace jet
