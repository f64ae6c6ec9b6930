#include "jet/index/IndexPage.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/Faults.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace jet {

namespace {

constexpr std::uint8_t kNodeType = 3, kLeafType = 4;
constexpr std::size_t kFreeAt = 2, kOwnerAt = 4;

constexpr IndexLayout kJet3 = {8, 12, 16, 20, 21, 22, 0xF8, 1800};
constexpr IndexLayout kJet4 = {12, 16, 20, 24, 26, 27, 0x1E0, kIndexPageCapacity};

std::size_t CommonPrefix(ByteSpan a, ByteSpan b)
{
    const auto [inA, inB] = std::mismatch(
        a.begin(), a.begin() + static_cast<std::ptrdiff_t>(std::min(a.size(), b.size())),
        b.begin());
    (void)inB;
    return static_cast<std::size_t>(inA - a.begin());
}

/// The entry mask of a Jet 4 page as words, to be shifted.
class Mask {
public:
    static constexpr std::size_t kBytes = 453;

    explicit Mask(const std::byte* from) { std::memcpy(m_words.data(), from, kBytes); }
    Mask() = default;

    void Store(std::byte* to) const { std::memcpy(to, m_words.data(), kBytes); }
    void Set(std::size_t bit) { m_words[bit / 64] |= std::uint64_t{1} << (bit % 64); }

    /// Bits above `position` move up by `count`.
    void Open(std::size_t position, std::size_t count)
    {
        const std::size_t first = (position + 1) / 64, words = count / 64, bits = count % 64;
        const std::uint64_t kept =
            (position + 1) % 64 == 0
                ? 0
                : m_words[first] & (~std::uint64_t{0} >> (64 - (position + 1) % 64));
        m_words[first] &= ~kept;
        for (std::size_t i = kWords; i-- > first;) {
            std::uint64_t word = 0;
            if (i >= first + words) {
                word = m_words[i - words] << bits;
                if (bits != 0 && i >= first + words + 1)
                    word |= m_words[i - words - 1] >> (64 - bits);
            }
            m_words[i] = word;
        }
        m_words[first] |= kept;
    }

    /// Bits in (position, position + count] go; those above move down by `count`.
    void Close(std::size_t position, std::size_t count)
    {
        const std::size_t first = (position + 1) / 64, words = count / 64, bits = count % 64;
        const std::uint64_t below =
            (position + 1) % 64 == 0 ? 0 : ~std::uint64_t{0} >> (64 - (position + 1) % 64);
        const std::uint64_t kept = m_words[first] & below;
        for (std::size_t i = first; i < kWords; ++i) {
            const std::uint64_t low = i + words < kWords ? m_words[i + words] >> bits : 0;
            const std::uint64_t high =
                bits != 0 && i + words + 1 < kWords ? m_words[i + words + 1] << (64 - bits) : 0;
            m_words[i] = low | high;
        }
        m_words[first] = (m_words[first] & ~below) | kept;
    }

private:
    static constexpr std::size_t kWords = (kBytes + 7) / 8;
    std::array<std::uint64_t, kWords> m_words{};
};

} // namespace

