#include "host/commands/nurbs_words.h"

#include "host/commands/data_words.h"
#include "host/core/log.h"
#include "host/data/nurbs_data.h"

#include <array>

namespace vesk::commands {

namespace {

using geom::NurbsBasis;
using geom::NurbsForm;

Outcome setForm(NurbsBasis& basis, int form) {
    if (form < 0 || form > 2) return Outcome::fail("A form is 0, 1 or 2, not " + std::to_string(form) + '.');
    basis.form = static_cast<NurbsForm>(form + 1);
    return {};
}

Outcome readKnots(Words& words, NurbsBasis& basis) {
    const auto count = readCount(words, 1, "knots");
    if (!count) return Outcome::fail(count.error());
    basis.knots.resize(*count);
    const std::size_t read = words.numbers(basis.knots.data(), *count);
    return read < *count ? badElement(read, words) : Outcome{};
}

/// `dimension` coordinates each, and a weight when rational.
Result<std::vector<MPoint>> readCvs(Words& words, int dimension, bool rational) {
    const std::size_t each = static_cast<std::size_t>(dimension) + (rational ? 1 : 0);
    const auto count = readCount(words, each, "CVs");
    if (!count) return Outcome::fail(count.error());
    std::vector<MPoint> cvs;
    cvs.reserve(*count);
    for (std::size_t i = 0; i < *count; ++i) {
        std::array<double, 4> n{};
        const std::size_t read = words.numbers(n.data(), each);
        if (read < each) return badElement(i * each + read, words);
        const double weight = rational ? n[each - 1] : 1.0;
        cvs.emplace_back(n[0], n[1], dimension == 3 ? n[2] : 0.0, weight);
    }
    return cvs;
}

template <std::size_t N>
Outcome readHead(Words& words, std::array<int, N>& head) {
    const std::size_t read = words.numbers(head.data(), N);
    return read < N ? badElement(read, words) : Outcome{};
}

} // namespace

Result<Ref<Data>> readNurbsCurve(Words& words) {
    std::array<int, 5> head{};
    if (auto outcome = readHead(words, head); !outcome) return outcome;
    const auto [degree, spans, form, rational, dimension] = head;
    if (dimension != 2 && dimension != 3) {
        return Outcome::fail("A curve has 2 or 3 dimensions, not " + std::to_string(dimension) + '.');
    }
    NurbsBasis basis;
    basis.degree = degree;
    if (auto outcome = setForm(basis, form); !outcome) return outcome;
    if (auto outcome = readKnots(words, basis); !outcome) return outcome;
    auto cvs = readCvs(words, dimension, rational != 0);
    if (!cvs) return Outcome::fail(cvs.error());
    auto curve = geom::NurbsCurve::create(std::move(basis), std::move(*cvs), rational != 0);
    if (!curve) return Outcome::fail(curve.error());
    if (curve->spanCount() != spans) {
        return Outcome::fail("The curve's knots make " + std::to_string(curve->spanCount()) + " spans, not " +
                             std::to_string(spans) + '.');
    }
    return Ref<Data>(makeRef<NurbsCurveData>(std::move(*curve)));
}

Result<Ref<Data>> readNurbsSurface(Words& words) {
    std::array<int, 5> head{};
    if (auto outcome = readHead(words, head); !outcome) return outcome;
    const auto [degreeU, degreeV, formU, formV, rational] = head;
    NurbsBasis u, v;
    u.degree = degreeU;
    v.degree = degreeV;
    if (auto outcome = setForm(u, formU); !outcome) return outcome;
    if (auto outcome = setForm(v, formV); !outcome) return outcome;
    if (auto outcome = readKnots(words, u); !outcome) return outcome;
    if (auto outcome = readKnots(words, v); !outcome) return outcome;
    bool isTrimmed = false;
    if (words.peek() == WordKind::Text) {
        const std::string word(words.text());
        if (word != "TRIM" && word != "NOTRIM")
            return Outcome::fail("TRIM or NOTRIM is wanted, not '" + word + "'.");
        isTrimmed = word == "TRIM";
    }
    auto cvs = readCvs(words, 3, rational != 0);
    if (!cvs) return Outcome::fail(cvs.error());
    auto surface = geom::NurbsSurface::create(std::move(u), std::move(v), std::move(*cvs), rational != 0);
    if (!surface) return Outcome::fail(surface.error());
    if (isTrimmed) {
        log().warning("A trimmed surface is taken as a whole: its trimming curves are not read.");
        while (!words.atEnd())
            (void)words.text();
    }
    return Ref<Data>(makeRef<NurbsSurfaceData>(std::move(*surface)));
}

} // namespace vesk::commands
