#include "host/commands/ui_units.h"

#include <maya/MAngle.h>
#include <maya/MDistance.h>

namespace vesk::commands {

using graph::UnitKind;

double toInternal(const graph::Scene& scene, UnitKind kind, double uiValue) {
    switch (kind) {
    case UnitKind::Angle: return MAngle::uiToInternal(uiValue);
    case UnitKind::Distance: return MDistance::uiToInternal(uiValue);
    case UnitKind::Time: return uiValue * scene.ticksPerFrame();
    case UnitKind::None: break;
    }
    return uiValue;
}

double toUi(const graph::Scene& scene, UnitKind kind, double internalValue) {
    switch (kind) {
    case UnitKind::Angle: return MAngle::internalToUI(internalValue);
    case UnitKind::Distance: return MDistance::internalToUI(internalValue);
    case UnitKind::Time: return internalValue / scene.ticksPerFrame();
    case UnitKind::None: break;
    }
    return internalValue;
}

} // namespace vesk::commands
