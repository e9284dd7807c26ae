#pragma once
// Attributes from the type names that `addAttr` takes.

#include "host/core/result.h"
#include "host/graph/attribute.h"

#include <string_view>

namespace vesk::commands {

struct AttributeType {
    graph::AttrRef attribute;   ///< with its names set
    std::size_t childCount = 0; ///< how many children must follow before it is complete
};

/// An attribute of a type such as `double`, `doubleAngle`, `enum`, `float3`, `compound`, `message`. Tuples
/// wait for their children.
Result<AttributeType> attributeOfType(std::string_view typeName, std::string longName, std::string shortName);

/// An attribute that holds data of a type such as `string`, `doubleArray`, `mesh`. Tuples bring children of
/// their own, named by the suffixes 0, 1 ...
Result<AttributeType> attributeOfData(std::string_view typeName, std::string longName, std::string shortName);

/// `A:B=5:C`: the fields of an enum; a field without a number follows the one before it.
Result<std::vector<graph::EnumField>> enumFields(std::string_view text);
/// The same text of an attribute's fields, numbers only where they do not follow.
std::string enumText(const graph::Attribute& attribute);

} // namespace vesk::commands
