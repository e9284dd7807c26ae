#include "plugin/registry.h"

// Made by the build: the header of every node that the table calls written.
#include "node_headers.h"

#include <iterator>

namespace vesk {

namespace {

#define VESK_CLASS_written(name) &name::creator, &name::initialize
#define VESK_CLASS_planned(name) nullptr, nullptr
#define NODE(name, typeId, kind, classification, state)                                                      \
    {#name, typeId, MPxNode::kind, classification, VESK_CLASS_##state(name)},

constexpr NodeRow kRows[] = {
#include "plugin/nodes.def"
};

static_assert(std::size(kRows) == 62);

} // namespace

std::span<const NodeRow> nodeRows() { return kRows; }

} // namespace vesk
