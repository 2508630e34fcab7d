// A 100,000-item drawing: reading and writing its JSON, its SVG, and a pick over every item. The drawing
// and its texts are built once, outside the timed loops, and shared by the cases.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>

#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/text_items.h"

namespace {

using namespace Orvex;

constexpr int kItems = 100'000;

// A mix of the common kinds on a 400 x 250 grid, 5 mm apart, so that bounds and picks are realistic. The
// items come from the document's factory and the text from its writer, as a saved drawing would. The
// labelling mode keeps the intersection worker, which drawing mode starts after a read, out of the timings.
std::string BigDrawingText() {
    static const TQVLItemType kinds[] = {TQVLItemType::itLine,      TQVLItemType::itRectangle,
                                         TQVLItemType::itCircle,    TQVLItemType::itPolyLine,
                                         TQVLItemType::itEllipse,   TQVLItemType::itText,
                                         TQVLItemType::itArrowLine, TQVLItemType::itBezier,
                                         TQVLItemType::itFlow,      TQVLItemType::itPolygon};
    TORXHeadlessLabel doc;
    doc.SetOptions({TOrvexOption::loUniqueID});  // nothing to undo: building needs no history
    const std::int64_t mm = SetBaseValue(1.0f);
    for (int i = 0; i < kItems; ++i) {
        const std::int64_t x = (i % 400) * 5 * mm;
        const std::int64_t y = (i / 400) * 5 * mm;
        const TQVLItemType kind = kinds[i % std::size(kinds)];
        TORXBaseItem* item = doc.CreateItem(kind);
        item->SetBase(1, x, y);
        item->SetBase(2, x + 3 * mm, y + 2 * mm);
        if (kind == TQVLItemType::itPolyLine || kind == TQVLItemType::itBezier ||
            kind == TQVLItemType::itPolygon) {
            item->InsertPoint(x + 4 * mm, y, 99);
            item->InsertPoint(x + mm, y + 4 * mm, 99);
        }
        item->SetColor(AlphaColor(static_cast<std::uint8_t>(i % 256), 40, 90, 255));
        item->SetPenWidthMM(0.2f);
        if (auto* text = dynamic_cast<TORXBaseText*>(item)) text->SetText("Label " + std::to_string(i));
        if (auto* flow = dynamic_cast<TORXBaseFlow*>(item)) flow->SetText("Step " + std::to_string(i));
    }
    return doc.GetJsonString();
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

// A click through the document's pick index. The first case misses everything; the second lands on the
// bottom item, on its outline, under nothing else; the third is the first click after moving an item,
// which the index follows without a rebuild; the fourth is the first click after a full rebuild.
void PickAt(benchmark::State& state, std::int64_t x, std::int64_t y) {
    const auto& document = Drawing();
    for (auto _ : state) benchmark::DoNotOptimize(document.ItemAt(x, y, 50));
    state.SetItemsProcessed(state.iterations() * kItems);
}

TQVLPto BottomOutline() {
    return Drawing().GetItem(0)->GetPoint(1);
}

void BM_PickMiss100k(benchmark::State& state) {
    PickAt(state, -1'000'000, -1'000'000);
}
BENCHMARK(BM_PickMiss100k)->Unit(benchmark::kMicrosecond);

void BM_PickBottom100k(benchmark::State& state) {
    const TQVLPto first = BottomOutline();
    PickAt(state, first.X, first.Y);
}
BENCHMARK(BM_PickBottom100k)->Unit(benchmark::kMicrosecond);

// A different item each time, as a long editing session would move them, so that the index's bound on
// the items it follows one by one forces a rebuild now and then and its share shows in the mean.
void BM_PickAfterEdit100k(benchmark::State& state) {
    auto& document = const_cast<TORXHeadlessLabel&>(Drawing());
    const TQVLPto first = BottomOutline();
    const std::int64_t mm = SetBaseValue(1.0f);
    std::int32_t next = 1;
    std::int64_t dx = mm;
    const std::size_t builds = document.PickIndexBuilds();
    for (auto _ : state) {
        document.BeginUpdate(true);  // one edit as the editor makes it, recalculations flushed at its end
        document.GetItem(next)->BaseMove(0, 0, dx, 0, TQVLMoveOpt::moMove, false);
        document.EndUpdate();
        if (++next == kItems) next = 1, dx = -dx;
        benchmark::DoNotOptimize(document.ItemAt(first.X, first.Y, 50));
    }
    state.counters["rebuilds"] = static_cast<double>(document.PickIndexBuilds() - builds);
    state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_PickAfterEdit100k)->Unit(benchmark::kMicrosecond);

void BM_PickAfterRebuild100k(benchmark::State& state) {
    auto& document = const_cast<TORXHeadlessLabel&>(Drawing());
    const TQVLPto first = BottomOutline();
    for (auto _ : state) {
        document.InvalidatePickIndex();
        benchmark::DoNotOptimize(document.ItemAt(first.X, first.Y, 50));
    }
    state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_PickAfterRebuild100k)->Unit(benchmark::kMillisecond);

// The walk the index replaces: every item's own hit test, from the top of the paint order down.
void BM_PickWalk100k(benchmark::State& state) {
    const auto& document = Drawing();
    const TQVLPto first = BottomOutline();
    for (auto _ : state) {
        const TORXBaseItem* hit = nullptr;
        for (std::int32_t i = document.GetItemsCount() - 1; i >= 0 && hit == nullptr; --i) {
            const TORXBaseItem* item = document.GetItem(i);
            if (item->Pick(first.X, first.Y, 50, false)) hit = item;
        }
        benchmark::DoNotOptimize(hit);
    }
    state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_PickWalk100k)->Unit(benchmark::kMicrosecond);

}  // namespace
