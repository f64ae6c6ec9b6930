#include "jet/table/LongValues.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/Faults.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::uint32_t kInlineMark = 0x80000000, kSingleMark = 0x40000000;
constexpr std::size_t kPointerSize = 4;
constexpr std::size_t kLongestPart = RowStore::kLongestRow - kPointerSize;

FoundRow FindPart(Pager& pager, RowId where)
{
    auto found = FindRow(pager, kLongValueOwner, where);
    if (!found)
        ThrowDamaged(pager, where.page, "een deel van een lange waarde ontbreekt");
    return std::move(*found);
}

} // namespace

LongValueReference LongValueReference::Parse(const Pager& pager, PageNumber page,
                                             std::span<const std::byte> bytes)
{
    if (bytes.size() < kSize)
        ThrowDamaged(pager, page, "de verwijzing naar een lange waarde is te kort");
    const std::uint32_t length = GetU32(bytes, 0);
    LongValueReference reference;
    reference.form = (length & kInlineMark) != 0   ? Form::Inline
                     : (length & kSingleMark) != 0 ? Form::Single
                                                   : Form::Chain;
    reference.length = length & static_cast<std::uint32_t>(kLongest);
    reference.first = RowIdFromPointer(GetU32(bytes, 4));
    return reference;
}

std::array<std::byte, LongValueReference::kSize> LongValueReference::ToBytes() const
{
    std::array<std::byte, kSize> bytes{};
    const std::uint32_t mark = form == Form::Inline   ? kInlineMark
                               : form == Form::Single ? kSingleMark
                                                      : 0;
    PutU32(bytes, 0, length | mark);
    PutU32(bytes, 4, PointerFromRowId(first));
    return bytes;
}

Bytes ReadLongValue(Pager& pager, PageNumber page, std::span<const std::byte> stored)
{
    if (stored.empty())
        return {};
    const auto reference = LongValueReference::Parse(pager, page, stored);
    if (reference.form == LongValueReference::Form::Inline) {
        const auto data = stored.subspan(LongValueReference::kSize);
        if (data.size() < reference.length)
            ThrowDamaged(pager, page, "een lange waarde is korter dan haar lengte");
        return Bytes(data.begin(), data.begin() + reference.length);
    }
    if (reference.length > std::uint64_t{pager.PageCount()} * pager.PageSize())
        ThrowDamaged(pager, page, "een lange waarde is langer dan het bestand");
    if (reference.form == LongValueReference::Form::Single) {
        const FoundRow part = FindPart(pager, reference.first);
        if (part.bytes.size() < reference.length)
            ThrowDamaged(pager, part.at.page, "een lange waarde is korter dan haar lengte");
        return Bytes(part.bytes.begin(), part.bytes.begin() + reference.length);
    }
    Bytes value;
    value.reserve(reference.length);
    for (RowId next = reference.first; value.size() < reference.length;) {
        if (next.page == 0)
            ThrowDamaged(pager, page, "een lange waarde is korter dan haar lengte");
        const FoundRow part = FindPart(pager, next);
        if (part.bytes.size() <= kPointerSize)
            ThrowDamaged(pager, part.at.page, "een deel van een lange waarde is leeg");
        const auto data =
            part.bytes.subspan(kPointerSize, std::min(part.bytes.size() - kPointerSize,
                                                      reference.length - value.size()));
        value.insert(value.end(), data.begin(), data.end());
        next = RowIdFromPointer(GetU32(part.bytes, 0));
    }
    return value;
}

LongValueReference WriteLongValue(RowStore& store, std::span<const std::byte> data)
{
    LongValueReference reference;
    reference.length = static_cast<std::uint32_t>(data.size());
    if (data.size() <= RowStore::kLongestRow) {
        reference.form = LongValueReference::Form::Single;
        reference.first = store.Insert(data);
        return reference;
    }
    reference.form = LongValueReference::Form::Chain;
    const std::size_t parts = (data.size() + kLongestPart - 1) / kLongestPart;
    Bytes part;
    RowId next;
    for (std::size_t i = parts; i-- > 0;) {
        const auto bytes =
            data.subspan(i * kLongestPart, std::min(kLongestPart, data.size() - i * kLongestPart));
        part.resize(kPointerSize);
        PutU32(part, 0, PointerFromRowId(next));
        part.insert(part.end(), bytes.begin(), bytes.end());
        next = store.Insert(part);
    }
    reference.first = next;
    return reference;
}

void FreeLongValue(Pager& pager, PageNumber page, RowStore& store,
                   std::span<const std::byte> stored)
{
    if (stored.empty())
        return;
    const auto reference = LongValueReference::Parse(pager, page, stored);
    if (reference.form == LongValueReference::Form::Inline)
        return;
    std::size_t freed = 0;
    for (RowId next = reference.first; next.page != 0 && freed < reference.length;) {
        RowId following;
        {
            const FoundRow part = FindPart(pager, next);
            freed += part.bytes.size();
            if (reference.form == LongValueReference::Form::Chain) {
                if (part.bytes.size() <= kPointerSize)
                    ThrowDamaged(pager, next.page, "een deel van een lange waarde is leeg");
                freed -= kPointerSize;
                following = RowIdFromPointer(GetU32(part.bytes, 0));
            }
        }
        store.Erase(next);
        next = following;
    }
}

bool IsUsageMap(Pager& pager, RowId where)
{
    if (where.page == 0 || where.page >= pager.PageCount())
        return false;
    const PageView view = pager.Read(where.page);
    if (GetU8(view.Data(), 0) != 1)
        return false;
    const DataPage page(pager, where.page, view.Data());
    if (where.slot >= page.SlotCount())
        return false;
    const Slot slot = page.At(where.slot);
    if (slot.flags != 0 || slot.length < 5)
        return false;
    return GetU8(page.Row(slot), 0) <= 1;
}

} // namespace jet
