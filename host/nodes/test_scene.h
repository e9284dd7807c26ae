#pragma once
// What the tests of node types share: a scene with all of them, and a log that must stay empty.

#include "host/core/log.h"
#include "host/data/packed_data.h"
#include "host/data/value_data.h"
#include "host/graph/scene.h"
#include "host/nodes/declare.h"
#include "host/nodes/register.h"

#include <gtest/gtest.h>

#include <numbers>
#include <stdexcept>

namespace vesk::nodes {

inline constexpr double kDegree = std::numbers::pi / 180;

class NodesTest : public ::testing::Test {
  protected:
    void SetUp() override {
        log().keepEntries(true);
        (void)log().take();
        graph::registerBaseTypes(types);
        registerHostTypes(types);
        scene = std::make_unique<graph::Scene>(types);
    }
    void TearDown() override {
        scene.reset();
        for (const auto& entry : log().take())
            ADD_FAILURE() << "unannounced message: " << entry.text;
        log().keepEntries(false);
    }

    template <class T = Node>
    T& make(const char* type, const char* name = "", Node* parent = nullptr) {
        return dynamic_cast<T&>(
            *scene->create(*types.find(type), name, static_cast<graph::DagNode*>(parent)));
    }
    /// By name or path, as commands write it: `a.tx`, `a.ktv[2].kv`.
    Cell& at(const std::string& name) {
        const auto found = graph::findPlug(*scene, name);
        Cell* cell = found.error.empty() ? found.plug.cell() : nullptr;
        if (!cell) throw std::runtime_error(found.error + " (" + name + ")");
        return *cell;
    }
    void set(const std::string& name, double value) {
        EXPECT_EQ(graph::storeNumber(at(name), value).error, "") << name;
    }
    void set(const std::string& name, std::initializer_list<double> values) {
        int child = 0;
        for (const double value : values)
            EXPECT_EQ(graph::storeNumber(at(name).child(child++), value).error, "") << name;
    }
    void setData(const std::string& name, Ref<Data> data) {
        EXPECT_EQ(graph::storeData(at(name), std::move(data)).error, "") << name;
    }
    void setText(const std::string& name, const char* value) {
        setData(name, makeRef<StringData>(MString(value)));
    }
    void connect(const std::string& from, const std::string& to) {
        EXPECT_EQ(graph::connect(at(from), at(to)).error, "") << from << " -> " << to;
    }
    double get(const std::string& name) { return graph::pullNumber(at(name)); }
    template <class T>
    Ref<T> getData(const std::string& name) {
        return graph::pullAs<T>(at(name));
    }
    /// The texts of what was logged since, which does not fail the test any more.
    std::vector<std::string> messages() {
        std::vector<std::string> texts;
        for (auto& entry : log().take())
            texts.push_back(std::move(entry.text));
        return texts;
    }

    graph::TypeRegistry types;
    std::unique_ptr<graph::Scene> scene;
};

template <class T>
Ref<PackedData<T>> packed(int stride, std::vector<T> values) {
    auto data = makeRef<PackedData<T>>(stride);
    data->write() = std::move(values);
    return data;
}

/// Points differ by less than what single precision leaves.
template <class A, class B>
::testing::AssertionResult isNear(const A& a, const B& b) {
    const double off = std::max({std::abs(a.x - b.x), std::abs(a.y - b.y), std::abs(a.z - b.z)});
    if (off < 1e-6) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") is not (" << b.x
                                         << ", " << b.y << ", " << b.z << ")";
}

} // namespace vesk::nodes
