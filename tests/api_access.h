#pragma once
// Nodes and plugs by name, for tests that look at what MEL made through the API.

#include <maya/MPlug.h>
#include <maya/MSelectionList.h>

namespace vesk::tests {

inline MObject nodeNamed(const char* name) {
    MSelectionList list;
    list.add(name);
    MObject node;
    list.getDependNode(0, node);
    return node;
}

inline MPlug plugNamed(const char* name) {
    MSelectionList list;
    list.add(name);
    MPlug plug;
    list.getPlug(0, plug);
    return plug;
}

} // namespace vesk::tests
