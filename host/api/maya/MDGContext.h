#pragma once

#include <maya/MStatus.h>
#include <maya/MTime.h>

/// When a plug is read: now, or at another time. What is computed for another time is not kept.
class MDGContext {
  public:
    /// The current time.
    MDGContext() = default;
    explicit MDGContext(const MTime& when) : isNormal_(false), time_(when) {}

    bool isNormal(MStatus* status = nullptr) const {
        if (status) *status = MStatus();
        return isNormal_;
    }
    /// `kFailure` in the normal context, which has no time of its own.
    MStatus getTime(MTime& time) const {
        if (isNormal_) return MStatus::kFailure;
        return time = time_, MStatus();
    }

    static MDGContext fsNormal;

  private:
    bool isNormal_ = true;
    MTime time_;
};
