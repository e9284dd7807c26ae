#pragma once

#include "host/commands/words.h"
#include "host/data/data.h"

namespace vesk::commands {

/// A curve: degree, spans, form (0 open, 1 closed, 2 periodic), whether it is rational, dimension (2 or 3);
/// the number of knots and the knots; the number of CVs and the CVs, each as many numbers as the dimension
/// says and a weight when rational.
Result<Ref<Data>> readNurbsCurve(Words& words);

/// A surface: degrees in u and v, forms in u and v, whether it is rational; knots in u, then in v; the word
/// `TRIM` or `NOTRIM`, which may be missing; the CVs, v fastest. What trims it is read past, with a warning.
Result<Ref<Data>> readNurbsSurface(Words& words);

} // namespace vesk::commands
