#include "orvex/anim/path_file.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace Orvex;

TEST(PathFile, ReadsTheBundledExampleWithDefaults) {
    const TPathFileResult r = ReadPathFile(ORVEX_SOURCE_DIR "/examples/animation/bezier_path.json");
    ASSERT_TRUE(r.Ok()) << r.Message;
    EXPECT_EQ(r.Value.PathType, TPathType::ptBezier);
    EXPECT_EQ(r.Value.Easing, TPathEasing::peEaseInOut);
    EXPECT_EQ(r.Value.TotalTime, 2.0);
    ASSERT_EQ(r.Value.Segments.size(), 2u);
    const TPathSegment& s = r.Value.Segments[0];
    EXPECT_EQ(s.ControlPoint1, TPoint2D(3, 5));
    EXPECT_EQ(s.EndPoint, TPoint2D(10, 0));
    EXPECT_EQ(s.Radius, 0.0);  // absent fields are 0, an absent speed factor 1
    EXPECT_EQ(s.SpeedFactor, 1.0);
    EXPECT_EQ(r.Value.Segments[1].SpeedFactor, 2.0);
}

TEST(PathFile, OptionalKeysDefault) {
    const TPathFileResult r = ParsePathFile(R"({"type":"ptArc","totalTime":1,"segments":[{}]})");
    ASSERT_TRUE(r.Ok()) << r.Message;
    EXPECT_EQ(r.Value.Easing, TPathEasing::peLinear);
    EXPECT_EQ(r.Value.TimeScale, 1.0);
    EXPECT_FALSE(r.Value.Reverse);
    EXPECT_EQ(r.Value.Segments[0].StartPoint, TPoint2D(0, 0));
    EXPECT_EQ(r.Value.Segments[0].SpeedFactor, 1.0);
}

TEST(PathFile, InvalidFilesSayWhy) {
    struct TCase {
        const char* Text;
        const char* Error;
    };
    const TCase cases[] = {
        {R"({"type":"ptSpiral","totalTime":1,"segments":[{}]})", R"(unknown path type "ptSpiral")"},
        {R"({"type":"ptLine","easing":"peBounce","totalTime":1,"segments":[{}]})",
         R"(unknown easing "peBounce")"},
        {R"({"type":"ptLine","totalTime":1,"loop":true,"segments":[{}]})",
         R"(unknown key "loop" in the path file)"},
        {R"({"type":"ptLine","totalTime":1,"segments":[{},{"center":[0,0]}]})",
         R"(unknown key "center" in segments[1])"},
        {R"({"type":"ptLine","totalTime":1,"segments":[{"start":[0]}]})",
         "segments[0].start must be an array of two numbers [x, y]"},
        {R"({"type":"ptLine","totalTime":1,"segments":[{"radius":"5"}]})",
         "segments[0].radius must be a number"},
        {R"({"type":1,"totalTime":1,"segments":[{}]})", "type must be a string"},
        {R"({"type":"ptLine","totalTime":"2","segments":[{}]})", "totalTime must be a number"},
        {R"({"type":"ptLine","totalTime":1,"reverse":1,"segments":[{}]})", "reverse must be true or false"},
        {R"({"type":"ptLine","segments":[{}]})", R"(missing key "totalTime")"},
        {R"({"type":"ptLine","totalTime":1,"segments":[]})",
         "segments must be an array of at least one segment"},
        {R"({"type":"ptLine","totalTime":1,"segments":[5]})", "segments[0] must be an object"},
        {R"([1,2])", "the path file must hold a JSON object"},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Text);
        const TPathFileResult r = ParsePathFile(c.Text);
        EXPECT_EQ(r.Message, c.Error);
        EXPECT_EQ(r.Code, QVLErr::kInvalid);
    }
    const TPathFileResult broken = ParsePathFile("{\"type\":");
    EXPECT_EQ(broken.Message.rfind("the path file is not valid JSON: parse error at line 1", 0), 0u)
        << broken.Message;
    EXPECT_EQ(broken.Code, QVLErr::kNoJson);
}

TEST(PathFile, AMissingFileIsAnIoError) {
    const TPathFileResult r = ReadPathFile(ORVEX_SOURCE_DIR "/examples/animation/no_such_file.json");
    EXPECT_FALSE(r.Ok());
    EXPECT_EQ(r.Code, QVLErr::kNoFile);
    EXPECT_EQ(ReadPathFile(ORVEX_SOURCE_DIR "/examples").Code, QVLErr::kNoFile);
}

TEST(PathFile, ApplyingABadTimingLeavesTheAnimatorAlone) {
    TPathAnimator a;
    a.SetPath(TPathType::ptCircle, {TPathSegment{}});
    a.SetTiming(3.0, 1.0);
    TPathFileResult r = ParsePathFile(R"({"type":"ptLine","totalTime":0,"segments":[{"end":[10,0]}]})");
    ASSERT_TRUE(r.Ok());
    try {
        ApplyPathFile(r.Value, a);
        ADD_FAILURE() << "expected an exception";
    } catch (const std::out_of_range& e) {
        EXPECT_STREQ(e.what(), "TotalTime must be greater than zero");
    }
    EXPECT_EQ(a.GetTotalTime(), 3.0);
    EXPECT_DOUBLE_EQ(a.GetPathLength(), 0.0 + 1e-6);  // still the degenerate circle

    r.Value.TotalTime = 2.0;
    r.Value.Reverse = true;
    ApplyPathFile(r.Value, a);
    EXPECT_EQ(a.GetCurrentTime(), 2.0);  // a reverse run starts at its end
    EXPECT_EQ(a.GetPathLength(), 10.0);
}
