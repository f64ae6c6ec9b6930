#include "jet/storage/UsageMap.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/storage/MapPage.h"
#include "jet/storage/PageAllocator.h"

#include <algorithm>
#include <bit>
#include <optional>

namespace jet {
namespace {

constexpr std::uint8_t kInline = 0;
constexpr std::uint8_t kByReference = 1;
constexpr std::size_t kBitmapStart = 4; // on a bitmap page
// A map of a table or index that would need a longer row goes over to
// references, so that one map does not take the page from the others.
constexpr std::size_t kLongestOrdinaryRow = 261;

[[noreturn]] void ThrowDamaged(const Pager& pager, RowId where, const std::string& what)
{
    throw Error(ErrorKind::Damaged, "De database " + Utf8FromPath(pager.Path()) +
                                        " is beschadigd: paginakaart " +
                                        std::to_string(where.slot) + " op pagina " +
                                        std::to_string(where.page) + " " + what + ".");
}

bool BitAt(std::span<const std::byte> bitmap, std::size_t bit)
{
    return (std::to_integer<unsigned>(bitmap[bit / 8]) >> (bit % 8) & 1) != 0;
}

void PutBit(std::span<std::byte> bitmap, std::size_t bit, bool value)
{
    const std::byte mask{static_cast<unsigned char>(1u << (bit % 8))};
    if (value)
        bitmap[bit / 8] |= mask;
    else
        bitmap[bit / 8] &= ~mask;
}

/// The first set bit >= `from`.
std::optional<std::size_t> FindBit(std::span<const std::byte> bitmap, std::size_t from)
{
    std::size_t byte = from / 8;
    if (byte >= bitmap.size())
        return std::nullopt;
    auto bits = std::to_integer<unsigned>(bitmap[byte]) >> (from % 8) << (from % 8);
    while (bits == 0) {
        ++byte;
        while (byte + 8 <= bitmap.size() && GetU64(bitmap, byte) == 0)
            byte += 8;
        if (byte >= bitmap.size())
            return std::nullopt;
        bits = std::to_integer<unsigned>(bitmap[byte]);
    }
    return byte * 8 + static_cast<std::size_t>(std::countr_zero(bits));
}

/// A map's row, looked up and checked.
class MapView {
public:
    MapView(Pager& pager, RowId where) : m_page(pager.Read(where.page))
    {
        const MapPage page(pager, where.page, m_page.Data());
        const Slot row = page.At(where.slot);
        if (row.flags != 0)
            ThrowDamaged(pager, where, "is gewist maar nog in gebruik");
        start = row.start;
        bytes = m_page.Data().subspan(row.start, row.length);
        if (bytes.size() < 5 || GetU8(bytes, 0) > kByReference)
            ThrowDamaged(pager, where, "heeft een onbekende vorm");
    }

    bool IsInline() const { return GetU8(bytes, 0) == kInline; }
    PageNumber First() const { return GetU32(bytes, 1); }
    std::span<const std::byte> Bitmap() const { return bytes.subspan(5); }
    std::size_t References() const { return (bytes.size() - 1) / 4; }
    PageNumber Reference(std::size_t k) const { return GetU32(bytes, 1 + 4 * k); }

