// Every input of every node type of the plug-in is changed in turn, with geometry and arrays at hand: what
// the outputs show then must be what they show when all is computed anew. An influence that was not declared,
// and a result that is not the same twice, show here.

#include "tests/registry_types.h"
#include "tests/session_fixture.h"

#include "host/data/array_data.h"
#include "host/data/component_list_data.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"

#include <bit>
#include <set>

namespace vesk::tests {

namespace {

using graph::Cell;

/// What a plug holds, bit by bit.
class Print {
  public:
    void add(double value) { put(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value)); }
    void add(const MPoint& p) { addEach({p.x, p.y, p.z, p.w}); }
    void add(const MVector& v) { addEach({v.x, v.y, v.z}); }
    void add(const MColor& c) { addEach({c.r, c.g, c.b, c.a}); }
    template <class Items>
    void addAll(const Items& items) {
        add(static_cast<double>(items.size()));
        for (const auto& item : items)
            add(item);
    }
    void add(const geom::Mesh& mesh) {
        add(mesh.vertexCount());
        for (int v = 0; v < mesh.vertexCount(); ++v)
            add(mesh.point(v));
        addAll(mesh.topology().faceVertices());
        for (int set = 0; set < mesh.colorSetCount(); ++set)
            addAll(mesh.cornerColors(set));
    }
    void add(const Data* data) {
        if (!data) return add(-1);
        add(static_cast<double>(data->apiType()));
        if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(data)) addAll(doubles->values.read());
        if (const auto* ints = dynamic_cast<const IntArrayData*>(data)) addAll(ints->values.read());
        if (const auto* vectors = dynamic_cast<const VectorArrayData*>(data)) addAll(vectors->values.read());
        if (const auto* points = dynamic_cast<const PointArrayData*>(data)) addAll(points->values.read());
        if (const auto* mesh = dynamic_cast<const MeshData*>(data)) add(mesh->geometry());
        if (const auto* curve = dynamic_cast<const NurbsCurveData*>(data)) addAll(curve->geometry().cvs());
        if (const auto* numbers = dynamic_cast<const NumericData*>(data)) addAll(numbers->numbers());
        if (const auto* list = dynamic_cast<const ComponentListData*>(data)) {
            for (const auto& text : list->texts())
                bytes_ += text + ' ';
        }
    }
    void add(const Cell& cell) {
        if (cell.isLeaf()) return cell.attr.isNumber() ? add(cell.number) : add(cell.data.get());
        for (const auto& below : cell.children) {
            if (below) add(*below);
        }
    }
    const std::string& bytes() const { return bytes_; }

  private:
    void addEach(std::initializer_list<double> values) {
        for (const double value : values)
            add(value);
    }
    void put(std::uint64_t bits) { bytes_.append(reinterpret_cast<const char*>(&bits), sizeof bits); }

    std::string bytes_;
};

