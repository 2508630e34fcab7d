// A 100,000-item drawing: reading and writing its JSON, its SVG, and one pick over every item. The drawing
// and its texts are built once, outside the timed loops, and shared by the cases.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>

#include "orvex/document/headless.h"
#include "orvex/io/drawing_file.h"
#include "orvex/io/json.h"

namespace {

using namespace Orvex;

constexpr int kItems = 100'000;

// A mix of the common kinds on a 400 x 250 grid, 5 mm apart, so that bounds and picks are realistic.
std::string BigDrawingText() {
    static const TQVLItemType kinds[] = {TQVLItemType::itLine,      TQVLItemType::itRectangle,
                                         TQVLItemType::itCircle,    TQVLItemType::itPolyLine,
                                         TQVLItemType::itEllipse,   TQVLItemType::itText,
                                         TQVLItemType::itArrowLine, TQVLItemType::itBezier};
    TJSON items = TJSON::array();
    for (int i = 0; i < kItems; ++i) {
        const double x = (i % 400) * 5.0;
        const double y = (i / 400) * 5.0;
        const TQVLItemType kind = kinds[i % 8];
        TJSON points = TJSON::array({{{"X", x}, {"Y", y}}, {{"X", x + 3}, {"Y", y + 2}}});
        if (kind == TQVLItemType::itPolyLine || kind == TQVLItemType::itBezier) {
            points.push_back({{"X", x + 4}, {"Y", y}});
            points.push_back({{"X", x + 1}, {"Y", y + 4}});
        }
        TJSON item = {{"Type", static_cast<int>(kind)},
                      {"InID", i + 1},
                      {"Layer", 0},
                      {"Color", {{"R", i % 256}, {"G", 40}, {"B", 90}, {"A", 255}}},
                      {"PenWidth", 0.2},
                      {"Points", std::move(points)}};
        if (kind == TQVLItemType::itText) item["Text"] = "Label " + std::to_string(i);
        items.push_back(std::move(item));
    }
    const TJSON drawing = {{"Version", kDrawingVersion},
                           {"EditorMode", 2},
                           {"Units", 0},
                           {"Angle", 0},
                           {"Layers", TJSON::array({{{"Name", "Base"}}})},
                           {"Items", std::move(items)}};
    return drawing.dump();
}

const std::string& DrawingText() {
    static const std::string text = BigDrawingText();
    return text;
}

const TORXHeadlessLabel& Drawing() {
    static const std::unique_ptr<TORXHeadlessLabel> document = [] {
        auto d = std::make_unique<TORXHeadlessLabel>();
        d->SetOptions({TOrvexOption::loUniqueID});
        LoadDrawingText(DrawingText(), "bench", *d);
        return d;
    }();
    return *document;
}

void BM_DrawingReadJson100k(benchmark::State& state) {
    const std::string& text = DrawingText();
    for (auto _ : state) {
        state.PauseTiming();
        auto document = std::make_unique<TORXHeadlessLabel>();
        state.ResumeTiming();
        LoadDrawingText(text, "bench", *document);
        state.PauseTiming();
        if (document->GetItemsCount() != kItems) state.SkipWithError("items were lost");
        document.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_DrawingReadJson100k)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_DrawingWriteJson100k(benchmark::State& state) {
    const auto& document = Drawing();
    for (auto _ : state) benchmark::DoNotOptimize(document.GetJsonString());
    state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_DrawingWriteJson100k)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_DrawingSvg100k(benchmark::State& state) {
    const auto& document = Drawing();
    for (auto _ : state) benchmark::DoNotOptimize(document.SVG(TQVLExportSVG::esFile, 1.0f, false));
    state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_DrawingSvg100k)->Unit(benchmark::kMillisecond)->Iterations(3);

// A click walks the items from the top of the paint order down to the first hit. The first case misses
// everything (the worst case: every item is asked); the second lands on the bottom item, on its outline.
void PickFrom(benchmark::State& state, std::int64_t x, std::int64_t y) {
    const auto& document = Drawing();
    for (auto _ : state) {
        const TORXBaseItem* hit = nullptr;
        for (std::int32_t i = document.GetItemsCount() - 1; i >= 0 && hit == nullptr; --i) {
            const TORXBaseItem* item = document.GetItem(i);
            if (item->Pick(x, y, 50, false)) hit = item;
        }
        benchmark::DoNotOptimize(hit);
    }
    state.SetItemsProcessed(state.iterations() * kItems);
}

void BM_PickMiss100k(benchmark::State& state) {
    PickFrom(state, -1'000'000, -1'000'000);
}
BENCHMARK(BM_PickMiss100k)->Unit(benchmark::kMicrosecond);

void BM_PickBottom100k(benchmark::State& state) {
    const TQVLPto first = Drawing().GetItem(0)->GetPoint(1);
    PickFrom(state, first.X, first.Y);
}
BENCHMARK(BM_PickBottom100k)->Unit(benchmark::kMicrosecond);

}  // namespace
