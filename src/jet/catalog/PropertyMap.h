#pragma once

#include "jet/base/Value.h"
#include "jet/storage/Pager.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

/// The properties of one object and its columns (default values, required,
/// descriptions, what Access remembers about the screen), as they stand in the
/// field LvProp of the object's row in MSysObjects.
///
/// What we do not understand is kept: order, flags, types and blocks of other
/// kinds come out of Serialise as they went into Parse.
class PropertyMap {
public:
    PropertyMap() = default;
    /// An empty span is an empty map. Throws Damaged, without the file's name.
    static PropertyMap Parse(std::span<const std::byte> blob, FileVersion version);
    /// Empty when there is nothing to store: the field is null then.
    Bytes Serialise() const;

    /// `owner` is a column's name, empty for the object itself. Names are
    /// compared without regard to case. Null when absent.
    Value Find(std::string_view owner, std::string_view name) const;
    std::map<std::string, Value> All(std::string_view owner) const;
    /// Null removes. A property that is there keeps its type; a new one gets
    /// the type that is usual for its name, else that of the value.
    void Set(std::string_view owner, std::string_view name, const Value& value);
    void RemoveOwner(std::string_view owner);
    bool IsEmpty() const;

private:
    struct Property {
        std::string name;
        std::uint8_t flag = 1; ///< 1 = belongs to the engine (as against the screen)
        std::uint8_t type = 0;
        Bytes data;
    };
    struct Block {
        std::uint16_t kind = 0;
        std::string owner;
        std::vector<Property> properties;
        Bytes raw; ///< the whole body when the kind is unknown
    };

    const Block* FindBlock(std::string_view owner) const;
    static Value Decoded(const Property& property, FileVersion version);

    FileVersion m_version = FileVersion::Jet4; ///< of the texts in `data`
    std::vector<std::string> m_names;          ///< in the order of the names block
    std::vector<Block> m_blocks;
};

} // namespace jet