class Influences : public PluginTest {
  protected:
    /// Something of each kind to be connected: a grid of 9 vertices, a curve of 9 CVs, arrays of 9.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -sx 2 -sy 2 -w 2 -h 2 -n sheet; polySphere -sx 6 -sy 4 -n ball; move 0 0.2 0 ball;"
            "curve -d 1 -p 0 0 0 -p 1 0 0 -p 2 1 0 -p 3 0 0 -p 4 0 1 -p 5 0 0 -p 6 0 0 -p 7 2 0 -p 8 0 0 -n "
            "line;"
            "createNode transform -n held;"
            "addAttr -ln doubles -dt doubleArray held; addAttr -ln others -dt doubleArray held; addAttr -ln "
            "vectors -dt vectorArray held;"
            "addAttr -ln points -dt pointArray held; addAttr -ln ints -dt Int32Array held;"
            "addAttr -ln list -dt componentList held;"
            "setAttr held.doubles -type doubleArray 9 .1 .9 .3 .5 .2 .8 .4 .6 .7;"
            "setAttr held.others -type doubleArray 9 1 2 3 4 5 6 7 8 9;"
            "setAttr held.vectors -type vectorArray 9 0 1 0 1 0 0 0 0 1 1 1 0 0 1 1 1 0 1 2 0 0 0 2 0 0 0 2;"
            "setAttr held.points -type pointArray 9 0 1 0 1 1 0 0 1 0 0 1 1 1 1 0 1 0 1 1 1 1 0 1 1 2 0 0 1 "
            "0 2 "
            "0 1 0 0 2 1;"
            "setAttr held.ints -type Int32Array 3 1 4 5; setAttr held.list -type componentList 1 "
            "\"vtx[2:6]\";");
    }

    /// The plug above that goes with an input of data; empty if none does.
    static std::string sourceFor(const graph::Attribute& input) {
        const std::pair<MFnData::Type, const char*> sources[] = {
            {MFnData::kMesh, input.longName == "inMesh" || input.longName == "inGeometry"
                                 ? "sheetShape.worldMesh[0]"
                                 : "ballShape.worldMesh[0]"},
            {MFnData::kComponentList, "held.list"},
            {MFnData::kDoubleArray, input.longName.ends_with("2") ? "held.others" : "held.doubles"},
            {MFnData::kVectorArray, "held.vectors"},
            {MFnData::kPointArray, "held.points"},
            {MFnData::kIntArray, "held.ints"},
            {MFnData::kNurbsCurve, "lineShape.worldSpace[0]"}};
        for (const auto& [kind, plug] : sources) {
            if (input.accepts(kind)) return plug;
        }
        return {};
    }

    static bool isInput(const graph::Attribute& attribute) {
        return attribute.writable && !attribute.array && attribute.multiDepth() == 0;
    }

    /// Numbers other than the present one that an input may hold without making the world large.
    static std::vector<double> others(const graph::Attribute& input) {
        std::set<double> values;
        if (input.kind == graph::AttrKind::Enum) {
            for (const auto& field : input.fields)
                values.insert(field.value);
        } else {
            const double low = input.min.value_or(input.softMin.value_or(input.defaultNumber - 1));
            const double high = input.max.value_or(input.softMax.value_or(input.defaultNumber + 1));
            for (const double value : {low, high, input.defaultNumber + 1, input.defaultNumber - 0.5})
                values.insert(input.coerced(std::clamp(value, low, std::min(high, low + 10))));
        }
        values.erase(input.defaultNumber);
        return {values.begin(), values.end()};
    }

    static std::string show(const std::vector<Cell*>& outputs) {
        Print print;
        for (Cell* output : outputs) {
            graph::clean(*output);
            print.add(*output);
        }
        return print.bytes();
    }
    static std::string showAnew(const std::vector<Cell*>& outputs) {
        for (Cell* output : outputs)
            output->walk([](Cell& cell) { graph::markDirty(cell); });
        return show(outputs);
    }
};

} // namespace

TEST_F(Influences, OutputsFollowEveryInput) {
    int changes = 0, seen = 0;
    for (const auto* type : registeredTypes(*session)) {
        if (type->name().ends_with("Manip")) continue;
        run("createNode " + type->name() + " -n tried");
        graph::Node* node = session->scene().find("tried");
        ASSERT_NE(node, nullptr) << type->name();
        std::vector<Cell*> outputs;
        std::vector<const graph::Attribute*> inputs, numbers;
        for (const auto* attribute : ownAttributes(*type)) {
            if (type->isComputed(*attribute)) {
                if (!attribute->parent) outputs.push_back(&node->cell(*attribute));
            } else if (isInput(*attribute)) {
                inputs.push_back(attribute);
                if (attribute->isNumber() && !(attribute->parent && attribute->parent->array))
                    numbers.push_back(attribute);
            }
        }
        for (const auto* input : inputs) {
            const std::string source = input->isData() ? sourceFor(*input) : "";
            if (!source.empty()) run("connectAttr " + source + " tried." + input->longName);
        }
        // From the defaults, and with every switch the other way, but for one that makes results depend on
        // those before.
        for (const bool switched : {false, true}) {
            const auto start = [&](const graph::Attribute& input) {
                const bool isSwitch = input.numericType == MFnNumericData::kBoolean &&
                                      input.longName != "envelope" && input.longName != "keepHistory";
                return switched && isSwitch ? 1 - input.defaultNumber : input.defaultNumber;
            };
            for (const auto* input : numbers)
                ASSERT_TRUE(graph::storeNumber(node->cell(*input), start(*input)));
            const std::string usual = show(outputs);
            for (const auto* input : numbers) {
                Cell& cell = node->cell(*input);
                for (const double value : others(*input)) {
                    ASSERT_TRUE(graph::storeNumber(cell, value)) << type->name() << "." << input->longName;
                    const std::string shown = show(outputs);
                    EXPECT_TRUE(shown == showAnew(outputs))
                        << type->name() << "." << input->longName << " = " << value;
                    ++changes;
                    seen += shown != usual;
                }
                ASSERT_TRUE(graph::storeNumber(cell, start(*input)));
            }
        }
        for (const auto* input : inputs) {
            const std::string source = input->isData() ? sourceFor(*input) : "";
            if (source.empty()) continue;
            run("disconnectAttr " + source + " tried." + input->longName);
            const std::string shown = show(outputs);
            EXPECT_TRUE(shown == showAnew(outputs)) << type->name() << "." << input->longName << " cut";
        }
        run("delete tried");
    }
    // Of so many changes some must be seen.
    EXPECT_GT(changes, 700);
    EXPECT_GT(seen, 100);
    // What the nodes think of such inputs is for their own tests.
    (void)complaints();
}

} // namespace vesk::tests
