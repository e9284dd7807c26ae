#pragma once

#include "nodes/common/mesh_links.h"

#include <maya/MPxDeformerNode.h>

/// Relaxes the vertices of its set by averaging neighbours, and can put them back onto the surface.
class smooth : public MPxDeformerNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject iterations, lookup, preserveBoundary, preserveVolume, maxDistance, blend, mode,
        clearConnectivityCache;

  private:
    /// Who is averaged with whom, one list a vertex. Stays while the mesh has as many vertices, whatever
    /// becomes of its topology.
    vesk::nodes::Links neighbors_;
    int cachedLookup_ = 0;

    void keepNeighbors(const MObject& mesh, int lookupNow, bool clear);
};
