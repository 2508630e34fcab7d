// A user journey: a legend of the actors on the left, each section as a coloured header over its tasks,
// the tasks as cards in one row with a dot per actor taking part, and beneath every card a face at the
// height of its score (5 at the top), smiling, straight or sad by score, on a dashed line from the card.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/layout/chart_layout.h"
#include "host/layout/chart_text_wrap.h"
#include "orvex/diagrams/chart_journey.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/items/flow_items.h"

namespace Orvex {
namespace {

constexpr double kCardMM = 34.0;
constexpr double kCardGapMM = 4.0;
constexpr double kRowGapMM = 3.0;
constexpr double kActorDotMM = 2.6;
constexpr double kLegendRowMM = 6.0;
constexpr double kLegendGapMM = 8.0;
constexpr double kScoreStepMM = 8.0;  // the drop from one score to the next lower one
constexpr double kFaceMM = 4.5;       // radius
constexpr double kTopScore = 5.0;
constexpr double kPadMM = 2.0 * kTextPaddingY + 1.0;
constexpr double kWrapMM = kCardMM - 2.0 * kTextPaddingX - 1.0;

// Actors get the palette's colours from the far end, so they do not repeat the sections' colours.
TAlphaColor ActorColor(std::size_t index) {
    constexpr std::array<TAlphaColor, 8> kActors{0xFFE06666u, 0xFF3D85C6u, 0xFF6AA84Fu, 0xFFF1C232u,
                                                 0xFF8E7CC3u, 0xFFE69138u, 0xFF45818Eu, 0xFFC27BA0u};
    return kActors[index % kActors.size()];
}

// Happy faces are green, sad ones red, the rest yellow.
TAlphaColor FaceColor(double score) {
    if (score > 3) return 0xFFB6D7A8u;
    if (score < 3) return 0xFFF4CCCCu;
    return 0xFFFFE599u;
}

void DrawFace(TChartCanvas& canvas, TLayoutPoint c, double score) {
    canvas.Circle(c, kFaceMM, {.Fill = FaceColor(score), .Stroke = 0xFF666666u});
    const TChartPaint ink{.Fill = kOpaqueBlack, .Stroke = kOpaqueBlack};
    canvas.Circle({c.X - kFaceMM * 0.38, c.Y - kFaceMM * 0.3}, kFaceMM * 0.12, ink);
    canvas.Circle({c.X + kFaceMM * 0.38, c.Y - kFaceMM * 0.3}, kFaceMM * 0.12, ink);
    const double half = kFaceMM * 0.45;
    const double mouthY = c.Y + kFaceMM * 0.35;
    if (score == 3) {
        canvas.Line({c.X - half, mouthY}, {c.X + half, mouthY},
                    {.Fill = std::nullopt, .Stroke = kOpaqueBlack, .PenMM = 0.35f});
        return;
    }
    // A smile bends down at its middle, a frown up.
    const double bend = (score > 3 ? 1.0 : -1.0) * kFaceMM * 0.25;
    std::vector<TLayoutPoint> mouth;
    for (int i = 0; i <= 8; ++i) {
        const double t = static_cast<double>(i) / 8.0;
        const double x = c.X - half + 2 * half * t;
        mouth.push_back({x, mouthY - bend / 2 + bend * std::sin(t * std::numbers::pi)});
    }
    canvas.Polyline(mouth, {.Fill = std::nullopt, .Stroke = kOpaqueBlack, .PenMM = 0.35f});
}

}  // namespace

TLayoutSize DrawJourney(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& journey = static_cast<const TQVLJourney&>(aChart);
    const std::vector<std::string> actors = journey.Actors();
    const TChartTextStyle headerStyle{.Bold = true};

    // The legend.
    double legendWidth = 0;
    for (std::size_t i = 0; i < actors.size(); ++i) {
        const double y = aOrigin.Y + static_cast<double>(i) * kLegendRowMM + kLegendRowMM / 2;
        aCanvas.Circle({aOrigin.X + kActorDotMM, y}, kActorDotMM,
                       {.Fill = ActorColor(i), .Stroke = ActorColor(i)});
        aCanvas.Text({aOrigin.X + 2 * kActorDotMM + 2, y}, actors[i], {.Vertical = TChartAlign::caCenter});
        legendWidth = std::max(legendWidth, 2 * kActorDotMM + 2 + aCanvas.Measure(actors[i]).Width);
    }
    const double left = aOrigin.X + (actors.empty() ? 0 : legendWidth + kLegendGapMM);

    // Row heights from the tallest caption.
    const bool headed = std::any_of(journey.Sections.begin(), journey.Sections.end(),
                                    [](const auto& s) { return !s.Name.empty(); });
    double headerHeight = 0;
    double cardHeight = 0;
    for (const auto& section : journey.Sections) {
        const double span =
            static_cast<double>(std::max<std::size_t>(1, section.Tasks.size())) * (kCardMM + kCardGapMM) -
            kCardGapMM;
        if (headed)
            headerHeight = std::max(
                headerHeight,
                aCanvas.Measure(ChartWrap(QVLPlainCaption(section.Name) + " ", span - 7, headerStyle),
                                headerStyle)
                        .Height +
                    kPadMM);
        for (const auto& task : section.Tasks)
            cardHeight = std::max(
                cardHeight,
                aCanvas.Measure(ChartWrap(QVLPlainCaption(task.Text) + " ", kWrapMM)).Height + kPadMM);
    }
    cardHeight += 2 * kActorDotMM + 1;  // the actors' dots along the top edge
    const double cardTop = aOrigin.Y + (headed ? headerHeight + kRowGapMM : 0);
    const double scoreTop = cardTop + cardHeight + 2 * kRowGapMM + kFaceMM + 2;

    const double axisY = cardTop + cardHeight + kRowGapMM;
    double x = left;
    for (std::size_t s = 0; s < journey.Sections.size(); ++s) {
        const auto& section = journey.Sections[s];
        const TAlphaColor colour = ChartSeriesColor(s);
        const double span =
            static_cast<double>(std::max<std::size_t>(1, section.Tasks.size())) * (kCardMM + kCardGapMM) -
            kCardGapMM;
        if (headed) {
            auto* header = aCanvas.Box({x, aOrigin.Y, span, headerHeight, true}, TQVLFlowType::ftProcess,
                                       ChartWrap(QVLPlainCaption(section.Name), span - 7, headerStyle),
                                       {.Fill = colour, .Stroke = colour});
            if (header != nullptr) header->SetBold(true);
        }
        for (std::size_t t = 0; t < section.Tasks.size(); ++t) {
            const auto& task = section.Tasks[t];
            const double cx = x + kCardMM / 2;
            const double score = std::clamp(task.Score, 0.0, kTopScore);
            const TLayoutPoint face{cx, scoreTop + (kTopScore - score) * kScoreStepMM};
            aCanvas.Line({cx, cardTop + cardHeight}, {cx, face.Y - kFaceMM},
                         {.Fill = std::nullopt, .Stroke = 0xFF999999u, .Dashed = true});
            auto* card = aCanvas.Box({x, cardTop, kCardMM, cardHeight, true}, TQVLFlowType::ftProcess,
                                     ChartWrap(QVLPlainCaption(task.Text), kWrapMM),
                                     {.Fill = colour, .Stroke = 0xFF666666u});
            if (card != nullptr) card->SetVertAlign(TQVLVertAlign::vaBottom);
            for (std::size_t a = 0; a < task.Actors.size(); ++a) {
                const auto index = static_cast<std::size_t>(
                    std::find(actors.begin(), actors.end(), task.Actors[a]) - actors.begin());
                aCanvas.Circle({x + 2 + kActorDotMM + static_cast<double>(a) * (2 * kActorDotMM + 1),
                                cardTop + kActorDotMM + 1},
                               kActorDotMM, {.Fill = ActorColor(index), .Stroke = kOpaqueWhite});
            }
            DrawFace(aCanvas, face, score);
            x += kCardMM + kCardGapMM;
        }
        if (section.Tasks.empty()) x += kCardMM + kCardGapMM;
    }
    // The journey runs to the right.
    const double axisEnd = std::max(x - kCardGapMM, left) + 4;
    const TChartPaint axis{.Fill = std::nullopt, .Stroke = kOpaqueBlack, .PenMM = 0.6f};
    aCanvas.Line({left, axisY}, {axisEnd, axisY}, axis);
    aCanvas.Line({axisEnd - 3, axisY - 1.5}, {axisEnd, axisY}, axis);
    aCanvas.Line({axisEnd - 3, axisY + 1.5}, {axisEnd, axisY}, axis);
    const double bottom = std::max(scoreTop + kTopScore * kScoreStepMM + kFaceMM,
                                   aOrigin.Y + static_cast<double>(actors.size()) * kLegendRowMM);
    return {axisEnd - aOrigin.X, bottom - aOrigin.Y};
}

}  // namespace Orvex
