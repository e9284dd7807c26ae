#pragma once
// Scenes with bounding objects.

#include <string>

namespace vesk::nodes {

/// Makes the bounding object `name` below a transform `nameT`, and wires it to an element of a consumer.
inline std::string volumeText(const std::string& name, int kind, const std::string& consumer,
                              std::size_t index) {
    const std::string element = consumer + ".boundingObjects[" + std::to_string(index) + "]";
    return "createNode transform -n " + name + "T; createNode boundingObject -n " + name + " -p " + name +
           "T; connectAttr " + name + "T.matrix " + name + ".inParentMatrix; setAttr " + name + ".type " +
           std::to_string(kind) + "; connectAttr " + name + ".outData.outParentMatrix " + element +
           ".boundParentMatrix; connectAttr " + name + ".outData " + element + ";";
}

} // namespace vesk::nodes
