#pragma once
// What commands that make geometry share: a creator node, a shape that shows it, a transform.

#include "host/commands/command_spec.h"

namespace vesk::commands {

/// A flag of a creation command and the attribute of the creator node that it sets. Several names take the
/// flag's arguments in turn.
struct CreatorFlag {
    std::string_view flag; ///< without its dash
    std::vector<std::string_view> attributes;
};

struct CreatorSpec {
    std::string_view creatorType, output; ///< `polyCube`, `output`
    std::string_view shapeType, input;    ///< `mesh`, `inMesh`
    std::string_view transformName;       ///< `pCube#`
    std::vector<CreatorFlag> flags;
};

/// Makes the three nodes and wires them; without history (`-constructionHistory 0`) the shape keeps the
/// geometry and the creator goes. Answers transform and creator by name.
mel::Value createGeometry(CommandContext& context, const Args& args, const CreatorSpec& spec);

/// The flags that every creation command has: name, constructionHistory.
std::vector<FlagSpec> creationFlags(std::vector<FlagSpec> own);

} // namespace vesk::commands
