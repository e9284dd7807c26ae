#pragma once

#include <maya/MColor.h>
#include <maya/MStatus.h>

/// A view of the scene. There is no viewport to draw in yet: calls that draw fail with `kFailure`.
class M3dView {
  public:
    enum DisplayStyle { kBoundingBox, kFlatShaded, kGouraudShaded, kWireFrame, kPoints };
    enum DisplayStatus {
        kActive,
        kLive,
        kDormant,
        kInvisible,
        kHilite,
        kTemplate,
        kActiveTemplate,
        kActiveComponent,
        kLead,
        kIntermediateObject,
        kActiveAffected,
        kNoStatus
    };
    enum ColorTable { kActiveColors = 0, kDormantColors = 2, kTemplateColor = 5, kBackgroundColor = 6 };

    /// Calls of OpenGL stand between these two.
    MStatus beginGL() { return MS::kFailure; }
    MStatus endGL() { return MS::kFailure; }
    /// A colour of the palette by its index, from 0.
    MStatus setDrawColor(unsigned int, ColorTable = kActiveColors) { return MS::kFailure; }
    MStatus setDrawColor(const MColor&) { return MS::kFailure; }
};
