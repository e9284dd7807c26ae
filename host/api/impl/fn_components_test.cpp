#include "host/data/data.h"

#include <maya/MFnComponentListData.h>
#include <maya/MFnDoubleIndexedComponent.h>
#include <maya/MFnMeshData.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MFnStringData.h>
#include <maya/MFnTripleIndexedComponent.h>

#include <gtest/gtest.h>

namespace {

MIntArray ints(std::initializer_list<int> values) {
    MIntArray array;
    for (const int value : values)
        array.append(value);
    return array;
}

MObject component(MFn::Type kind, std::initializer_list<int> elements) {
    MFnSingleIndexedComponent set;
    set.create(kind);
    EXPECT_TRUE(set.addElements(ints(elements)));
    return set.object();
}
MObject vertices(std::initializer_list<int> elements) { return component(MFn::kMeshVertComponent, elements); }

std::vector<int> elementsOf(const MObject& object) {
    MIntArray elements;
    MFnSingleIndexedComponent(object).getElements(elements);
    return vesk::storage(elements);
}

TEST(FnComponent, SingleIndexed) {
    MFnSingleIndexedComponent set(vertices({4, 0, 4}));
    EXPECT_EQ(set.elementCount(), 2);
    EXPECT_EQ(set.element(1), 4);
    EXPECT_EQ(set.element(2), -1);
    EXPECT_EQ(set.addElement(-3), MStatus::kInvalidParameter);
    EXPECT_EQ(set.componentType(), MFn::kMeshVertComponent);
    EXPECT_TRUE(set.setCompleteData(3));
    EXPECT_TRUE(set.isComplete());
    EXPECT_EQ(elementsOf(set.object()), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(set.setCompleteData(-1), MStatus::kInvalidParameter);
    int size = 0;
    EXPECT_TRUE(set.getCompleteData(size));
    EXPECT_EQ(size, 3);
    EXPECT_TRUE(set.isEqual(vertices({0, 1, 2})));
    EXPECT_TRUE(set.setComplete(false));
    EXPECT_EQ(set.getCompleteData(size), MStatus::kFailure);
    EXPECT_EQ(set.elementCount(), 3);

    MFnSingleIndexedComponent reader(MObject(set.object().hostObject(), true));
    EXPECT_EQ(reader.addElement(9), MStatus::kFailure);
    EXPECT_EQ(reader.elementCount(), 3);
}

TEST(FnComponent, SeveralIndices) {
    MFnDoubleIndexedComponent pairs;
    MStatus status;
    EXPECT_TRUE(pairs.create(MFn::kMeshVertComponent, &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    pairs.create(MFn::kSurfaceCVComponent);
    EXPECT_TRUE(pairs.addElements(ints({1, 0}), ints({0, 7})));
    EXPECT_EQ(pairs.addElements(ints({1, 0}), ints({0})), MStatus::kInvalidParameter);
    int u = 0, v = 0, w = 0;
    EXPECT_TRUE(pairs.getElement(0, u, v));
    EXPECT_EQ(u, 0);
    EXPECT_EQ(v, 7);
    EXPECT_EQ(pairs.getElement(2, u, v), MStatus::kInvalidParameter);
    EXPECT_TRUE(pairs.setCompleteData(2, 2));
    MIntArray us, vs;
    EXPECT_TRUE(pairs.getElements(us, vs));
    EXPECT_EQ(vesk::storage(us), (std::vector<int>{0, 0, 1, 1}));
    EXPECT_EQ(vesk::storage(vs), (std::vector<int>{0, 1, 0, 1}));

    MFnTripleIndexedComponent triples;
    triples.create(MFn::kLatticeComponent);
    EXPECT_TRUE(triples.addElement(3, 2, 1));
    EXPECT_TRUE(triples.getElement(0, u, v, w));
    EXPECT_EQ(w, 1);

    MFnSingleIndexedComponent wrong(pairs.object(), &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(wrong.getElements(us), MStatus::kInvalidParameter);
    EXPECT_EQ(us.length(), 0u);
    EXPECT_TRUE(MFnComponent(pairs.object()).isComplete());
    EXPECT_FALSE(MFnComponent().isComplete());
}

TEST(FnComponentList, EntriesAreCopies) {
    MFnComponentListData list;
    MStatus status;
    const MObject object = list.create();
    EXPECT_EQ(list.add(MObject::kNullObj), MStatus::kInvalidParameter);
    EXPECT_EQ(list.length(), 0u);
    const MObject added = vertices({5, 3});
    EXPECT_TRUE(list.add(added));
    EXPECT_TRUE(list.add(component(MFn::kMeshEdgeComponent, {1})));
    EXPECT_TRUE(list.add(vertices({4})));
    ASSERT_EQ(list.length(), 2u);
    EXPECT_TRUE(list[2].isNull());
    EXPECT_EQ(elementsOf(list[0]), (std::vector<int>{3, 4, 5}));
    EXPECT_EQ(elementsOf(added), (std::vector<int>{3, 5}));
    MFnSingleIndexedComponent(list[0]).addElement(100);
    EXPECT_FALSE(list.has(vertices({100})));
    EXPECT_TRUE(list.has(vertices({4})));
    EXPECT_FALSE(list.has(MObject::kNullObj, &status));
    EXPECT_EQ(status, MStatus::kInvalidParameter);

    MFnComponentListData reader(MObject(object.hostObject(), true));
    EXPECT_EQ(reader.add(added), MStatus::kFailure);
    EXPECT_EQ(reader.clear(), MStatus::kFailure);
    EXPECT_EQ(list.remove(component(MFn::kMeshPolygonComponent, {0})), MStatus::kFailure);
    EXPECT_TRUE(list.remove(vertices({3, 4, 5})));
    EXPECT_EQ(list.remove(1), MStatus::kInvalidParameter);
    EXPECT_TRUE(list.remove(0));
    EXPECT_EQ(reader.length(), 0u);

    EXPECT_EQ(MFnComponentListData(added, &status).length(), 0u) << "a component is no list";
    EXPECT_EQ(status, MStatus::kInvalidParameter);
}

TEST(FnGeometryData, GroupsAndMatrix) {
    MFnMeshData set;
    const MObject object = set.create();
    EXPECT_TRUE(set.addObjectGroup(3));
    EXPECT_TRUE(set.addObjectGroup(3));
    EXPECT_EQ(set.objectGroupCount(), 1u);
    EXPECT_EQ(set.objectGroup(0), 3u);
    MStatus status;
    EXPECT_TRUE(set.objectGroupComponent(3, &status).isNull());
    EXPECT_TRUE(status);
    EXPECT_TRUE(set.objectGroupComponent(4, &status).isNull());
    EXPECT_EQ(status, MStatus::kFailure);

    EXPECT_TRUE(set.addObjectGroupComponent(3, vertices({1})));
    EXPECT_TRUE(set.addObjectGroupComponent(3, vertices({0})));
    EXPECT_EQ(elementsOf(set.objectGroupComponent(3)), (std::vector<int>{0, 1}));
    EXPECT_EQ(set.objectGroupType(3), MFn::kMeshVertComponent);
    EXPECT_EQ(set.addObjectGroupComponent(4, vertices({1})), MStatus::kFailure);
    EXPECT_EQ(set.setObjectGroupComponent(3, MObject::kNullObj), MStatus::kInvalidParameter);
    EXPECT_TRUE(set.removeObjectGroupComponent(3, vertices({0})));

    MMatrix scaled;
    scaled[0][0] = 2;
    EXPECT_TRUE(set.matrixIsIdentity());
    EXPECT_TRUE(set.setMatrix(scaled));
    EXPECT_TRUE(set.matrixIsNotIdentity());

    MFnMeshData copy;
    copy.create();
    EXPECT_TRUE(copy.copyObjectGroups(object));
    EXPECT_TRUE(copy.changeObjectGroupId(3, 9));
    EXPECT_TRUE(set.hasObjectGroup(3));
    EXPECT_EQ(elementsOf(copy.objectGroupComponent(9)), std::vector<int>{1});

    MFnGeometryData reader(MObject(object.hostObject(), true));
    EXPECT_EQ(reader.addObjectGroup(5), MStatus::kFailure);
    EXPECT_EQ(reader.setMatrix(MMatrix::identity), MStatus::kFailure);
    EXPECT_EQ(reader.removeObjectGroup(3), MStatus::kFailure);
    MMatrix read;
    EXPECT_TRUE(reader.getMatrix(read));
    EXPECT_EQ(read[0][0], 2.0);

    MFnStringData text;
    text.create("no geometry");
    EXPECT_EQ(reader.setObject(text.object()), MStatus::kInvalidParameter);
    EXPECT_EQ(reader.addObjectGroup(1), MStatus::kInvalidParameter);
    EXPECT_FALSE(reader.hasObjectGroup(1));
    EXPECT_EQ(reader.getMatrix(read), MStatus::kInvalidParameter);
}

} // namespace
