#pragma once
// The rows of nodes.def as the entry points use them.

#include <maya/MPxNode.h>
#include <maya/MStatus.h>

#include <span>

namespace vesk {

struct NodeRow {
    const char* name;
    unsigned typeId;
    MPxNode::Type type;
    const char* classification; ///< null for the manipulator container
    void* (*creator)();         ///< null, like the next, while the class is not written
    MStatus (*initialize)();

    bool isWritten() const { return creator != nullptr; }
};

/// All 62, in the order of registration.
std::span<const NodeRow> nodeRows();

} // namespace vesk
