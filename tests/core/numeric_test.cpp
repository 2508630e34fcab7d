#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <vector>

#include "orvex/core/types.h"

using namespace Orvex;

TEST(Rounding, QVRoundTruncatesEveryNegativeTowardZero) {
    struct Case {
        float in;
        std::int64_t out;
    };
    const Case cases[] = {{2.5f, 3},   {2.4999f, 2}, {0.5f, 1}, {-2.5f, -2}, {-2.7f, -2},
                          {-1.5f, -1}, {-0.5f, 0},   {7.0f, 7}, {-7.0f, -7}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in);
        EXPECT_EQ(QVRound(c.in), c.out);
    }
}

TEST(Rounding, HalfToEvenAndHalfAwayFromZero) {
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(3.5), 4);
    EXPECT_EQ(RoundHalfEven(-2.5), -2);
    EXPECT_EQ(MathRound(2.5), 3);
    EXPECT_EQ(MathRound(-2.5), -3);
    EXPECT_EQ(RoundHalfEven(1e30), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(RoundHalfEven(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_DOUBLE_EQ(RoundTo3Decimals(1.23456), 1.235);
    EXPECT_DOUBLE_EQ(RoundTo3Decimals(-0.0004), 0.0);
}

TEST(Rounding, MulDivRoundsAndRefusesZero) {
    EXPECT_EQ(MulDiv(10, 3, 4), 8);  // 7.5 rounds away from zero
    EXPECT_EQ(MulDiv(-10, 3, 4), -8);
    EXPECT_EQ(MulDiv(10, 3, -4), -8);
    EXPECT_EQ(MulDiv(7, 1, 0), -1);
    EXPECT_EQ(MulDiv(2000000000, 2000000000, 1), -1);  // does not fit
    EXPECT_EQ(MulDiv(2000000000, 3, 4), 1500000000);   // the product needs 64 bits
}

TEST(Numeric, DistanceIsExactAlongAnAxis) {
    EXPECT_EQ(Distance(std::int64_t{5}, 7, 5, -3), 10);
    EXPECT_EQ(Distance(std::int64_t{-4}, 2, 6, 2), 10);
    EXPECT_EQ(Distance(std::int64_t{0}, 0, 3, 4), 5);
    EXPECT_EQ(Distance(std::int64_t{0}, 0, 1, 1), 1);  // 1.414 rounds down
    EXPECT_FLOAT_EQ(Distance(0.0f, 0.0f, 3.0f, 4.0f), 5.0f);
}

TEST(Numeric, RangeAcceptsBoundsInEitherOrder) {
    EXPECT_TRUE(ValInRange(5, 1, 10));
    EXPECT_TRUE(ValInRange(5, 10, 1));
    EXPECT_TRUE(ValInRange(10, 10, 1));
    EXPECT_FALSE(ValInRange(11, 10, 1));
    EXPECT_TRUE(ValInRange(3, 3, 3));
    EXPECT_FALSE(ValInRange(4, 3, 3));
    EXPECT_TRUE(SamePoint(1.0f, 1.00005f));
    EXPECT_FALSE(SamePoint(1.0f, 1.0002f));
}

TEST(Numeric, Median) {
    const std::vector<double> odd{5, 1, 3};
    const std::vector<double> even{4, 1, 3, 2};
    EXPECT_DOUBLE_EQ(Median(odd), 3.0);
    EXPECT_DOUBLE_EQ(Median(even), 2.5);
    EXPECT_DOUBLE_EQ(Median({}), 0.0);
}

TEST(Numeric, StrToCardinal) {
    EXPECT_EQ(StrToCardinal("42"), 42u);
    EXPECT_EQ(StrToCardinal(" 4294967295 "), 4294967295u);
    EXPECT_EQ(StrToCardinal("$FF"), 255u);
    EXPECT_EQ(StrToCardinal("0x10"), 16u);
    EXPECT_THROW(StrToCardinal("4294967296"), std::invalid_argument);
    EXPECT_THROW(StrToCardinal("-1"), std::invalid_argument);
    EXPECT_THROW(StrToCardinal("12a"), std::invalid_argument);
    EXPECT_THROW(StrToCardinal(""), std::invalid_argument);
}

TEST(Grid, NearestLineSnapsExactHalfDown) {
    EXPECT_EQ(AdjustGrid(1500, 1000), 1000);
    EXPECT_EQ(AdjustGrid(1501, 1000), 2000);
    EXPECT_EQ(AdjustGrid(999, 1000), 1000);
    EXPECT_EQ(AdjustGrid(0, 1000), 0);
    EXPECT_EQ(AdjustGrid(2000, 1000), 2000);
}

TEST(Grid, SteppingGoesStrictlyPastAndNeverBelowZero) {
    EXPECT_EQ(AdjustGrid(2000, 1000, false), 1000);
    EXPECT_EQ(AdjustGrid(2000, 1000, true), 3000);
    EXPECT_EQ(AdjustGrid(2500, 1000, true), 3000);
    EXPECT_EQ(AdjustGrid(2500, 1000, false), 2000);
    EXPECT_EQ(AdjustGrid(500, 1000, false), 0);
    EXPECT_EQ(AdjustGrid(0, 1000, false), 0);
    EXPECT_EQ(AdjustGrid(-3000, 1000, false), 0);
}

TEST(Numeric, PixelScalingAround96Dpi) {
    EXPECT_EQ(ScalePos(10, 96), 10);
    EXPECT_EQ(ScalePos(10, 144), 15);
    EXPECT_EQ(ScalePos(5, 120), 6);  // 6.25
    EXPECT_FLOAT_EQ(ScalePos(10.0f, 120), 12.5f);
    EXPECT_EQ(RevScalePos(15, 144), 10);
    EXPECT_EQ(RevScalePos(15, 96), 15);
}
