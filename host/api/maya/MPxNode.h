#pragma once

#include <maya/MDataBlock.h>
#include <maya/MDataHandle.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MPlugArray.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

namespace vesk::api {
class PluginHost;
} // namespace vesk::api

/// Base of the nodes that plug-ins add. A type's `initialize` makes its attributes with `addAttribute` and
/// `attributeAffects`; these fail outside of it. The virtual functions may throw nothing; what they throw all
/// the same is caught and logged.
class MPxNode {
  public:
    /// What a node type is to be, for `MFnPlugin::registerNode`.
    enum Type {
        kDependNode = 0,
        kLocatorNode,
        kDeformerNode,
        kManipContainer,
        kSurfaceShape,
        kFieldNode,
        kEmitterNode,
        kSpringNode,
        kIkSolverNode,
        kHardwareShader,
        kHwShaderNode,
        kTransformNode,
        kObjectSet,
        kFluidEmitterNode,
        kImagePlaneNode,
        kLast
    };

    MPxNode() = default;
    virtual ~MPxNode();
    MPxNode(const MPxNode&) = delete;
    MPxNode& operator=(const MPxNode&) = delete;

    /// After the node is in the scene, where its attributes can be set; the constructor is too early for
    /// that.
    virtual void postConstructor() {}
    /// Fills the plug that was asked for. `kUnknownParameter` leaves it to the base class.
    virtual MStatus compute(const MPlug& plug, MDataBlock& block);
    /// More plugs that get dirty with `plug`. Must not evaluate anything.
    virtual MStatus setDependentsDirty(const MPlug& plug, MPlugArray& plugs);
    /// After a wire was made or cut. `kUnknownParameter` leaves it to the base class.
    virtual MStatus connectionMade(const MPlug& plug, const MPlug& otherPlug, bool asSource);
    virtual MStatus connectionBroken(const MPlug& plug, const MPlug& otherPlug, bool asSource);
    virtual bool isAbstractClass() const { return false; }
    virtual Type type() const { return kDependNode; }

    /// Null in the constructor and after the node was deleted.
    MObject thisMObject() const;
    MString name() const;
    MString typeName() const;
    MTypeId typeId() const;
    /// The node's data, at the current time whatever the context.
    MDataBlock forceCache(MDGContext& context = MDGContext::fsNormal);
    /// Says that `compute` may run beside that of other nodes. Kept; this host evaluates on one thread.
    void setMPSafe(bool safe) { mpSafe_ = safe; }
    bool isMPSafe() const { return mpSafe_; }
    /// Accepted and without effect: nodes are never deleted for want of wires, and are always written.
    MStatus setExistWithoutInConnections(bool) { return {}; }
    MStatus setExistWithoutOutConnections(bool) { return {}; }
    MStatus setDoNotWrite(bool) { return {}; }

    /// With its children. `kFailure` outside of `initialize`, and when a name is taken.
    static MStatus addAttribute(const MObject& attribute);
    /// A change of the first makes the second dirty. Both must have been added; the second must not be
    /// keyable.
    static MStatus attributeAffects(const MObject& whenChanges, const MObject& isAffected);

    static MObject state, caching, message, isHistoricallyInteresting;

  private:
    friend class vesk::api::PluginHost;
    vesk::api::PluginHost* host_ = nullptr;
    bool mpSafe_ = false;
};
