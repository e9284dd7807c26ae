#pragma once
// Storing values from words into plugs: what `setAttr` does, in scripts and in scene files.

#include "host/commands/words.h"
#include "host/core/outcome.h"
#include "host/graph/scene.h"

#include <optional>

namespace vesk::commands {

/// What `setAttr` may say of a plug beside its value.
struct AssignOptions {
    std::optional<bool> lock, keyable, channelBox;
    bool clamp = false;
    /// Something was said, so a statement without a value is complete.
    bool any = false;
};

/// Stores what the stream holds. `typeName` is what stands behind `-type`, empty for plain numbers; without a
/// type a compound takes its leaves' numbers in order, and a range its elements' in turn. All words must be
/// used. Numbers are in UI units. Of plain numbers either all are stored or, on failure, none.
/// A lock is opened before and closed after the value is stored.
Outcome assign(graph::Scene& scene, const graph::PlugRange& range, const AssignOptions& options,
               std::string_view typeName, Words& words);

/// The plugs that a range stands for; an element that is named but missing is one of them, too.
/// `most` bounds their number. Fails on a child path that leads nowhere.
Result<std::vector<graph::Plug>> expand(const graph::PlugRange& range, std::size_t most);

/// The numbers below an attribute, in order. False when there is anything else below it.
bool collectLeaves(const graph::Attribute& attribute, std::vector<const graph::Attribute*>& leaves);

} // namespace vesk::commands
