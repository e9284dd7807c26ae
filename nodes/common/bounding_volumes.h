#pragma once
// The consumer's side of the wires from bounding objects: the attributes, and how they are read.

#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/world_points.h"
#include "volume/cloud_store.h"
#include "volume/volume_list.h"

#include <maya/MDataBlock.h>
#include <maya/MString.h>

#include <vector>

class MPxNode;

namespace vesk::nodes {

/// The multi `boundingObjects` of a node, with the children of its elements. A volume is connected by its
/// `outData` to the element and its `outParentMatrix` to `boundParentMatrix`.
struct VolumeAttributes {
    MObject boundingObjects, boundParentMatrix;
    MObject boundControlData, boundEnvelope, boundType, boundContained, boundTopCapOffset, boundTopCapScale,
        boundTopCapScaleX, boundTopCapScaleY, boundTopCapScaleZ, boundBottomCapOffset, boundBottomCapScale,
        boundBottomCapScaleX, boundBottomCapScaleY, boundBottomCapScaleZ, boundNormal;
    MObject boundDataPP, boundPositionPP, boundNormalPP, boundRadiusPP, boundWeightPP, boundRgbaPP,
        boundRadius;
};

/// In what the consumers' attributes differ.
struct VolumeAttributeRules {
    bool cloudsAreStored = true;
    bool hasBoundRadius = false; ///< one more child of `boundDataPP`, which nothing reads
};

/// Declares all of it; the multi is the last row.
void declareVolumes(AttributeTable& table, VolumeAttributes& attributes,
                    const VolumeAttributeRules& rules = {});

/// In what the consumers read differently.
struct VolumeReadRules {
    volume::CloudRules clouds{};
    /// Arrays of a cloud that are read, and missed in a warning when their length is wrong. Those that are
    /// not read are zeros.
    bool normals = true, radii = true, weights = true, colors = true;
    bool warnsOfLengths = true;
    /// The volumes' falloff ramps are wanted: what has none is no volume, and there is a warning.
    bool needsRamps = true;
};

struct ConnectedVolumes {
    volume::VolumeList list;
    volume::CloudStore clouds;
    std::vector<MObject> nodes; ///< behind each of the list
    bool hasElements = false;   ///< connected or not
};

/// Reads the elements that are connected, by ascending index. One whose own plug has no source, whatever
/// feeds its children, is not there.
ConnectedVolumes readVolumes(const MPxNode& node, MDataBlock& block, const VolumeAttributes& attributes,
                             const MString& nodeName, const VolumeReadRules& rules = {});

/// 1 for each point that is chosen. An int array chooses points by their ids, on every kind of geometry. For
/// particles a component stands for ids, whatever its kind, and object groups choose nothing, with a warning.
std::vector<char> chosenPoints(MDataBlock& block, const MObject& inGeometry,
                               const ChoiceAttributes& attributes, const WorldPoints& world,
                               const MString& nodeName);

} // namespace vesk::nodes
