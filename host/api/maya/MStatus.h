#pragma once

class MString;

/// Success or the kind of failure of a call. True means success.
class MStatus {
  public:
    enum MStatusCode {
        kSuccess = 0,
        kFailure,
        kInsufficientMemory,
        kInvalidParameter,
        kLicenseFailure,
        kUnknownParameter,
        kNotImplemented,
        kNotFound,
        kEndOfFile
    };

    constexpr MStatus() noexcept = default;
    constexpr MStatus(MStatusCode code) noexcept : code_(code) {}

    constexpr operator bool() const noexcept { return code_ == kSuccess; }
    constexpr bool operator==(const MStatus& other) const noexcept { return code_ == other.code_; }
    constexpr bool operator==(MStatusCode code) const noexcept { return code_ == code; }

    constexpr bool error() const noexcept { return code_ != kSuccess; }
    constexpr MStatusCode statusCode() const noexcept { return code_; }
    constexpr void clear() noexcept { code_ = kSuccess; }

    /// A sentence about the code, in brackets, such as "(kInvalidParameter): Invalid argument".
    MString errorString() const;
    /// Prints `text: errorString()` on a line of its own to standard error, also for success.
    void perror(const char* text) const;
    void perror(const MString& text) const;

  private:
    MStatusCode code_ = kSuccess;
};

using MS = MStatus;

// MString needs MStatus and MStatus's texts are MStrings: whichever header comes first, both arrive.
#include <maya/MString.h>

/// Reports a failed status with its place and goes on.
#define CHECK_MSTATUS(_status)                                                                               \
    do {                                                                                                     \
        const MStatus maya_status = (_status);                                                               \
        if (!maya_status) maya_status.perror(MString(__FILE__ ":") + __LINE__);                              \
    } while (0)

/// The same, and leaves the function with `_returned`.
#define CHECK_MSTATUS_AND_RETURN(_status, _returned)                                                         \
    do {                                                                                                     \
        const MStatus maya_status = (_status);                                                               \
        if (!maya_status) {                                                                                  \
            maya_status.perror(MString(__FILE__ ":") + __LINE__);                                            \
            return _returned;                                                                                \
        }                                                                                                    \
    } while (0)

/// The same, and leaves the function with the failed status.
#define CHECK_MSTATUS_AND_RETURN_IT(_status) CHECK_MSTATUS_AND_RETURN(_status, maya_status)
