// A small plug-in in several builds: PROBE_GOOD works, each of the others misbehaves in one way.

#if defined(PROBE_NO_VERSION) || defined(PROBE_WRONG_VERSION)
#define MNoVersionString
#endif
#include <maya/MDataBlock.h>
#include <maya/MDataHandle.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnPlugin.h>
#include <maya/MPlug.h>
#include <maya/MPxNode.h>

#include <stdexcept>

#ifdef PROBE_WRONG_VERSION
extern "C" {
extern const char MApiVersion[];
const char MApiVersion[] = "201600";
}
#endif

namespace {

/// `twice` is two times `amount`.
class Tally : public MPxNode {
  public:
    static void* create() { return new Tally; }
    static MStatus initialize() {
#ifdef PROBE_FAILING
        return MStatus::kFailure;
#endif
        MFnNumericAttribute attribute;
        amount = attribute.create("amount", "am", MFnNumericData::kDouble, 1);
        twice = attribute.create("twice", "tw", MFnNumericData::kDouble);
        attribute.setWritable(false);
        attribute.setStorable(false);
        addAttribute(amount);
        addAttribute(twice);
        return attributeAffects(amount, twice);
    }
    MStatus compute(const MPlug& plug, MDataBlock& block) override {
        if (plug != twice) return MStatus::kUnknownParameter;
        block.outputValue(twice).set(2 * block.inputValue(amount).asDouble());
        block.setClean(plug);
        return MStatus::kSuccess;
    }

    static MObject amount, twice;
};
MObject Tally::amount, Tally::twice;

constexpr unsigned kId = 0x7f0a1;
#ifdef PROBE_DUPLICATE
constexpr const char* kName = "tallyToo";
#else
constexpr const char* kName = "tally";
#endif

} // namespace

extern "C" __attribute__((visibility("default"))) MStatus initializePlugin(MObject object) {
#ifdef PROBE_THROWS
    throw std::runtime_error("out of luck");
#endif
    MFnPlugin plugin(object, "Probe works", "2.5", "Any");
    return plugin.registerNode(kName, MTypeId(kId), Tally::create, Tally::initialize);
}

extern "C" __attribute__((visibility("default"))) MStatus uninitializePlugin(MObject object) {
    MFnPlugin plugin(object);
    return plugin.deregisterNode(MTypeId(kId));
}
