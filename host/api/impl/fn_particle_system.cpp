#include <maya/MFnParticleSystem.h>

#include "host/api/impl/access.h"
#include "host/data/array_data.h"
#include "host/graph/evaluate.h"

#include <maya/MVectorArray.h>

namespace {

void read(const MObject& object, std::string_view name, MVectorArray& values) {
    values.clear();
    auto* node = vesk::api::nodeOf(object);
    const auto* attribute = node ? node->findAttribute(name) : nullptr;
    if (!attribute) return;
    const auto data = vesk::graph::pullAs<vesk::VectorArrayData>(node->cell(*attribute));
    if (data) vesk::storage(values) = data->values.read();
}

} // namespace

bool MFnParticleSystem::isValid() const { return vesk::api::nodeOf(object_) != nullptr; }

unsigned int MFnParticleSystem::count() const {
    MVectorArray positions;
    position(positions);
    return positions.length();
}

void MFnParticleSystem::position(MVectorArray& positions) const { read(object_, "position", positions); }
void MFnParticleSystem::velocity(MVectorArray& velocities) const { read(object_, "velocity", velocities); }
