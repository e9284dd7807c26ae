#include "host/data/geometry_data.h"

namespace vesk {

Ref<GeometryData> GeometryData::transformed() {
    if (!hasMatrix()) return this;
    if (!transformed_) {
        transformed_ = applied(matrix_);
        transformed_->groups_ = groups_;
        // Set on a plug, it must be cloned: what this object keeps is not to be written.
        transformed_->markPlaced();
    }
    return transformed_;
}

} // namespace vesk
