#pragma once
// Elements of a mesh of one kind to those of another.

#include <maya/MIntArray.h>
#include <maya/MObject.h>
#include <maya/MString.h>

namespace vesk::nodes {

enum class MeshElement { kVertex, kEdge, kFace, kMap };

/// The ids that a component of this kind holds; of a complete one all that the mesh has. Empty for what is no
/// single indexed component.
MIntArray elementsOn(const MObject& mesh, const MObject& component, MeshElement kind);

/// What touches the elements, in the order met and with repetitions; `from` and `to` differ. An empty `uvSet`
/// is the current one.
///
/// Two rules are part of the contract. Of vertices, edges and faces only the number counts: with k of them
/// given, the first k of the mesh are converted. Of UVs the mesh is walked once for all of them: the first
/// finds what holds it, those behind it nothing any more.
MIntArray convertElements(const MObject& mesh, const MIntArray& elements, MeshElement from, MeshElement to,
                          const MString& uvSet);

} // namespace vesk::nodes
