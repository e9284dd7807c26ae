#include "host/nodes/declare.h"

#include "host/data/value_data.h"

namespace vesk::nodes {

namespace {

template <class F>
void eachBelow(Attribute& attribute, const F& visit) {
    visit(attribute);
    for (const auto& child : attribute.children)
        eachBelow(*child, visit);
}

} // namespace

AttrRef keyable(AttrRef attribute) {
    eachBelow(*attribute, [](Attribute& one) { one.keyable = true; });
    return attribute;
}

AttrRef output(AttrRef attribute) {
    eachBelow(*attribute, [](Attribute& one) { one.writable = one.storable = one.keyable = false; });
    return attribute;
}

AttrRef distance(std::string longName, std::string shortName, double centimetres) {
    return keyable(graph::unit(std::move(longName), std::move(shortName), UnitKind::Distance, centimetres));
}

AttrRef angle(std::string longName, std::string shortName, double radians) {
    return keyable(graph::unit(std::move(longName), std::move(shortName), UnitKind::Angle, radians));
}

AttrRef shortNumber(std::string longName, std::string shortName, int value) {
    return graph::number(std::move(longName), std::move(shortName), MFnNumericData::kShort, value);
}

AttrRef floatNumber(std::string longName, std::string shortName, double value) {
    return graph::number(std::move(longName), std::move(shortName), MFnNumericData::kFloat, value);
}

AttrRef triple(std::string longName, std::string shortName, UnitKind unit, double value) {
    return graph::tuple(std::move(longName), std::move(shortName), MFnNumericData::k3Double, {"X", "Y", "Z"},
                        unit, value);
}

AttrRef direction(std::string longName, std::string shortName, const MVector& value) {
    auto attribute = triple(std::move(longName), std::move(shortName));
    for (unsigned int i = 0; i < 3; ++i)
        attribute->children[i]->defaultNumber = value[i];
    return attribute;
}

AttrRef geometryPlug(const char* longName, const char* shortName) {
    auto attribute = makeRef<Attribute>();
    attribute->longName = longName;
    attribute->shortName = shortName;
    attribute->kind = graph::AttrKind::Generic;
    attribute->acceptedData = {MFnData::kMesh,        MFnData::kNurbsCurve,  MFnData::kNurbsSurface,
                               MFnData::kLattice,     MFnData::kSubdSurface, MFnData::kPluginGeometry,
                               MFnData::kVectorArray, MFnData::kPointArray};
    return attribute;
}

Cell& plug(Node& node, std::string_view name) { return node.cell(*node.type().find(name)); }

double valueOf(Node& node, std::string_view name) { return graph::pullNumber(plug(node, name)); }

MVector vectorOf(Node& node, const Attribute& triple) {
    MVector vector;
    Cell* there = node.cellIfThere(triple);
    if (there) graph::clean(*there);
    for (int i = 0; i < 3; ++i) {
        const Cell* child = there ? there->childIfThere(i) : nullptr;
        const auto at = static_cast<unsigned int>(i);
        vector[at] = child ? child->number : triple.children[at]->defaultNumber;
    }
    return vector;
}

MVector vectorOf(Node& node, std::string_view name) { return vectorOf(node, *node.type().find(name)); }

MMatrix matrixIn(Cell& cell) {
    const auto data = graph::pullAs<MatrixData>(cell);
    return data ? data->matrix() : MMatrix();
}

std::string textIn(Cell& cell) {
    const auto data = graph::pullAs<StringData>(cell);
    return data ? data->value.asChar() : "";
}

} // namespace vesk::nodes
