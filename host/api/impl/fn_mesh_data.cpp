#include "host/api/impl/result.h"
#include "host/data/mesh_data.h"

#include <maya/MFnMeshData.h>

MFnMeshData::MFnMeshData(MObject& object, MStatus* status) { attach(object, status); }
MFnMeshData::MFnMeshData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnMeshData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const vesk::MeshData*>(&object) != nullptr;
}

MObject MFnMeshData::create(MStatus* status) {
    object_ = MObject(new vesk::MeshData());
    return vesk::api::answer(status, object_);
}
