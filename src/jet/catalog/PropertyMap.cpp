#include "jet/catalog/PropertyMap.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/ByteWriter.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"

#include <algorithm>
#include <array>

namespace jet {

namespace {

constexpr std::uint16_t kNamesBlock = 0x0080;
constexpr std::uint16_t kObjectBlock = 0x0000;
constexpr std::uint16_t kColumnBlock = 0x0001;
constexpr std::size_t kValueHeader = 8;

constexpr std::array<std::byte, 4> kMarkJet3 = {std::byte{'K'}, std::byte{'K'}, std::byte{'D'},
                                                std::byte{0}};
constexpr std::array<std::byte, 4> kMarkJet4 = {std::byte{'M'}, std::byte{'R'}, std::byte{'2'},
                                                std::byte{0}};

std::span<const std::byte> MarkOf(FileVersion version)
{
    return version == FileVersion::Jet3 ? std::span<const std::byte>(kMarkJet3) : kMarkJet4;
}

[[noreturn]] void Broken(std::string_view what)
{
    throw Error(ErrorKind::Damaged,
                "De eigenschappen van een object zijn beschadigd: " + std::string(what) + '.');
}

/// Walks over bytes; every step is checked.
class Reader {
public:
    explicit Reader(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    bool AtEnd() const { return m_bytes.empty(); }
    std::uint8_t U8() { return GetU8(Take(1), 0); }
    std::uint16_t U16() { return GetU16(Take(2), 0); }
    std::uint32_t U32() { return GetU32(Take(4), 0); }
    std::span<const std::byte> Take(std::size_t count)
    {
        if (count > m_bytes.size())
            Broken("een lengte wijst voorbij het einde");
        const auto taken = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return taken;
    }
    std::span<const std::byte> Rest() const { return m_bytes; }

private:
    std::span<const std::byte> m_bytes;
};

class Writer : public ByteWriter {
public:
    /// A block whose length, itself included, stands before it.
    void Block(std::uint16_t kind, const Writer& body)
    {
        U32(static_cast<std::uint32_t>(body.m_bytes.size() + 6));
        U16(kind);
        Append(body.m_bytes);
    }
};

std::string TextOf(std::span<const std::byte> bytes, FileVersion version)
{
    return version == FileVersion::Jet3 ? Utf8FromCodePage1252(bytes) : Utf8FromUtf16Bytes(bytes);
}

Bytes BytesOf(std::string_view text, FileVersion version)
{
    Bytes bytes;
    if (version == FileVersion::Jet3) {
        for (const char c : CodePage1252FromUtf8(text))
            bytes.push_back(static_cast<std::byte>(c));
    } else {
        for (const char16_t unit : Utf16FromUtf8(text)) {
            bytes.push_back(static_cast<std::byte>(unit & 0xFF));
            bytes.push_back(static_cast<std::byte>(unit >> 8));
        }
    }
    return bytes;
}

/// The types that other programs expect of a property, by its name.
ColumnType UsualType(std::string_view name, const Value& value)
{
    struct Usual {
        std::string_view name;
        ColumnType type;
    };
    static constexpr Usual known[] = {
        {"DefaultValue", ColumnType::Memo},
        {"ValidationRule", ColumnType::Memo},
        {"Caption", ColumnType::Memo},
        {"Description", ColumnType::Text},
        {"ValidationText", ColumnType::Text},
        {"Format", ColumnType::Text},
        {"InputMask", ColumnType::Text},
        {"Required", ColumnType::Boolean},
        {"AllowZeroLength", ColumnType::Boolean},
        {"UnicodeCompression", ColumnType::Boolean},
        {"DecimalPlaces", ColumnType::Byte},
    };
    for (const Usual& usual : known)
        if (NamesEqual(usual.name, name))
            return usual.type;
    struct ByAlternative {
        ColumnType operator()(std::monostate) const { return ColumnType::Text; }
        ColumnType operator()(bool) const { return ColumnType::Boolean; }
        ColumnType operator()(std::uint8_t) const { return ColumnType::Byte; }
        ColumnType operator()(std::int16_t) const { return ColumnType::Integer; }
        ColumnType operator()(std::int32_t) const { return ColumnType::Long; }
        ColumnType operator()(Currency) const { return ColumnType::Currency; }
        ColumnType operator()(float) const { return ColumnType::Single; }
        ColumnType operator()(double) const { return ColumnType::Double; }
        ColumnType operator()(DateTime) const { return ColumnType::DateTime; }
        ColumnType operator()(const std::string&) const { return ColumnType::Memo; }
        ColumnType operator()(const Bytes&) const { return ColumnType::Binary; }
        ColumnType operator()(const Guid&) const { return ColumnType::Binary; }
        ColumnType operator()(const Decimal&) const { return ColumnType::Double; }
    };
    return std::visit(ByAlternative{}, value.Raw());
}

template <typename T>
Bytes BytesOfNumber(T value, void (*put)(std::span<std::byte>, std::size_t, T))
{
    Bytes bytes(sizeof(T));
    put(bytes, 0, value);
    return bytes;
}

Bytes Encoded(const Value& value, std::uint8_t type, FileVersion version)
{
    const auto as = [&](ColumnType wanted) { return value.ConvertedTo(wanted); };
    switch (static_cast<ColumnType>(type)) {
    case ColumnType::Boolean:
        return {value.AsBool() ? std::byte{1} : std::byte{0}};
    case ColumnType::Byte:
        return BytesOfNumber(std::get<std::uint8_t>(as(ColumnType::Byte).Raw()), PutU8);
    case ColumnType::Integer:
        return BytesOfNumber(std::get<std::int16_t>(as(ColumnType::Integer).Raw()), PutI16);
    case ColumnType::Long:
        return BytesOfNumber(value.AsInt(), PutI32);
    case ColumnType::Currency:
        return BytesOfNumber(std::get<Currency>(as(ColumnType::Currency).Raw()).scaled, PutI64);
    case ColumnType::Single: {
        Bytes bytes(4);
        byte_order::Store(std::span<std::byte>(bytes), 0, static_cast<float>(value.AsDouble()));
        return bytes;
    }
    case ColumnType::Double:
        return BytesOfNumber(value.AsDouble(), PutF64);
    case ColumnType::DateTime:
        return BytesOfNumber(value.AsDateTime().days, PutF64);
    case ColumnType::Text:
    case ColumnType::Memo:
        return BytesOf(value.AsText(), version);
    default:
        return value.AsBytes();
    }
}

} // namespace

PropertyMap PropertyMap::Parse(std::span<const std::byte> blob, FileVersion version)
{
    PropertyMap result;
    result.m_version = version;
    if (blob.empty())
        return result;
    Reader all(blob);
    if (!std::ranges::equal(all.Take(4), MarkOf(version)))
        Broken("het kenmerk aan het begin ontbreekt");

    while (!all.AtEnd()) {
        const std::uint32_t length = all.U32();
        if (length < 6)
            Broken("een blok is te kort");
        const std::uint16_t kind = all.U16();
        Reader body(all.Take(length - 6));
        if (kind == kNamesBlock) {
            while (!body.AtEnd())
                result.m_names.push_back(TextOf(body.Take(body.U16()), version));
            continue;
        }
        Block block;
        block.kind = kind;
        if (kind != kObjectBlock && kind != kColumnBlock) {
            block.raw.assign(body.Rest().begin(), body.Rest().end());
            result.m_blocks.push_back(std::move(block));
            continue;
        }
        const std::uint32_t headerLength = body.U32();
        if (headerLength < 6)
            Broken("de kop van een blok is te kort");
        Reader header(body.Take(headerLength - 4));
        block.owner = TextOf(header.Take(header.U16()), version);
        while (!body.AtEnd()) {
            const std::uint16_t total = body.U16();
            if (total < kValueHeader)
                Broken("een waarde is te kort");
            Reader value(body.Take(total - 2u));
            Property property;
            property.flag = value.U8();
            property.type = value.U8();
            const std::uint16_t name = value.U16();
            if (name >= result.m_names.size())
                Broken("een waarde verwijst naar een naam die er niet is");
            property.name = result.m_names[name];
            const auto data = value.Take(value.U16());
            property.data.assign(data.begin(), data.end());
            block.properties.push_back(std::move(property));
        }
        result.m_blocks.push_back(std::move(block));
    }
    return result;
}

Bytes PropertyMap::Serialise() const
{
    if (IsEmpty())
        return {};
    // Names keep their places; those that nothing refers to any more stay, as
    // blocks of unknown kinds may.
    std::vector<std::string> names = m_names;
    const auto indexOf = [&](const std::string& name) {
        const auto at = std::find(names.begin(), names.end(), name);
        if (at != names.end())
            return static_cast<std::uint16_t>(at - names.begin());
        names.push_back(name);
        return static_cast<std::uint16_t>(names.size() - 1);
    };

    Writer blocks;
    for (const Block& block : m_blocks) {
        Writer body;
        if (block.kind == kObjectBlock || block.kind == kColumnBlock) {
            const Bytes owner = BytesOf(block.owner, m_version);
            body.U32(static_cast<std::uint32_t>(4 + 2 + owner.size()));
            body.U16(static_cast<std::uint16_t>(owner.size()));
            body.Append(owner);
            for (const Property& property : block.properties) {
                body.U16(static_cast<std::uint16_t>(kValueHeader + property.data.size()));
                body.U8(property.flag);
                body.U8(property.type);
                body.U16(indexOf(property.name));
                body.U16(static_cast<std::uint16_t>(property.data.size()));
                body.Append(property.data);
            }
        } else {
            body.Append(block.raw);
        }
        blocks.Block(block.kind, body);
    }
    Writer nameBody;
    for (const std::string& name : names) {
        const Bytes bytes = BytesOf(name, m_version);
        nameBody.U16(static_cast<std::uint16_t>(bytes.size()));
        nameBody.Append(bytes);
    }
    Writer blob;
    blob.Append(MarkOf(m_version));
    blob.Block(kNamesBlock, nameBody);
    blob.Append(blocks.Content());
    return blob.Content();
}

Value PropertyMap::Decoded(const Property& property, FileVersion version)
{
    const std::span<const std::byte> data = property.data;
    const auto has = [&](std::size_t size) { return data.size() >= size; };
    switch (static_cast<ColumnType>(property.type)) {
    case ColumnType::Boolean:
        return has(1) && data[0] != std::byte{0};
    case ColumnType::Byte:
        return has(1) ? Value(GetU8(data, 0)) : Value();
    case ColumnType::Integer:
        return has(2) ? Value(GetI16(data, 0)) : Value();
    case ColumnType::Long:
        return has(4) ? Value(GetI32(data, 0)) : Value();
    case ColumnType::Currency:
        return has(8) ? Value(Currency{GetI64(data, 0)}) : Value();
    case ColumnType::Single:
        return has(4) ? Value(GetF32(data, 0)) : Value();
    case ColumnType::Double:
        return has(8) ? Value(GetF64(data, 0)) : Value();
    case ColumnType::DateTime:
        return has(8) ? Value(DateTime{GetF64(data, 0)}) : Value();
    case ColumnType::Text:
    case ColumnType::Memo:
        return TextOf(data, version);
    default:
        return property.data;
    }
}

const PropertyMap::Block* PropertyMap::FindBlock(std::string_view owner) const
{
    const std::uint16_t kind = owner.empty() ? kObjectBlock : kColumnBlock;
    for (const Block& block : m_blocks)
        if (block.kind == kind && (owner.empty() || NamesEqual(block.owner, owner)))
            return &block;
    return nullptr;
}

Value PropertyMap::Find(std::string_view owner, std::string_view name) const
{
    if (const Block* block = FindBlock(owner))
        for (const Property& property : block->properties)
            if (NamesEqual(property.name, name))
                return Decoded(property, m_version);
    return {};
}

std::map<std::string, Value> PropertyMap::All(std::string_view owner) const
{
    std::map<std::string, Value> all;
    if (const Block* block = FindBlock(owner))
        for (const Property& property : block->properties)
            all.emplace(property.name, Decoded(property, m_version));
    return all;
}

void PropertyMap::Set(std::string_view owner, std::string_view name, const Value& value)
{
    auto* block = const_cast<Block*>(FindBlock(owner));
    if (!block) {
        if (value.IsNull())
            return;
        Block fresh;
        fresh.kind = owner.empty() ? kObjectBlock : kColumnBlock;
        fresh.owner = owner;
        block = &m_blocks.emplace_back(std::move(fresh));
    }
    auto& properties = block->properties;
    const auto at = std::ranges::find_if(
        properties, [&](const Property& property) { return NamesEqual(property.name, name); });
    if (value.IsNull()) {
        if (at != properties.end())
            properties.erase(at);
        return;
    }
    Property property;
    if (at != properties.end()) {
        property = *at;
    } else {
        property.name = name;
        property.type = static_cast<std::uint8_t>(UsualType(name, value));
    }
    property.data = Encoded(value, property.type, m_version);
    if (property.data.size() > 0xFFFF - kValueHeader)
        throw Error(ErrorKind::TooLong,
                    "De eigenschap " + std::string(name) + " is te lang om te bewaren.");
    if (at != properties.end())
        *at = std::move(property);
    else
        properties.push_back(std::move(property));
}

void PropertyMap::RemoveOwner(std::string_view owner)
{
    std::erase_if(m_blocks, [&](const Block& block) {
        return block.kind == kColumnBlock && NamesEqual(block.owner, owner);
    });
}

bool PropertyMap::IsEmpty() const
{
    // A list of names alone is kept: other programs leave one behind.
    return m_names.empty() && std::ranges::all_of(m_blocks, [](const Block& block) {
               return block.properties.empty() && block.raw.empty();
           });
}

} // namespace jet
