#pragma once
// The steps that every compute repeats. A node names the variant it has; what it does with the answer is its
// own.

#include <maya/MDataBlock.h>
#include <maya/MDataHandle.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MString.h>

class MPxNode;

namespace vesk::nodes {

/// Values of the host's node state.
enum NodeState : short { kNormal = 0, kHasNoEffect = 1, kBlocking = 2 };

/// Values of `coordinateSystem`.
enum CoordinateSystem : short { kWorldCoordinates = 0, kObjectCoordinates = 1 };

/// The node's state as the plain form reads it: through the output side, nothing is evaluated.
short nodeState(MDataBlock& block);

/// The same through the input side, as a few nodes do: evaluates what drives the state.
short nodeStateAsInput(MDataBlock& block);

/// Whether anything is connected to this attribute of the node itself.
bool isConnected(const MPxNode& node, const MObject& attribute);

/// The node's own name: what stands before the point in a name of one of its plugs.
MString nodeName(const MPxNode& node, const MObject& anyAttribute);

/// What a node with particles at its input says to object groups.
inline constexpr const char* kNoParticleGroups =
    "Object groups are not supported for particles. Use components list instead.";

/// Writes `nodeName: text` as a warning of the host.
void warn(const MString& nodeName, const char* text);

/// The geometry of a generic input in the space of `coordinateSystem`: world takes the transformed form,
/// object the plain one. Null for data that is no mesh, curve or surface.
MObject geometryIn(MDataHandle& handle, short coordinateSystem);

/// Of a component list only the first entry counts; what is no list stands for itself.
MObject firstComponent(const MObject& components);
/// What an object group of the geometry's data holds; null when the id is negative or there is no such group.
MObject objectGroupIn(const MObject& geometryData, int groupId);

/// Deletes temporary nodes of the host when it goes out of scope, and sets the command echo back.
class QuietCommands {
  public:
    QuietCommands();
    ~QuietCommands();
    QuietCommands(const QuietCommands&) = delete;
    QuietCommands& operator=(const QuietCommands&) = delete;

  private:
    int echo_;
};

/// A mesh in place of the surface that feeds `input`, with one vertex a CV, made by the host's own
/// tessellation through temporary nodes. Its normals follow the surface's, or run against them as the host's
/// tessellation has them by itself. Null when nothing feeds the plug.
MObject surfaceAsMesh(const MPlug& input, bool matchNormals = true);

/// How `curveAsMesh` makes its ribbon.
struct RibbonRecipe {
    bool rebuild = true;             ///< multiple end knots first, so that a periodic curve opens
    bool alongProfileNormal = false; ///< swept along the curve's own normal instead of up
};
/// A ribbon in place of the curve that feeds `input`: two vertices a CV, the even ones at the CVs.
MObject curveAsMesh(const MPlug& input, const RibbonRecipe& recipe = {});

/// A new array data object for an output, filled in place and then handed over, so that one allocation does.
template <class FunctionSet, class Array>
class ArrayOutput {
    FunctionSet set_;
    MObject data_{set_.create()};

  public:
    Array values{set_.array()};

    /// Places the data and marks the output clean: one compute serves all outputs that it fills.
    void handOver(MDataBlock& block, const MObject& attribute) {
        MDataHandle handle = block.outputValue(attribute);
        handle.set(data_);
        handle.setClean();
    }
};

} // namespace vesk::nodes
