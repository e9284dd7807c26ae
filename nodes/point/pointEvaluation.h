#pragma once
// One compute of `point`: both geometries in, the blocks run, geometry and arrays out.

#include "nodes/common/choice.h"

#include "nodes/point/pointGeometry.h"
#include "nodes/point/pointProcedures.h"

#include <span>

class MPxNode;

namespace vesk::nodes {

/// Which blocks run, and whether what they return goes into the geometry. By `PointBlock`.
struct PointSwitches {
    bool run[6] = {};
    bool apply[6] = {};

    bool runs(PointBlock block) const { return run[static_cast<int>(block)]; }
    bool applies(PointBlock block) const { return apply[static_cast<int>(block)]; }
    bool any() const;
};

/// An output array, the block that it belongs to, and what empties it while that block is switched off.
struct BlockArray {
    const MObject* attribute;
    PointBlock block;
    void (*putEmpty)(MDataBlock& block, const MObject& attribute);
};
/// All but `outIdPP`, which belongs to every block.
std::span<const BlockArray> blockArrays();

class PointEvaluation {
  public:
    PointEvaluation(const MPxNode& node, MDataBlock& block, const PointSwitches& switches);

    /// Fills all outputs, unless a geometry turns out to be periodic: then there is a warning and the outputs
    /// stay as they are.
    void run();

  private:
    /// Attributes of one of the two geometries.
    struct Inputs {
        const MObject &geometry, &colorSet, &uvSet, &weights, &colors, &normals, &radii;
        const char* periodicWarning;
        const char* lengthWarning;
    };
    static Inputs firstInputs();
    static Inputs secondInputs();

    bool prepare(const Inputs& inputs, EditedGeometry& geometry);
    PointSelection selection();
    PointChannels load(const EditedGeometry& geometry, const Inputs& inputs);
    MVectorArray normalsOf(const EditedGeometry& geometry, const Inputs& inputs);
    PointScript script();
    void publishInputs();
    void publishResults();

    void runBlocks();
    bool call(PointBlock block, const PointScript& script, unsigned count, MDoubleArray& result);
    void take(PointBlock block, const MDoubleArray& result);
    void takeMap(const MDoubleArray& result);
    void clear(PointBlock block);

    std::string plugName(const MObject& attribute) const;
    MString textOf(const MObject& attribute);
    /// Fills an output with a new data object, which is returned.
    template <class Array>
    MObject publish(const MObject& attribute, Array values);
    void place(const MObject& attribute, const MObject& data);

    const MPxNode& node_;
    MDataBlock& block_;
    PointSwitches switches_;
    MString name_;
    EditedGeometry first_, second_;
    MIntArray ids_; ///< chosen points
    UvSelection uvs_;
    PointChannels work_; ///< of the first geometry; results go into it
};

} // namespace vesk::nodes
