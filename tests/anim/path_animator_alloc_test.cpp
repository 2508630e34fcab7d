// Frames must not allocate: a host calls Update sixty times a second for as long as it runs. This file
// replaces the global allocation functions for the whole test binary, but they only count, and only on a
// thread that has switched counting on, so every other test (and the sanitizers) see plain malloc and free.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <vector>

#include "orvex/anim/path_animator.h"

namespace {

thread_local bool tCounting = false;
thread_local std::size_t tAllocations = 0;

void* Allocate(std::size_t size) {
    if (tCounting) ++tAllocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

}  // namespace

// clang-format off
void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try { return Allocate(size); } catch (...) { return nullptr; }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
// clang-format on

namespace {

using namespace Orvex;

// Counts the allocations made by body on this thread.
template <typename F>
std::size_t CountAllocations(F&& body) {
    tAllocations = 0;
    tCounting = true;
    body();
    tCounting = false;
    return tAllocations;
}

// Data that every path type can read, so one set serves all of them; the middle one is a full ellipse.
std::vector<TPathSegment> Segments() {
    std::vector<TPathSegment> segments;
    for (double o : {0.0, 10.0, 20.0}) {
        TPathSegment& s = segments.emplace_back();
        s.StartPoint = {o, 0}, s.EndPoint = {o + 10, 0}, s.ControlPoint1 = {o + 2, 6},
        s.ControlPoint2 = {o + 8, -6};
        s.Radius = 5, s.RadiusY = 3, s.StartAngle = 30, s.EndAngle = o == 10 ? 30 : 200,
        s.SpeedFactor = o / 10 + 0.5;
    }
    return segments;
}

}  // namespace

TEST(PathAnimatorAllocation, FramesDoNotAllocateForAnyPathType) {
    const TPathType types[] = {TPathType::ptLine,    TPathType::ptPolyline, TPathType::ptCircle,
                               TPathType::ptEllipse, TPathType::ptArc,      TPathType::ptBezier};
    for (const TPathType type : types) {
        SCOPED_TRACE(static_cast<int>(type));
        TPathAnimator a;
        a.SetPath(type, Segments());
        a.SetTiming(2.0, 1.0);
        a.SetEasing(TPathEasing::peEaseInOut);
        double x = 0, y = 0, r = 0, rest = 0;
        int frames = 0;
        const std::size_t count = CountAllocations([&] {
            for (int run = 0; run < 2; ++run) {
                a.SetReverse(run == 1);
                a.Reset();
                while (a.Update(1.0 / 60, x, y, r, rest)) ++frames;
            }
            for (double p = 0; p <= 1.0; p += 0.05) a.Seek(p, x, y, r);
            a.UpdateTimeScale(1.5);
        });
        EXPECT_EQ(count, 0u);
        EXPECT_GE(frames, 2 * 118);
    }
}

TEST(PathAnimatorAllocation, TheCounterSeesAllocations) {
    TPathAnimator a;
    a.SetPath(TPathType::ptLine, Segments());
    std::vector<int> waypoints;
    EXPECT_GT(CountAllocations([&] { waypoints = a.GetCrossedWaypoints(0.0, 1.0); }), 0u);
    EXPECT_EQ(waypoints.size(), 3u);
}
