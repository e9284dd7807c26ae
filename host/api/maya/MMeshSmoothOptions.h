#pragma once

#include <maya/MStatus.h>

/// How `MFnMesh::generateSmoothMesh` subdivides. Boundaries are creased whatever is set here.
class MMeshSmoothOptions {
  public:
    MMeshSmoothOptions() = default;

    /// Levels. `kInvalidParameter` when negative.
    MStatus setDivisions(int divisions) {
        if (divisions < 0) return MStatus::kInvalidParameter;
        divisions_ = divisions;
        return MStatus::kSuccess;
    }
    int divisions(MStatus* status = nullptr) const { return succeed(status), divisions_; }

    /// Whether hard edges stay where they are and hard.
    MStatus setKeepHardEdge(bool keep) {
        keepHardEdge_ = keep;
        return MStatus::kSuccess;
    }
    bool keepHardEdge(MStatus* status = nullptr) const { return succeed(status), keepHardEdge_; }

  private:
    static void succeed(MStatus* status) {
        if (status) *status = MStatus::kSuccess;
    }

    int divisions_ = 2;
    bool keepHardEdge_ = false;
};
