#pragma once
// An attribute as people read it in a table.

#include <string>

namespace vesk::graph {
class Attribute;
} // namespace vesk::graph

namespace vesk {

struct AttributeText {
    int depth; ///< compounds above it
    /// With the fields of an enum, what a generic accepts, and "[]" behind an array's. Ramps are one word.
    std::string type;
    std::string defaultValue;
    std::string limits; ///< "min 0, soft max 10"
    std::string flags;  ///< what differs from the host's defaults, in a fixed order
};

AttributeText attributeText(const graph::Attribute& attribute);

/// Whether the attribute is part of a ramp's entries, which tables leave out.
bool isPartOfRamp(const graph::Attribute& attribute);

} // namespace vesk
