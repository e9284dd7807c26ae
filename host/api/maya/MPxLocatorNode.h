#pragma once

#include <maya/M3dView.h>
#include <maya/MBoundingBox.h>
#include <maya/MDagPath.h>
#include <maya/MPxNode.h>

/// Base of shapes that plug-ins draw. The host serves the attributes below.
class MPxLocatorNode : public MPxNode {
  public:
    MPxLocatorNode() = default;
    Type type() const override { return kLocatorNode; }

    /// `path` ends at the locator's transform, and the space is the locator's own.
    virtual void draw(M3dView&, const MDagPath&, M3dView::DisplayStyle, M3dView::DisplayStatus) {}
    virtual bool isBounded() const { return false; }
    /// In the locator's own space; asked for when `isBounded`.
    virtual MBoundingBox boundingBox() const { return {}; }
    virtual bool isTransparent() const { return false; }
    /// Whether it is drawn after the rest of the scene; needs `isTransparent`.
    virtual bool drawLast() const { return false; }
    virtual bool excludeAsLocator() const { return true; }

    static MObject localPosition, localPositionX, localPositionY, localPositionZ;
    static MObject worldPosition, worldPositionX, worldPositionY, worldPositionZ;
    static MObject localScale, localScaleX, localScaleY, localScaleZ;
    static MObject matrix, inverseMatrix, worldMatrix, worldInverseMatrix, parentMatrix, parentInverseMatrix;
    static MObject visibility, intermediateObject;
};
