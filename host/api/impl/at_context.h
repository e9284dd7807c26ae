#pragma once
// Evaluation at another time than the current one.

#include "host/graph/evaluate.h"
#include "host/graph/scene.h"

#include <maya/MDGContext.h>

namespace vesk::api {

/// Calls `read` with the scene's time at the context's; values and dirt are put back afterwards.
template <class Read>
auto atContext(const MDGContext& context, graph::Scene& scene, Read read) {
    MTime when;
    if (!context.getTime(when)) return read();
    const graph::Preserve untouched(scene);
    scene.setFrame(when.as(MTime::kSeconds) * scene.framesPerSecond());
    return read();
}

} // namespace vesk::api
