#include "host/geometry/nurbs_curve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

namespace vesk::geom {
namespace {

NurbsCurve make(NurbsBasis basis, std::vector<MPoint> cvs, bool rational = false) {
    Result<NurbsCurve> curve = NurbsCurve::create(std::move(basis), std::move(cvs), rational);
    EXPECT_TRUE(curve) << curve.error();
    return curve ? *curve : NurbsCurve();
}

void expectNear(const MVector& a, const MVector& b, double tolerance = 1e-12) {
    EXPECT_LT((a - b).length(), tolerance) << a << " is not " << b;
}

void expectSameShape(const NurbsCurve& a, const NurbsCurve& b) {
    ASSERT_EQ(a.basis().start(), b.basis().start());
    ASSERT_EQ(a.basis().end(), b.basis().end());
    for (int i = 0; i <= 40; ++i) {
        const double u = a.basis().start() + (a.basis().end() - a.basis().start()) * i / 40.0;
        expectNear(a.pointAt(u), b.pointAt(u));
    }
}

const std::vector<MPoint> zigzag{{0, 0, 0}, {1, 2, 0}, {3, 2, 1}, {4, 0, 2}, {6, 1, 0}};

/// One quarter of the unit circle, from (1, 0) to (0, 1).
NurbsCurve quarter() {
    return make({2, NurbsForm::Open, {0, 0, 1, 1}}, {{1, 0}, {1, 1, 0, std::sqrt(0.5)}, {0, 1}}, true);
}

/// A closed uniform cubic: a square's corners, then the first three again.
NurbsCurve roundedSquare() {
    return make(NurbsBasis::periodic(3, 4), {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}, {}, {}, {}});
}

TEST(NurbsBasis, NamesWhatIsWrong) {
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        NurbsBasis basis;
        const char* message;
    } cases[] = {
        {{0, NurbsForm::Open, {0, 1}}, "degree 0"},
        {{8, NurbsForm::Open, std::vector<double>(16)}, "degree 8"},
        {{1, static_cast<NurbsForm>(0), {0, 1}}, "form 0"},
        {{3, NurbsForm::Open, {0, 0, 1, 1}}, "too few"},
        {{1, NurbsForm::Open, {}}, "too few"},
        {{2, NurbsForm::Open, {0, 0, 2, 1, 3, 3}}, "knot 3 is smaller"},
        {{1, NurbsForm::Open, {0, infinity}}, "knot 1 is not a finite"},
        {{1, NurbsForm::Open, {0, std::nan(""), 1}}, "knot 1 is not a finite"},
        {{2, NurbsForm::Open, {0, 0, 1, 1, 1, 2}}, "knot 4 stands more than 2"},
        {{3, NurbsForm::Open, {0, 1, 2, 2, 3, 4}}, "no range"},
        {{3, NurbsForm::Periodic, {-2, -1, 0, 1, 2, 3, 4, 5}}, "6 CVs are too few for a periodic"},
    };
    for (const auto& [basis, message] : cases) {
        const Outcome outcome = basis.check();
        EXPECT_NE(outcome.error.find(message), std::string::npos) << message << ": " << outcome.error;
    }
    // Degree 3 with knot 2 at place 2 and 3 has its domain from 2 to 2; one more knot opens it.
    EXPECT_TRUE((NurbsBasis{3, NurbsForm::Open, {0, 1, 2, 2, 3, 4, 5}}.check()));
}

TEST(NurbsBasis, FunctionsMatchHandWorkedValues) {
    // Uniform cubic at a knot: 1/6 4/6 1/6, slopes -1/2 0 1/2, second derivatives 1 -2 1.
    NurbsRow row = NurbsBasis::periodic(3, 8).row(2.0, 2);
    EXPECT_EQ(row.firstCv, 2);
    const double uniform[3][4] = {{1.0 / 6, 4.0 / 6, 1.0 / 6, 0}, {-0.5, 0, 0.5, 0}, {1, -2, 1, 0}};
    // Bernstein polynomials of degree 2 at 1/4, their derivatives -2(1-u) 2(1-2u) 2u and 2 -4 2.
    const NurbsRow bezier = NurbsBasis::clamped(2, 1).row(0.25, 2);
    const double bernstein[3][3] = {{9.0 / 16, 6.0 / 16, 1.0 / 16}, {-1.5, 1, 0.5}, {2, -4, 2}};
    for (int k = 0; k < 3; ++k) {
        for (int j = 0; j < 4; ++j)
            EXPECT_NEAR(row.values[k][j], uniform[k][j], 1e-14);
        for (int j = 0; j < 3; ++j)
            EXPECT_NEAR(bezier.values[k][j], bernstein[k][j], 1e-14);
    }
    // A line has no second derivative; the last parameter belongs to the last span that has length.
    EXPECT_EQ(NurbsBasis::clamped(1, 3).row(3.0, 2).firstCv, 2);
    const NurbsRow end = NurbsBasis{2, NurbsForm::Open, {0, 0, 1, 2, 2, 3}}.row(2.0, 0);
    EXPECT_EQ(end.firstCv, 1);
    EXPECT_EQ(end.values[0][2], 1.0);
}