int CompareBytes(ByteSpan a, ByteSpan b)
{
    const std::size_t common = std::min(a.size(), b.size());
    if (common != 0) {
        if (const int order = std::memcmp(a.data(), b.data(), common); order != 0)
            return order;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

void AppendRowPointer(RowId row, Bytes& entry)
{
    for (int shift = 16; shift >= 0; shift -= 8)
        entry.push_back(static_cast<std::byte>(row.page >> shift));
    entry.push_back(std::byte{row.slot});
}

RowId RowOfEntry(ByteSpan entry)
{
    const std::size_t at = entry.size() - kRowPointerSize;
    return {GetU24BigEndian(entry, at), GetU8(entry, at + 3)};
}

const IndexLayout& IndexLayoutOf(FileVersion version)
{
    return version == FileVersion::Jet3 ? kJet3 : kJet4;
}

IndexPage::IndexPage(const Pager& pager, PageNumber number, PageNumber owner, ByteSpan data)
    : m_pager(pager), m_layout(IndexLayoutOf(pager.Version())), m_number(number), m_data(data)
{
    const std::uint8_t type = GetU8(data, 0);
    if ((type != kNodeType && type != kLeafType) || GetU32(data, kOwnerAt) != owner)
        Fail("dit is geen pagina van de index");
    m_leaf = type == kLeafType;
    m_prefix = pager.Version() == FileVersion::Jet3 ? GetU8(data, m_layout.prefix)
                                                    : GetU16(data, m_layout.prefix);
    m_entries = data.subspan(m_layout.entries);
    const std::size_t free = FreeField();
    m_end = free <= m_layout.capacity ? m_layout.capacity - free : 0;
    if (!IsBoundary(m_end))
        m_end = HighestBoundary();
    if (m_end == 0)
        m_prefix = 0;
    if (m_prefix != 0 && m_prefix > After(0))
        Fail("het voorvoegsel van de index is langer dan de eerste sleutel");
}

PageNumber IndexPage::Previous() const
{
    return GetU32(m_data, m_layout.previous);
}

PageNumber IndexPage::Next() const
{
    return GetU32(m_data, m_layout.next);
}

PageNumber IndexPage::Tail() const
{
    return m_leaf ? 0 : GetU32(m_data, m_layout.tail);
}

int IndexPage::Level() const
{
    return GetU8(m_data, m_layout.level);
}

std::size_t IndexPage::FreeField() const
{
    return GetU16(m_data, kFreeAt);
}

bool IndexPage::IsBoundary(std::size_t at) const
{
    return (std::to_integer<unsigned>(m_data[m_layout.mask + at / 8]) >> (at % 8) & 1u) != 0;
}

std::size_t IndexPage::HighestBoundary() const
{
    for (std::size_t byte = m_layout.capacity / 8 + 1; byte-- > 0;) {
        const auto bits = std::to_integer<unsigned>(m_data[m_layout.mask + byte]);
        if (bits != 0) {
            const std::size_t at = byte * 8 + static_cast<std::size_t>(std::bit_width(bits)) - 1;
            if (at > m_layout.capacity)
                Fail("een sleutel van de index ligt buiten de pagina");
            return at;
        }
    }
    return 0;
}

std::size_t IndexPage::After(std::size_t position) const
{
    std::size_t at = position + 1;
    const std::byte* mask = m_data.data() + m_layout.mask;
    std::uint8_t bits =
        static_cast<std::uint8_t>(std::to_integer<unsigned>(mask[at / 8]) >> (at % 8));
    if (bits != 0)
        at += static_cast<std::size_t>(std::countr_zero(bits));
    else {
        at = (at / 8 + 1) * 8;
        while (at <= m_end && mask[at / 8] == std::byte{0})
            at += 8;
        if (at <= m_end)
            at += static_cast<std::size_t>(
                std::countr_zero(std::to_integer<std::uint8_t>(mask[at / 8])));
    }
    if (at > m_end)
        Fail("een sleutel van de index heeft geen einde");
    return at;
}

std::size_t IndexPage::BoundaryUpTo(std::size_t at) const
{
    const std::byte* mask = m_data.data() + m_layout.mask;
    auto bits = std::to_integer<unsigned>(mask[at / 8]) & (0xFFu >> (7 - at % 8));
    std::size_t byte = at / 8;
    while (bits == 0) {
        if (byte == 0)
            return 0;
        bits = std::to_integer<unsigned>(mask[--byte]);
    }
    return byte * 8 + static_cast<std::size_t>(std::bit_width(bits)) - 1;
}

std::size_t IndexPage::Before(std::size_t position) const
{
    return BoundaryUpTo(position - 1);
}

std::size_t IndexPage::LowerBound(ByteSpan target) const
{
    if (m_end == 0 || target.empty())
        return 0;
    if (m_prefix != 0) {
        const std::size_t shared = std::min(m_prefix, target.size());
        const int order = std::memcmp(target.data(), m_entries.data(), shared);
        if (order > 0)
            return m_end;
        if (order < 0 || target.size() < m_prefix)
            return 0;
    }
    const ByteSpan rest = target.subspan(m_prefix);
    const std::size_t trailer = m_leaf ? 0 : kChildSize;
    std::size_t low = 0, high = m_end;
    while (low < high) {
        const std::size_t start = BoundaryUpTo(low + (high - low) / 2);
        const std::size_t end = After(start);
        const std::size_t skipped = start == 0 ? m_prefix : 0;
        if (end - start < skipped + trailer)
            Fail("een sleutel van de index is te kort");
        const ByteSpan entry = m_entries.subspan(start + skipped, end - start - skipped - trailer);
        if (CompareBytes(entry, rest) < 0)
            low = end;
        else
            high = start;
    }
    return low;
}

void IndexPage::CopyEntry(std::size_t position, Bytes& out) const
{
    const ByteSpan suffix = m_entries.subspan(position, After(position) - position);
    out.clear();
    if (position != 0)
        out.insert(out.end(), m_entries.begin(),
                   m_entries.begin() + static_cast<std::ptrdiff_t>(m_prefix));
    out.insert(out.end(), suffix.begin(), suffix.end());
    if (out.size() < kRowPointerSize + (m_leaf ? 0 : kChildSize))
        Fail("een sleutel van de index is te kort");
}

PageNumber IndexPage::ChildAt(std::size_t position) const
{
    const std::size_t end = After(position);
    if (end - position < kChildSize) {
        Bytes entry;
        CopyEntry(position, entry);
        return GetU32BigEndian(entry, entry.size() - kChildSize);
    }
    return GetU32BigEndian(m_entries, end - kChildSize);
}

PageNumber IndexPage::ChildFor(std::size_t position) const
{
    if (position < m_end)
        return ChildAt(position);
    if (const PageNumber tail = Tail(); tail != 0)
        return tail;
    if (m_end == 0)
        Fail("een knoop van de index is leeg");
    return ChildAt(Before(m_end));
}

void IndexPage::Fail(const char* what) const
{
    ThrowDamaged(m_pager, m_number, what);
}

PageNumber IndexNode::Child(std::size_t i) const
{
    if (i == Count())
        return tail;
    return GetU32BigEndian(bytes, starts[i + 1] - kChildSize);
}

int IndexNode::FindChild(PageNumber child) const
{
    for (std::size_t i = 0; i <= Count(); ++i) {
        if (Child(i) == child)
            return static_cast<int>(i);
    }
    return -1;
}

void IndexNode::Insert(std::size_t i, ByteSpan entry)
{
    bytes.insert(bytes.begin() + starts[i], entry.begin(), entry.end());
    starts.insert(starts.begin() + static_cast<std::ptrdiff_t>(i), starts[i]);
    for (std::size_t later = i + 1; later < starts.size(); ++later)
        starts[later] += static_cast<std::uint32_t>(entry.size());
}

void IndexNode::InsertChild(std::size_t i, ByteSpan key, PageNumber child)
{
    Bytes entry(key.begin(), key.end());
    entry.resize(entry.size() + kChildSize);
    PutU32BigEndian(entry, key.size(), child);
    Insert(i, entry);
}

void IndexNode::Erase(std::size_t i)
{
    const std::uint32_t size = starts[i + 1] - starts[i];
    bytes.erase(bytes.begin() + starts[i], bytes.begin() + starts[i + 1]);
    starts.erase(starts.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    for (std::size_t later = i + 1; later < starts.size(); ++later)
        starts[later] -= size;
}

void IndexNode::SetChild(std::size_t i, PageNumber child)
{
    if (i == Count())
        tail = child;
    else
        PutU32BigEndian(bytes, starts[i + 1] - kChildSize, child);
}

std::size_t IndexNode::StoredSize(std::size_t from, std::size_t to) const
{
    const std::size_t whole = starts[to] - starts[from];
    if (to - from < 2)
        return whole;
    return whole - (to - from - 1) * CommonPrefix(Entry(from), Entry(to - 1));
}

IndexNode IndexNode::Part(std::size_t from, std::size_t to) const
{
    IndexNode part;
    part.leaf = leaf;
    part.level = level;
    part.bytes.assign(bytes.begin() + starts[from], bytes.begin() + starts[to]);
    part.starts.clear();
    for (std::size_t i = from; i <= to; ++i)
        part.starts.push_back(starts[i] - starts[from]);
    return part;
}

IndexNode IndexNode::Read(Pager& pager, PageNumber number, PageNumber owner)
{
    const PageView view = pager.Read(number);
    const IndexPage page(pager, number, owner, view.Data());
    IndexNode node;
    node.leaf = page.IsLeaf();
    node.level = page.Level();
    node.previous = page.Previous();
    node.next = page.Next();
    node.tail = page.Tail();
    Bytes entry;
    for (std::size_t at = 0; at < page.End(); at = page.After(at)) {
        page.CopyEntry(at, entry);
        node.bytes.insert(node.bytes.end(), entry.begin(), entry.end());
        node.starts.push_back(static_cast<std::uint32_t>(node.bytes.size()));
    }
    if (!node.leaf && node.tail == 0) {
        if (node.Count() == 0)
            ThrowDamaged(pager, number, "een knoop van de index is leeg");
        node.tail = node.Child(node.Count() - 1);
        node.Erase(node.Count() - 1);
    }
    if (!node.leaf && node.level == 0)
        node.level = 1; // some writers leave the level out
    return node;
}

void IndexNode::Write(const PageEdit& edit, PageNumber owner) const
{
    const auto data = edit.Data();
    const std::size_t prefix = Count() < 2 ? 0 : CommonPrefix(Entry(0), Entry(Count() - 1));
    std::fill(data.begin(), data.end(), std::byte{0});
    PutU8(data, 0, leaf ? kLeafType : kNodeType);
    PutU8(data, 1, 1);
    PutU32(data, kOwnerAt, owner);
    PutU32(data, kJet4.previous, previous);
    PutU32(data, kJet4.next, next);
    PutU32(data, kJet4.tail, leaf ? 0 : tail);
    PutU16(data, kJet4.prefix, static_cast<std::uint16_t>(prefix));
    PutU8(data, kJet4.level, static_cast<std::uint8_t>(level));
    Mask mask;
    std::size_t at = 0;
    for (std::size_t i = 0; i < Count(); ++i) {
        const ByteSpan entry = Entry(i).subspan(i == 0 ? 0 : prefix);
        std::memcpy(data.data() + kJet4.entries + at, entry.data(), entry.size());
        at += entry.size();
        mask.Set(at);
    }
    mask.Store(data.data() + kJet4.mask);
    PutU16(data, kFreeAt, static_cast<std::uint16_t>(kJet4.capacity - at));
}

// The first entry begins with the page's prefix, and the prefix stays where it
// is when another entry becomes the first: so the place of a change at position
// 0 is behind the prefix.

bool IndexPageEdit::Insert(const IndexPage& page, const PageEdit& edit, std::size_t position,
                           ByteSpan entry)
{
    if (page.m_prefix != 0 &&
        (entry.size() < page.m_prefix ||
         std::memcmp(entry.data(), page.m_entries.data(), page.m_prefix) != 0))
        return false;
    const ByteSpan suffix = entry.subspan(page.m_prefix);
    if (page.m_end + suffix.size() > kJet4.capacity)
        return false;
    if (page.m_end == 0)
        PutU16(edit.Data(), kJet4.prefix, 0);
    const std::size_t place = position == 0 ? page.m_prefix : position;
    const auto data = edit.Data();
    std::byte* at = data.data() + kJet4.entries + place;
    std::memmove(at + suffix.size(), at, page.m_end - place);
    std::memcpy(at, suffix.data(), suffix.size());
    Mask mask(data.data() + kJet4.mask);
    mask.Open(place, suffix.size());
    mask.Set(place + suffix.size());
    mask.Store(data.data() + kJet4.mask);
    PutU16(data, kFreeAt, static_cast<std::uint16_t>(kJet4.capacity - page.m_end - suffix.size()));
    return true;
}

void IndexPageEdit::Erase(const IndexPage& page, const PageEdit& edit, std::size_t position)
{
    const auto data = edit.Data();
    const std::size_t after = page.After(position);
    const bool only = position == 0 && after == page.m_end;
    if (only)
        PutU16(data, kJet4.prefix, 0);
    const std::size_t place = position == 0 && !only ? page.m_prefix : position;
    const std::size_t size = after - place;
    std::byte* at = data.data() + kJet4.entries + place;
    std::memmove(at, at + size, page.m_end - after);
    Mask mask(data.data() + kJet4.mask);
    mask.Close(place, size);
    mask.Store(data.data() + kJet4.mask);
    PutU16(data, kFreeAt, static_cast<std::uint16_t>(kJet4.capacity - page.m_end + size));
}

void FormatLeaf(const PageEdit& edit, PageNumber owner)
{
    IndexNode().Write(edit, owner);
}

} // namespace jet
