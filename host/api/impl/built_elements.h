#pragma once
// What an `MArrayDataBuilder` works on.

#include "host/graph/cell.h"
#include "host/graph/node.h"

namespace vesk::api {

/// Elements of one multi in the making: the children of a detached cell that stands for the multi.
struct BuiltElements {
    Ref<graph::Node> node;              ///< kept alive for the cells, which refer to it
    std::unique_ptr<graph::Cell> multi; ///< not null
    /// Elements that were taken out while a handle may still point to them.
    std::vector<std::unique_ptr<graph::Cell>> removed;
};

} // namespace vesk::api