    std::size_t start = 0; // in the page
    std::span<const std::byte> bytes;

private:
    PageView m_page;
};

std::uint32_t PagesPerBitmap(const Pager& pager)
{
    return static_cast<std::uint32_t>((pager.PageSize() - kBitmapStart) * 8);
}

PageView ReadBitmap(Pager& pager, RowId where, PageNumber number)
{
    PageView page = pager.Read(number);
    if (GetU8(page.Data(), 0) != 0x05)
        ThrowDamaged(pager, where,
                     "verwijst naar pagina " + std::to_string(number) +
                         ", die geen deel van een kaart is");
    return page;
}

} // namespace

bool UsageMap::Contains(PageNumber page) const
{
    const MapView map(*m_pager, m_where);
    if (map.IsInline())
        return page >= map.First() && page - map.First() < map.Bitmap().size() * 8 &&
               BitAt(map.Bitmap(), page - map.First());
    const std::uint32_t per = PagesPerBitmap(*m_pager);
    if (page / per >= map.References() || map.Reference(page / per) == 0)
        return false;
    const PageView bitmap = ReadBitmap(*m_pager, m_where, map.Reference(page / per));
    return BitAt(bitmap.Data().subspan(kBitmapStart), page % per);
}

PageNumber UsageMap::NextFrom(PageNumber from) const
{
    const PageNumber end = m_pager->PageCount();
    const auto known = [end](std::uint64_t page) {
        return page < end ? static_cast<PageNumber>(page) : 0;
    };
    if (from >= end)
        return 0;
    const MapView map(*m_pager, m_where);
    if (map.IsInline()) {
        const PageNumber first = map.First();
        const auto bit = FindBit(map.Bitmap(), from > first ? from - first : 0);
        return bit ? known(std::uint64_t{first} + *bit) : 0;
    }
    const std::uint32_t per = PagesPerBitmap(*m_pager);
    for (std::size_t k = from / per; k < map.References() && k * per < end; ++k) {
        if (map.Reference(k) == 0)
            continue;
        const PageView bitmap = ReadBitmap(*m_pager, m_where, map.Reference(k));
        const auto bit =
            FindBit(bitmap.Data().subspan(kBitmapStart), from > k * per ? from - k * per : 0);
        if (bit)
            return known(std::uint64_t{k} * per + *bit);
    }
    return 0;
}

std::vector<PageNumber> UsageMap::BitmapPages() const
{
    std::vector<PageNumber> pages;
    const MapView map(*m_pager, m_where);
    if (map.IsInline())
        return pages;
    for (std::size_t k = 0; k < map.References(); ++k) {
        if (map.Reference(k) != 0)
            pages.push_back(map.Reference(k));
    }
    return pages;
}

void UsageMap::Add(PageNumber page)
{
    const auto newPage = [this] { return PageAllocator(*m_pager).Allocate(); };
    Set(page, true, {false, kLongestOrdinaryRow, newPage});
}

void UsageMap::Remove(PageNumber page)
{
    if (Contains(page))
        Set(page, false, {});
}

void UsageMap::Set(PageNumber page, bool member, const Growth& growth)
{
    if (MapView(*m_pager, m_where).IsInline()) {
        if (SetInline(page, member, growth))
            return;
        GoOverToReferences(growth);
    }
    SetReferenced(page, member, growth);
}

/// False when the map cannot hold the page inline.
bool UsageMap::SetInline(PageNumber page, bool member, const Growth& growth)
{
    PageNumber first = 0;
    std::size_t length = 0;
    Bytes bitmap; // as it is now
    {
        const MapView map(*m_pager, m_where);
        first = map.First();
        length = map.bytes.size();
        if (page >= first && page - first < map.Bitmap().size() * 8) {
            const std::size_t at = map.start + 5;
            const PageEdit edit = m_pager->Write(m_where.page);
            PutBit(edit.Data().subspan(at, length - 5), page - first, member);
            return true;
        }
        bitmap.assign(map.Bitmap().begin(), map.Bitmap().end());
    }

    // The new range: from a multiple of 32 at or below everything it must hold.
    PageNumber newFirst = page / 32 * 32;
    std::uint64_t last = page;
    if (growth.membersBehindEnd) {
        newFirst = std::min(first, newFirst);
        last = std::max<std::uint64_t>(last, std::uint64_t{first} + bitmap.size() * 8);
    } else {
        for (auto bit = FindBit(bitmap, 0); bit; bit = FindBit(bitmap, *bit + 1)) {
            newFirst = std::min(newFirst, static_cast<PageNumber>((first + *bit) / 32 * 32));
            last = std::max<std::uint64_t>(last, first + *bit);
        }
    }
    const std::size_t needed = 5 + static_cast<std::size_t>((last - newFirst) / 8) + 1;
    const std::size_t newLength =
        needed <= length ? length : length + (needed - length + 3) / 4 * 4;
    if (newLength > growth.longestRow)
        return false;
    if (newLength > length) {
        const PageView view = m_pager->Read(m_where.page);
        if (MapPage(*m_pager, m_where.page, view.Data()).Free() < newLength - length)
            return false;
    }

    if (newLength > length)
        MapPage::Resize(*m_pager, m_where.page, m_where.slot, newLength);
    const PageEdit edit = m_pager->Write(m_where.page);
    const std::size_t start = MapPage(*m_pager, m_where.page, edit.Data()).At(m_where.slot).start;
    PutU32(edit.Data(), start + 1, newFirst);
    const auto newBitmap = edit.Data().subspan(start + 5, newLength - 5);
    std::fill(newBitmap.begin(), newBitmap.end(), std::byte{0});
    for (auto bit = FindBit(bitmap, 0); bit; bit = FindBit(bitmap, *bit + 1))
        PutBit(newBitmap, first + *bit - newFirst, true);
    if (growth.membersBehindEnd) {
        // Pages that exist already and that the map knew nothing of are taken for used.
        std::size_t p = std::max<std::size_t>(first + bitmap.size() * 8, m_pager->PageCount());
        for (; p - newFirst < newBitmap.size() * 8; ++p)
            PutBit(newBitmap, p - newFirst, true);
    }
    PutBit(newBitmap, page - newFirst, member);
    return true;
}

void UsageMap::GoOverToReferences(const Growth& growth)
{
    PageNumber first = 0;
    Bytes bitmap;
    {
        const MapView map(*m_pager, m_where);
        first = map.First();
        bitmap.assign(map.Bitmap().begin(), map.Bitmap().end());
    }
    // Some rows are shorter than any engine makes them.
    Bytes row(std::max(bitmap.size() + 5, MapPage::kNewRowLength));
    PutU8(row, 0, kByReference);
    MapPage::SetRow(*m_pager, m_where.page, m_where.slot, row);
    if (!growth.membersBehindEnd) {
        for (auto bit = FindBit(bitmap, 0); bit; bit = FindBit(bitmap, *bit + 1))
            SetReferenced(static_cast<PageNumber>(first + *bit), true, growth);
        return;
    }
    // What stands below or inside the old range is known; behind it the new bitmap
    // pages are right as they come.
    const auto end =
        std::min<std::uint64_t>(std::uint64_t{first} + bitmap.size() * 8, m_pager->PageCount());
    for (PageNumber page = 0; page < end; ++page)
        SetReferenced(page, page >= first && BitAt(bitmap, page - first), growth);
}

void UsageMap::SetReferenced(PageNumber page, bool member, const Growth& growth)
{
    const std::uint32_t per = PagesPerBitmap(*m_pager);
    const std::size_t k = page / per;
    PageNumber reference = 0;
    std::size_t place = 0;
    {
        const MapView map(*m_pager, m_where);
        if (k >= map.References())
            ThrowDamaged(*m_pager, m_where, "is te kort voor pagina " + std::to_string(page));
        reference = map.Reference(k);
        place = map.start + 1 + 4 * k;
    }
    if (reference == 0) {
        if (!member && !growth.membersBehindEnd)
            return;
        const PageEdit bitmap = growth.newPage();
        reference = bitmap.Number();
        std::fill(bitmap.Data().begin(), bitmap.Data().end(), std::byte{0});
        if (growth.membersBehindEnd) {
            const std::size_t end = (k + 1) * per;
            for (std::size_t p = std::max<std::size_t>(k * per, m_pager->PageCount()); p < end; ++p)
                PutBit(bitmap.Data().subspan(kBitmapStart), p % per, true);
        }
        PutU32(bitmap.Data(), 0, 0x0105);
        PutU32(m_pager->Write(m_where.page).Data(), place, reference);
    }
    ReadBitmap(*m_pager, m_where, reference);
    const PageEdit bitmap = m_pager->Write(reference);
    PutBit(bitmap.Data().subspan(kBitmapStart), page % per, member);
}

} // namespace jet
