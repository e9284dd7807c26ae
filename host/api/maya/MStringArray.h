#pragma once

#include <maya/MString.h>

#include "host/api/array_of.h"

/// Growable array of strings.
class MStringArray : public vesk::ArrayOf<MStringArray, MString> {
  public:
    using ArrayOf::ArrayOf;
};

inline MStatus MString::split(char separator, MStringArray& pieces) const {
    for (std::size_t start = 0; start < text_.size();) {
        const std::size_t end = std::min(text_.find(separator, start), text_.size());
        if (end > start) pieces.append(vesk::toMString(text_.substr(start, end - start)));
        start = end + 1;
    }
    return {};
}
