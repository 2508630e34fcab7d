#include <gtest/gtest.h>

#include "orvex/core/types.h"

using namespace Orvex;

TEST(Units, FactorsAndSymbols) {
    struct Case {
        TQVLUnits unit;
        std::int64_t factor;
        const char* symbol;
        const char* shortSymbol;
    };
    const Case cases[] = {
        {TQVLUnits::unMM, 1000, "mm", "mm"},   {TQVLUnits::unINCH, 25400, "inch", "inch"},
        {TQVLUnits::unCM, 10000, "cm", "cm"},  {TQVLUnits::unDM, 100000, "dm", "mm"},
        {TQVLUnits::unM, 1000000, "m", "mm"},  {TQVLUnits::unFt, 304800, "ft", "mm"},
        {TQVLUnits::unYd, 914000, "yd", "mm"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.symbol);
        EXPECT_EQ(UnitFactor(c.unit), c.factor);
        EXPECT_EQ(SymUnit(c.unit, false), c.symbol);
        EXPECT_EQ(SymUnit(c.unit, true), c.shortSymbol);
    }
}

TEST(Units, UnknownOrdinalCountsAsMillimetres) {
    const auto bogus = static_cast<TQVLUnits>(42);
    EXPECT_EQ(UnitFactor(bogus), 1000);
    EXPECT_EQ(SymUnit(bogus, false), "mm");
    EXPECT_EQ(SetValue(2.0f, bogus), 2000);
}

TEST(Units, TheYardIs914000BaseUnitsBothWays) {
    EXPECT_EQ(SetValue(1.0f, TQVLUnits::unYd), 914000);
    EXPECT_FLOAT_EQ(GetValue(914000, TQVLUnits::unYd), 1.0f);
    // 914.4 mm, the international yard, reads as slightly more than one of our yards.
    EXPECT_NEAR(GetValue(914400, TQVLUnits::unYd), 1.000438f, 1e-6f);
}

TEST(Units, ConversionsRoundHalfToEvenFromSinglePrecision) {
    // 0.0025f is stored just below 0.0025, so it rounds to 2 micrometres.
    EXPECT_EQ(SetBaseValue(0.0025f), 2);
    EXPECT_EQ(SetBaseValue(0.0625f), 62);  // an exact half goes to the even neighbour
    EXPECT_EQ(SetBaseValue(0.1875f), 188);
    EXPECT_EQ(SetBaseValue(0.0015f), 2);  // just above: rounds up
    EXPECT_EQ(SetBaseValue(-1.5f), -1500);
    EXPECT_EQ(SetValue(0.5f, TQVLUnits::unINCH), 12700);
    EXPECT_EQ(SetValue(-0.5f, TQVLUnits::unINCH), -12700);
    EXPECT_FLOAT_EQ(GetBaseValue(12345), 12.345f);
    EXPECT_FLOAT_EQ(GetValue(25400, TQVLUnits::unINCH), 1.0f);
}

TEST(Units, PointConvertsThroughItsUnit) {
    TQVLPto p;
    p.Define(1.0f, 2.5f, TQVLUnits::unCM);
    EXPECT_EQ(p.X, 10000);
    EXPECT_EQ(p.Y, 25000);
    p.Move(-1.0f, 0.5f, TQVLUnits::unMM);
    EXPECT_EQ(p.X, 9000);
    EXPECT_EQ(p.Y, 25500);
    EXPECT_FLOAT_EQ(p.GetX(TQVLUnits::unMM), 9.0f);
    EXPECT_TRUE(p.SamePto(9000, 25500));
    p.SetDpIBaseX(96.0f, 96);  // one inch of pixels
    EXPECT_EQ(p.X, 25400);
    p.Reset();
    EXPECT_TRUE(p.SamePto(0, 0));
}

TEST(Angles, QuarterTurnsAreClockwise) {
    EXPECT_EQ(DegAngle(TQVLAngle::ag0), 0.0f);
    EXPECT_EQ(DegAngle(TQVLAngle::ag90), -90.0f);
    EXPECT_EQ(DegAngle(TQVLAngle::ag270), -270.0f);
    EXPECT_EQ(PrintAngle(TQVLAngle::ag180), -3.1415927f);
    EXPECT_EQ(DegAngle(static_cast<TQVLAngle>(9)), 0.0f);
}
