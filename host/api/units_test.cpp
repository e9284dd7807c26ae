#include <maya/MAngle.h>
#include <maya/MDistance.h>
#include <maya/MTime.h>

#include <gtest/gtest.h>

#include <numbers>

namespace {

TEST(Units, Conversions) {
    EXPECT_EQ(MTime(48.0, MTime::kFilm).as(MTime::kSeconds), 2.0);
    EXPECT_EQ(MTime(1.0, MTime::kHours).as(MTime::kMinutes), 60.0);
    EXPECT_EQ(MTime(3.0, MTime::kSeconds).as(MTime::kGames), 45.0);
    EXPECT_EQ(MTime(1.0, MTime::kSeconds).as(MTime::kMilliseconds), 1000.0);
    const std::pair<MTime::Unit, double> rates[] = {{MTime::kFilm, 24},      {MTime::kPALFrame, 25},
                                                    {MTime::kNTSCFrame, 30}, {MTime::kShowScan, 48},
                                                    {MTime::kPALField, 50},  {MTime::kNTSCField, 60}};
    for (const auto& [unit, rate] : rates)
        EXPECT_EQ(MTime(1.0, MTime::kSeconds).as(unit), rate);
    EXPECT_EQ(MAngle(180.0, MAngle::kDegrees).asRadians(), std::numbers::pi);
    EXPECT_DOUBLE_EQ(MAngle(1.0).asDegrees(), 57.295779513082320877);
    EXPECT_EQ(MDistance(1.0, MDistance::kInches).asCentimeters(), 2.54);
    EXPECT_EQ(MDistance(1.0, MDistance::kMiles).asFeet(), 5280.0);
    EXPECT_EQ(MDistance(1.0, MDistance::kYards).asFeet(), 3.0);
    EXPECT_EQ(MDistance(2.0, MDistance::kKilometers).asMeters(), 2000.0);
    EXPECT_EQ(MDistance(5.0).asMillimeters(), 50.0);
}

TEST(Units, TheInterfaceUnitIsTheDefaultForTime) {
    EXPECT_EQ(MTime(24.0).as(MTime::kSeconds), 1.0);
    MTime::setUIUnit(MTime::kPALFrame);
    EXPECT_EQ(MTime(25.0).as(MTime::kSeconds), 1.0);
    EXPECT_EQ(MTime::internalToUI(2.0), 50.0);
    MTime::setUIUnit(MTime::kFilm);
    EXPECT_EQ(MAngle::uiToInternal(180.0), std::numbers::pi);
    EXPECT_EQ(MDistance::uiToInternal(3.0), 3.0);
}

TEST(Units, TimeComparesBySizeAndCountsInItsOwnUnit) {
    const MTime second(1.0, MTime::kSeconds);
    const MTime film(24.0, MTime::kFilm);
    EXPECT_EQ(second, film);
    EXPECT_TRUE(film < MTime(26.0, MTime::kPALFrame) && film != MTime(24.0, MTime::kPALFrame));
    EXPECT_EQ((film + second).value(), 48.0);
    EXPECT_EQ((second - film).value(), 0.0);
    EXPECT_EQ((film + 1.0).value(), 25.0);
    EXPECT_EQ(film / MTime(0.5, MTime::kSeconds), 2.0);
}

} // namespace
