#include <gtest/gtest.h>

#include "orvex/core/types.h"

using namespace Orvex;

TEST(Rect, ContainsIsHalfOpen) {
    const TQVLRect r(0, 0, 100, 50);
    EXPECT_TRUE(r.Contains(0, 0));
    EXPECT_TRUE(r.Contains(99, 49));
    EXPECT_FALSE(r.Contains(100, 10));
    EXPECT_FALSE(r.Contains(10, 50));
    EXPECT_FALSE(r.Contains(-1, 10));
    EXPECT_TRUE(r.Contains(TQVLRect(10, 10, 100, 50)));
    EXPECT_FALSE(r.Contains(TQVLRect(10, 10, 101, 50)));
}

TEST(Rect, NormalizeAndSizes) {
    TQVLRect r(100, 80, 20, 10);
    r.NormalizeRect();
    EXPECT_EQ(r, TQVLRect(20, 10, 100, 80));
    EXPECT_EQ(r.GetWidth(), 80);
    EXPECT_EQ(r.GetHeight(), 70);
    r.SetWidth(5);
    EXPECT_EQ(r.Right, 25);
    const TQVLRect fromCorner(TQVLPto64(3, 4), 10, 20);
    EXPECT_EQ(fromCorner, TQVLRect(3, 4, 13, 24));
}

TEST(Rect, IntersectionAndUnion) {
    const TQVLRect a(0, 0, 10, 10);
    const TQVLRect b(5, 5, 15, 15);
    const TQVLRect touching(10, 0, 20, 10);
    EXPECT_TRUE(a.IntersectsWith(b));
    EXPECT_FALSE(a.IntersectsWith(touching));
    EXPECT_EQ(a * b, TQVLRect(5, 5, 10, 10));
    EXPECT_TRUE((a * touching).IsEmpty());
    EXPECT_EQ(a + b, TQVLRect(0, 0, 15, 15));
    EXPECT_EQ(a + TQVLRect::Empty(), a);  // an empty side adds nothing
    TQVLRect c = a;
    c.Intersect(TQVLRect(20, 20, 30, 30));
    EXPECT_EQ(c, TQVLRect::Empty());
    c = a;
    c.Inflate(1, 2);
    EXPECT_EQ(c, TQVLRect(-1, -2, 11, 12));
    c.Offset(1, 2);
    EXPECT_EQ(c, TQVLRect(0, 0, 12, 14));
}

TEST(Points, Pto64Arithmetic) {
    const TQVLPto64 a(3, 4);
    const TQVLPto64 b(1, 1);
    EXPECT_EQ(a + b, TQVLPto64(4, 5));
    EXPECT_EQ(a - b, TQVLPto64(2, 3));
    EXPECT_DOUBLE_EQ(TQVLPto64().Distance(a), 5.0);
    EXPECT_DOUBLE_EQ(TQVLPto64().Angle(TQVLPto64(0, 10)), 1.5707963267948966);
    EXPECT_TRUE(TQVLPto64::PointInCircle({0, 0}, {3, 4}, 5));
    EXPECT_FALSE(TQVLPto64::PointInCircle({0, 0}, {3, 4}, 4));
    EXPECT_TRUE(TQVLPto64::Zero().IsZero());
}

TEST(Points, BPointScalesAndConvertsFromScreen) {
    const TQVLBPoint p = TPoint{3, -4};
    EXPECT_EQ(p * TQVLBPoint(2, 3), TQVLBPoint(6, -12));
    EXPECT_EQ(p * 2.5f, TQVLBPoint(8, -10));  // 7.5 rounds to even 8
    EXPECT_EQ(0.5f * p, TQVLBPoint(2, -2));
    EXPECT_EQ(p / 2.0f, TQVLBPoint(2, -2));
    EXPECT_EQ(-p, TQVLBPoint(-3, 4));
    TQVLBPoint q;
    q.InValid();
    EXPECT_FALSE(q.IsValid());
    q.Valid(1, 2);
    EXPECT_TRUE(q.IsValid());
}

TEST(Sets, IncludeExcludeAndOperators) {
    enum class E : std::uint8_t { a, b, c, high = 200 };
    constexpr TSet<E> s{E::a, E::high};
    static_assert(s.Contains(E::high) && !s.Contains(E::b));
    TSet<E> t = s;
    t.Include(E::b).Exclude(E::a);
    EXPECT_EQ(t, (TSet<E>{E::b, E::high}));
    EXPECT_EQ(s & t, TSet<E>{E::high});
    EXPECT_EQ(s | t, (TSet<E>{E::a, E::b, E::high}));
    EXPECT_EQ(s - t, TSet<E>{E::a});
    EXPECT_EQ(TSet<E>::FromLowBits(TSet<E>{E::c}.LowBits()), TSet<E>{E::c});
    EXPECT_TRUE(TSet<E>{}.IsEmpty());
}