TEST(NurbsBasis, FunctionsAddUpToOneAndDerivativesToZero) {
    for (int degree = 1; degree <= maxNurbsDegree; ++degree) {
        NurbsBasis basis = NurbsBasis::clamped(degree, 6);
        basis.knots[degree + 1] = basis.knots[degree]; // uneven spans, too
        if (degree == 1) basis = {1, NurbsForm::Open, {0, 0.1, 3, 4}};
        ASSERT_TRUE(basis.check()) << basis.check().error;
        for (int i = 0; i <= 30; ++i) {
            const NurbsRow row = basis.row(basis.start() + (basis.end() - basis.start()) * i / 30.0, 2);
            for (int k = 0; k < 3; ++k) {
                const double sum = std::accumulate(row.values[k].begin(), row.values[k].end(), 0.0);
                EXPECT_NEAR(sum, k == 0 ? 1.0 : 0.0, 1e-9);
            }
            EXPECT_GE(row.firstCv, 0);
            EXPECT_LE(row.firstCv + degree, basis.cvCount() - 1);
        }
    }
}

TEST(NurbsCurve, KeepsCvsByItsForm) {
    const NurbsCurve open = make(NurbsBasis::clamped(3, 2), zigzag);
    EXPECT_EQ(open.knots(), (std::vector<double>{0, 0, 0, 1, 2, 2, 2}));
    EXPECT_EQ(open.basis().editParameters(), (std::vector<double>{0, 1, 2}));
    EXPECT_EQ(NurbsCurve::create(NurbsBasis::clamped(3, 1), zigzag).error(),
              "5 CVs do not go with 6 knots and degree 3");

    NurbsCurve ring = roundedSquare();
    const NurbsCurve before = ring;
    EXPECT_EQ(ring.knots(), (std::vector<double>{-2, -1, 0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(ring.distinctCvCount(), 4);
    EXPECT_EQ(ring.editPoints().size(), 4U);
    EXPECT_EQ(ring.cvs()[6], MPoint(-1, -1));
    EXPECT_TRUE(ring.setCv(1, {5, 5, 5}));
    EXPECT_EQ(ring.cvs()[5], MPoint(5, 5, 5));
    EXPECT_FALSE(ring.setCv(4, {}));
    EXPECT_FALSE(ring.setCv(-1, {}) || ring.setCv(7, {}));
    std::vector<MPoint> cvs(7, MPoint(9, 9, 9));
    cvs[2] = MPoint(0, 1, 2, 3);
    EXPECT_TRUE(ring.setCvs(cvs));
    EXPECT_EQ(ring.cvs()[6], MPoint(0, 1, 2)); // and a plain curve has no weights
    cvs.pop_back();
    EXPECT_FALSE(ring.setCvs(cvs));
    EXPECT_EQ(before.cvs()[1], MPoint(-1, 1)); // the copy kept its own

    const NurbsCurve none;
    EXPECT_EQ(none.length(), 0.0);
    EXPECT_EQ(none.pointAt(1.0), MPoint());
    EXPECT_TRUE(none.clamped().empty());
}

TEST(NurbsCurve, EvaluatesPointsAndDerivatives) {
    // Cubic Bezier at 1/2: (P0 + 3 P1 + 3 P2 + P3) / 8, slope 3 (P3 + P2 - P1 - P0) / 4,
    // second derivative 3 (P0 - P1 - P2 + P3).
    const NurbsCurve bezier = make(NurbsBasis::clamped(3, 1), {{0, 0}, {0, 4}, {4, 4}, {8, 0}});
    const CurvePoint middle = bezier.at(0.5);
    expectNear(middle.position, {2.5, 3, 0});
    expectNear(middle.d1, {9, 0, 0});
    expectNear(middle.d2, {12, -24, 0});
    EXPECT_EQ(bezier.pointAt(-7), MPoint(0, 0));
    EXPECT_EQ(bezier.pointAt(7), MPoint(8, 0));
    EXPECT_EQ(bezier.pointAt(std::nan("")), MPoint(0, 0));

    // At the seam (P0 + 4 P1 + P2) / 6; the parameter goes round.
    const NurbsCurve ring = roundedSquare();
    expectNear(ring.pointAt(0), MVector(1 - 4 - 1, 1 + 4 - 1) / 6.0);
    expectNear(ring.pointAt(9.25), ring.pointAt(1.25));
    for (const double u : {0.0, 0.3, 1.0})
        EXPECT_NEAR(MVector(quarter().pointAt(u)).length(), 1.0, 1e-14);

    const double h = 1e-5;
    for (const NurbsCurve& curve :
         {quarter(), ring, make({3, NurbsForm::Open, {0, 0, 0, 0.3, 2, 2, 2}}, zigzag)}) {
        for (const double u : {0.21, 0.5, 0.83}) {
            const CurvePoint point = curve.at(u);
            const CurvePoint before = curve.at(u - h);
            const CurvePoint after = curve.at(u + h);
            expectNear(point.position, curve.pointAt(u));
            expectNear(point.d1, (after.position - before.position) / (2 * h), 1e-7);
            expectNear(point.d2, (after.d1 - before.d1) / (2 * h), 1e-7);
        }
    }
}

TEST(NurbsCurve, MeasuresLength) {
    const NurbsCurve line = make(NurbsBasis::clamped(1, 2), {{0, 0}, {3, 4}, {3, 10}});
    EXPECT_NEAR(line.length(), 11.0, 1e-12);
    EXPECT_NEAR(line.length(1.5, 0.5), -5.5, 1e-12);
    EXPECT_NEAR(line.parameterAtLength(8.0), 1.5, 1e-9);
    EXPECT_EQ(line.parameterAtLength(12), 2.0);
    EXPECT_NEAR(quarter().length(), std::numbers::pi / 2, 1e-9);
    EXPECT_NEAR(quarter().parameterAtLength(std::numbers::pi / 4), 0.5, 1e-8);
    // Along x to 16/7 and back to 1, through a cusp at 4/7.
    EXPECT_NEAR(make(NurbsBasis::clamped(2, 1), {{0, 0}, {4, 0}, {1, 0}}).length(), 25.0 / 7, 1e-6);
}

TEST(NurbsCurve, InsertedKnotsKeepTheShape) {
    const NurbsCurve curves[] = {
        make({3, NurbsForm::Open, {0, 0, 0, 1, 2, 2, 2}}, zigzag),
        make({3, NurbsForm::Open, {-3, -1, 0, 1, 2, 2.5, 4}}, zigzag),
        make({2, NurbsForm::Closed, {0, 0, 0.5, 1, 2, 2}},
             {{0, 0, 0, 1}, {1, 2, 0, 3}, {3, 2, 1, 0.5}, {4, 0, 2, 1}, {0, 0, 0, 2}}, true)};
    for (const NurbsCurve& before : curves) {
        for (const double knot : {0.0, 0.4, 1.0, 2.0}) {
            NurbsCurve after = before;
            const int room = before.degree() - before.basis().multiplicity(knot);
            EXPECT_TRUE(after.insertKnot(knot, room));
            EXPECT_EQ(after.cvCount(), before.cvCount() + room);
            EXPECT_EQ(after.basis().multiplicity(knot), before.degree());
            expectSameShape(after, before);
            EXPECT_FALSE(after.insertKnot(knot));
        }
    }
    // Halving a cubic Bezier by hand: corners, thirds of the way, the middle.
    NurbsCurve bezier = make(NurbsBasis::clamped(3, 1), {{0, 0}, {0, 4}, {4, 4}, {8, 0}});
    EXPECT_FALSE(bezier.insertKnot(1.5));
    EXPECT_TRUE(bezier.insertKnot(0.5, 3));
    const MVector halves[] = {{0, 0}, {0, 2}, {1, 3}, {2.5, 3}, {4, 3}, {6, 2}, {8, 0}};
    for (int i = 0; i < 7; ++i)
        expectNear(bezier.cvs()[i], halves[i]);
    EXPECT_FALSE(roundedSquare().insertKnot(1.5));
}

TEST(NurbsCurve, ClampingKeepsPointsAndCount) {
    const NurbsCurve ring = roundedSquare();
    const NurbsCurve open = ring.clamped();
    EXPECT_EQ(open.form(), NurbsForm::Open);
    EXPECT_EQ(open.knots(), (std::vector<double>{0, 0, 0, 1, 2, 3, 4, 4, 4}));
    EXPECT_EQ(open.cvCount(), ring.cvCount());
    expectNear(open.cvs().front(), ring.pointAt(0));
    expectNear(open.cvs().back(), ring.pointAt(0));
    expectSameShape(open, ring);

    const NurbsCurve uneven =
        make({2, NurbsForm::Open, {-5, 0, 0.5, 1, 1.5, 9}}, {{0, 0}, {1, 2}, {3, 2}, {4, 0}, {6, 1}});
    expectSameShape(uneven.clamped(), uneven);
    EXPECT_TRUE(uneven.clamped().basis().isClamped());
    expectNear(uneven.withDomain(10, 12).pointAt(11.5), uneven.pointAt(1.125));
}

TEST(NurbsCurve, TransformsPointsNotWeights) {
    MMatrix matrix;
    matrix[0][0] = 2, matrix[1][1] = 3, matrix[3][0] = 5;
    const NurbsCurve moved = quarter().transformed(matrix);
    EXPECT_EQ(moved.cvs()[1], MPoint(7, 3, 0, std::sqrt(0.5)));
    expectNear(moved.pointAt(0.5), MVector(5 + std::sqrt(2.0), 3 * std::sqrt(0.5)));
}

} // namespace
} // namespace vesk::geom
