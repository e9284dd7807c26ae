#pragma once
// Components as commands and scene files write them: `vtx[3]`, `f[0:5]`, `cv[0:1][2:5]`, `e[*]`.

#include "host/core/outcome.h"
#include "host/data/component.h"

#include <span>

namespace vesk {

/// What one pair of brackets names: first to last, or all with `*`.
struct IndexRange {
    int first = 0;
    int last = 0;
    bool all = false;
};

/// A text taken apart. The word and the number of brackets together tell the kind: `cv` with one index is a
/// curve's CV, with two a surface's; `pt` with one index is a particle, with three a lattice point.
struct ComponentText {
    MFn::Type kind = MFn::kInvalid;
    std::vector<IndexRange> ranges; ///< one for each index
    std::string error;              ///< a sentence that quotes the text; empty when it was understood

    /// Stars only: the complete component.
    bool isComplete() const;
};

/// Understands the text behind an object's name and point. Ranges may be given backwards; no blanks.
ComponentText parseComponentText(std::string_view text);

/// Adds what an understood text names to a component of its kind. `sizes` are those of the geometry, where
/// they are known: with them a star counts up to its size, and without them stars must stand alone or all
/// together.
Outcome addTo(Component& component, const ComponentText& text, std::span<const int> sizes = {});

} // namespace vesk
