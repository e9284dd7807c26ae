#pragma once

#include <maya/MAngle.h>
#include <maya/MDGContext.h>
#include <maya/MDistance.h>
#include <maya/MIntArray.h>
#include <maya/MObject.h>
#include <maya/MString.h>
#include <maya/MTime.h>
#include <maya/MTypes.h>

class MDataBlock;
class MDataHandle;
class MPlugArray;

namespace vesk::graph {
class Cell;
struct Plug;
} // namespace vesk::graph

/// An attribute of a node, with an index for each multi on the way; an address, so it stays valid when
/// elements come and go. Calls on a null plug, or on one whose node was deleted, fail with
/// `kInvalidParameter` or `kFailure`.
class MPlug {
  public:
    MPlug() = default;
    /// The whole attribute. Indices of multi ancestors are open: see `selectAncestorLogicalIndex`.
    MPlug(const MObject& node, const MObject& attribute);

    bool operator==(const MPlug& other) const;
    bool operator!=(const MPlug& other) const { return !(*this == other); }
    /// Compares the attribute alone.
    bool operator==(const MObject& attribute) const { return attribute_ == attribute; }
    bool operator!=(const MObject& attribute) const { return attribute_ != attribute; }

    MStatus setAttribute(const MObject& attribute);
    MObject attribute(MStatus* status = nullptr) const;
    MObject node(MStatus* status = nullptr) const;
    bool isNull(MStatus* status = nullptr) const;
    /// `node.attribute` as commands take it.
    MString name(MStatus* status = nullptr) const;
    MString info(MStatus* status = nullptr) const { return name(status); }
    /// The attribute's name, with ancestors only where they carry an index. Short names, unless
    /// `useLongNames`.
    MString partialName(bool includeNodeName = false, bool includeNonMandatoryIndices = false,
                        bool includeInstancedIndices = false, bool useAlias = false,
                        bool useFullAttributePath = false, bool useLongNames = false,
                        MStatus* status = nullptr) const;

    // --- shape ---

    bool isArray(MStatus* status = nullptr) const;
    bool isElement(MStatus* status = nullptr) const;
    bool isCompound(MStatus* status = nullptr) const;
    bool isChild(MStatus* status = nullptr) const;
    bool isDynamic(MStatus* status = nullptr) const;

    /// Elements in the data block; `evaluateNumElements` brings them up to date first.
    unsigned int numElements(MStatus* status = nullptr) const;
    unsigned int evaluateNumElements(MStatus* status = nullptr);
    unsigned int numChildren(MStatus* status = nullptr) const;
    unsigned int numConnectedElements(MStatus* status = nullptr) const;
    unsigned int numConnectedChildren(MStatus* status = nullptr) const;
    /// Logical indices of elements that are connected or set, ascending; their count.
    unsigned int getExistingArrayAttributeIndices(MIntArray& indices, MStatus* status = nullptr);

    MPlug parent(MStatus* status = nullptr) const;
    MPlug array(MStatus* status = nullptr) const;
    MPlug child(unsigned int position, MStatus* status = nullptr) const;
    MPlug child(const MObject& attribute, MStatus* status = nullptr) const;
    MPlug elementByLogicalIndex(unsigned int index, MStatus* status = nullptr) const;
    MPlug elementByPhysicalIndex(unsigned int position, MStatus* status = nullptr) const;
    /// The element at a position among those with a wire on themselves or below.
    MPlug connectionByPhysicalIndex(unsigned int position, MStatus* status = nullptr) const;
    MPlug operator[](unsigned int position) const { return elementByPhysicalIndex(position); }
    unsigned int logicalIndex(MStatus* status = nullptr) const;
    /// Chooses the element of a multi on the way to this plug, or of the plug's own when none is named.
    MStatus selectAncestorLogicalIndex(unsigned int index, const MObject& multi = MObject::kNullObj);

    // --- wires ---

    bool isConnected(MStatus* status = nullptr) const;
    bool isSource(MStatus* status = nullptr) const;
    bool isDestination(MStatus* status = nullptr) const;
    /// Fills the array with what feeds this plug, if `asDestination`, and what it feeds, if `asSource`.
    /// True when there is any wire, even of a kind that was not asked for.
    bool connectedTo(MPlugArray& plugs, bool asDestination, bool asSource, MStatus* status = nullptr) const;

    // --- flags ---

    bool isLocked(MStatus* status = nullptr) const;
    MStatus setLocked(bool locked);
    bool isKeyable(MStatus* status = nullptr) const;
    MStatus setKeyable(bool keyable);
    bool isChannelBoxFlagSet(MStatus* status = nullptr) const;
    MStatus setChannelBox(bool shown);

    // --- reading: evaluates what is dirty ---

    MStatus getValue(MObject& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(double& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(float& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(MInt64& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(int& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(short& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(bool& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(char& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(MDistance& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(MAngle& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(MTime& value, MDGContext& context = MDGContext::fsNormal) const;
    MStatus getValue(MString& value, MDGContext& context = MDGContext::fsNormal) const;

    MObject asMObject(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    double asDouble(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    float asFloat(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    MInt64 asInt64(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    int asInt(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    short asShort(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    bool asBool(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    char asChar(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    MDistance asMDistance(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    MAngle asMAngle(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    MTime asMTime(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    MString asString(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;
    /// A copy of the plug's data, to be handed back with `destructHandle`.
    MDataHandle asMDataHandle(MDGContext& context = MDGContext::fsNormal, MStatus* status = nullptr) const;

    // --- writing: dirties what depends on the plug. `kFailure` when it is locked or fed by a wire ---

    MStatus setValue(const MObject& value);
    MStatus setValue(double value);
    MStatus setValue(float value);
    MStatus setValue(MInt64 value);
    MStatus setValue(int value);
    MStatus setValue(short value);
    MStatus setValue(bool value);
    MStatus setValue(char value);
    MStatus setValue(const MDistance& value);
    MStatus setValue(const MAngle& value);
    MStatus setValue(const MTime& value);
    MStatus setValue(const MString& value);
    MStatus setValue(const char* value);
    MStatus setValue(MDataHandle& value);

    MStatus setMObject(const MObject& value) { return setValue(value); }
    MStatus setDouble(double value) { return setValue(value); }
    MStatus setFloat(float value) { return setValue(value); }
    MStatus setInt64(MInt64 value) { return setValue(value); }
    MStatus setInt(int value) { return setValue(value); }
    MStatus setShort(short value) { return setValue(value); }
    MStatus setBool(bool value) { return setValue(value); }
    MStatus setChar(char value) { return setValue(value); }
    MStatus setMDistance(const MDistance& value) { return setValue(value); }
    MStatus setMAngle(const MAngle& value) { return setValue(value); }
    MStatus setMTime(const MTime& value) { return setValue(value); }
    MStatus setString(const MString& value) { return setValue(value); }
    MStatus setMDataHandle(const MDataHandle& value);

    /// A handle on a copy of the plug's data: fill it, hand it to `setValue`, give it back to
    /// `destructHandle`.
    MDataHandle constructHandle(MDataBlock& block) const;
    void destructHandle(MDataHandle& handle) const;

    /// For the host.
    explicit MPlug(const vesk::graph::Plug& plug);
    explicit MPlug(const vesk::graph::Cell& cell);
    vesk::graph::Plug hostPlug() const;

  private:
    static constexpr int kMaxDepth = 4;
    MObject node_, attribute_;
    int indices_[kMaxDepth] = {-1, -1, -1, -1}; ///< of the multis from the outside in; -1: not chosen
    int depth_ = 0;                             ///< how many of them count
};
