#include "host/editor/edit_overlay.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "orvex/document/document.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"

namespace Orvex::Host {

namespace {

using A = TQVLEdAction;

// Lengths in the SVG's unit, from base units and from screen pixels.
class TUnits {
  public:
    TUnits(const TORXBaseLabel& aDoc, double aPixelsPerUnit)
        : fUnit(aDoc.Units()), fPixels(aPixelsPerUnit > 0 ? aPixelsPerUnit : 1.0) {}
    std::string Base(std::int64_t aValue) const {
        return fmt::format("{:.4f}", TJSONUtils::BaseToUnit(aValue, fUnit));
    }
    double BaseValue(std::int64_t aValue) const { return TJSONUtils::BaseToUnit(aValue, fUnit); }
    std::string Pixels(double aPixels) const { return fmt::format("{:.4f}", aPixels / fPixels); }
    double PixelValue(double aPixels) const { return aPixels / fPixels; }

  private:
    TQVLUnits fUnit;
    double fPixels;
};

std::string Rect(const TUnits& u, const TQVLRect& r, std::string_view aClass, std::string_view aStyle) {
    return fmt::format("<rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" {}/>\n", aClass,
                       u.Base(std::min(r.Left, r.Right)), u.Base(std::min(r.Top, r.Bottom)),
                       u.Base(std::abs(r.GetWidth())), u.Base(std::abs(r.GetHeight())), aStyle);
}

std::string Line(const TUnits& u, const TQVLPto64& a, const TQVLPto64& b, std::string_view aClass,
                 std::string_view aStyle) {
    return fmt::format("<line class=\"{}\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" {}/>\n", aClass,
                       u.Base(a.X), u.Base(a.Y), u.Base(b.X), u.Base(b.Y), aStyle);
}

// Strokes one screen pixel wide at any zoom.
constexpr std::string_view kThin = "vector-effect=\"non-scaling-stroke\" fill=\"none\"";

std::string Grid(const TORXBaseLabel& aDoc, const TORXEditor& aEditor, const TUnits& u) {
    const std::int64_t scale = std::max<std::int64_t>(1, aDoc.Measure().fDrawScale);
    std::int64_t gx = std::max<std::int64_t>(1, aEditor.fGridX);
    std::int64_t gy = std::max<std::int64_t>(1, aEditor.fGridY);
    // Lines closer than a few pixels would grey the page out: every n-th line is shown instead.
    while (u.PixelValue(1) * 6 > u.BaseValue(gx)) gx *= 2;
    while (u.PixelValue(1) * 6 > u.BaseValue(gy)) gy *= 2;
    const std::int64_t width = aDoc.Measure().fLabelWidth * scale;
    const std::int64_t height = aDoc.Measure().fLabelHeight * scale;
    std::string out = fmt::format(
        "<defs><pattern id=\"editor-grid\" patternUnits=\"userSpaceOnUse\" width=\"{0}\" height=\"{1}\">"
        "<path d=\"M {0} 0 L 0 0 0 {1}\" stroke=\"#9ab\" stroke-opacity=\"0.6\" {2}/></pattern></defs>\n",
        u.Base(gx), u.Base(gy), kThin);
    out += fmt::format(
        "<rect class=\"grid\" x=\"0\" y=\"0\" width=\"{}\" height=\"{}\" fill=\"url(#editor-grid)\"/>\n",
        u.Base(width), u.Base(height));
    return out;
}

// Tools whose first two points span a box: the rubber shows that box.
bool IsBoxTool(A aAction) {
    switch (aAction) {
        case A::eaRectangle:
        case A::eaEllipse:
        case A::eaText:
        case A::eaParagraph:
        case A::eaRichText:
        case A::eaFlow:
        case A::eaBarcode:
        case A::eaPDF417:
        case A::eaDataMatrix:
        case A::eaQRCode:
        case A::eaImage:
        case A::eaTable:
        case A::eaRank:
        case A::eaNutriScore:
        case A::eaLevel:
        case A::eaPackage:
        case A::eaSymbol:
            return true;
        default:
            return false;
    }
}

std::string ToolRubber(const TORXBaseLabel& aDoc, const TORXEditor& aEditor, const TUnits& u) {
    const auto& points = aEditor.ToolPoints();
    if (points.size() < 2) return {};
    constexpr std::string_view kStyle =
        "stroke=\"#0a6cff\" stroke-dasharray=\"4 3\" vector-effect=\"non-scaling-stroke\" fill=\"none\"";
    const A action = aDoc.GetAction();
    std::string out;
    if (IsBoxTool(action)) {
        out += Rect(u, TQVLRect(points[0].X, points[0].Y, points[1].X, points[1].Y), "rubber", kStyle);
    } else if (action == A::eaCirclePR || action == A::eaSectorPR) {
        const double r = std::hypot(static_cast<double>(points[1].X - points[0].X),
                                    static_cast<double>(points[1].Y - points[0].Y));
        out +=
            fmt::format("<circle class=\"rubber\" cx=\"{}\" cy=\"{}\" r=\"{}\" {}/>\n", u.Base(points[0].X),
                        u.Base(points[0].Y), u.Base(static_cast<std::int64_t>(std::llround(r))), kStyle);
    } else if (action == A::eaCircle2P && points.size() == 2) {
        const double r = std::hypot(static_cast<double>(points[1].X - points[0].X),
                                    static_cast<double>(points[1].Y - points[0].Y)) /
                         2;
        out += fmt::format("<circle class=\"rubber\" cx=\"{}\" cy=\"{}\" r=\"{}\" {}/>\n",
                           u.Base((points[0].X + points[1].X) / 2), u.Base((points[0].Y + points[1].Y) / 2),
                           u.Base(static_cast<std::int64_t>(std::llround(r))), kStyle);
    }
    std::string path;
    for (const auto& p : points)
        path += fmt::format("{}{} {} ", path.empty() ? "M " : "L ", u.Base(p.X), u.Base(p.Y));
    out += fmt::format("<path class=\"rubber-line\" d=\"{}\" {}/>\n", path, kStyle);
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const double r = u.PixelValue(2.5);
        out += fmt::format("<circle class=\"picked\" cx=\"{}\" cy=\"{}\" r=\"{:.4f}\" fill=\"#0a6cff\"/>\n",
                           u.Base(points[i].X), u.Base(points[i].Y), r);
    }
    return out;
}

std::string Handles(const TORXBaseLabel& aDoc, const TUnits& u) {
    std::string out;
    const double side = u.PixelValue(7);
    for (const TORXBaseItem* item : aDoc.Selection()) {
        out += Rect(
            u, item->BoundsRect(), "selected",
            "stroke=\"#0a6cff\" stroke-dasharray=\"2 2\" vector-effect=\"non-scaling-stroke\" fill=\"none\"");
    }
    std::int32_t index = 0;
    for (const auto& p : aDoc.SelPoints()) {
        out += fmt::format(
            "<rect class=\"handle\" data-index=\"{}\" x=\"{:.4f}\" y=\"{:.4f}\" width=\"{:.4f}\" "
            "height=\"{:.4f}\" "
            "fill=\"#fff\" stroke=\"#0a6cff\" vector-effect=\"non-scaling-stroke\"/>\n",
            index++, u.BaseValue(p.X) - side / 2, u.BaseValue(p.Y) - side / 2, side, side);
    }
    return out;
}

std::string Guides(const TORXEditor& aEditor, const TUnits& u) {
    std::string out;
    for (const auto& guide : aEditor.Guides()) {
        out += Line(u, guide.From, guide.To,
                    guide.Kind == TQVLGuideKind::glAlign ? "guide align" : "guide reference",
                    guide.Kind == TQVLGuideKind::glAlign
                        ? "stroke=\"#d0009a\" vector-effect=\"non-scaling-stroke\""
                        : "stroke=\"#00a060\" stroke-dasharray=\"1 3\" vector-effect=\"non-scaling-stroke\"");
    }
    for (const TORXBaseItem* item : aEditor.References())
        out +=
            Rect(u, item->BoundsRect(), "reference",
                 "stroke=\"#f08000\" stroke-width=\"2\" vector-effect=\"non-scaling-stroke\" fill=\"none\"");
    return out;
}

std::string RubberBand(const TORXEditor& aEditor, const TUnits& u) {
    if (!aEditor.RubberBandActive()) return {};
    // Left to right takes whole items only: a solid frame; right to left touches: a dashed one.
    return Rect(
        u, aEditor.RubberBand(), aEditor.RubberBandFull() ? "rubber-band full" : "rubber-band touch",
        aEditor.RubberBandFull()
            ? "stroke=\"#0a6cff\" fill=\"#0a6cff\" fill-opacity=\"0.08\" vector-effect=\"non-scaling-stroke\""
            : "stroke=\"#0a6cff\" stroke-dasharray=\"5 3\" fill=\"#0a6cff\" fill-opacity=\"0.05\" "
              "vector-effect=\"non-scaling-stroke\"");
}

std::string_view SnapModeName(TQVLSnapMode aMode) {
    switch (aMode) {
        case TQVLSnapMode::smGrid:
            return "grid";
        case TQVLSnapMode::smEndPoint:
            return "end";
        case TQVLSnapMode::smMidPoint:
            return "middle";
        case TQVLSnapMode::smCenter:
            return "centre";
        case TQVLSnapMode::smIntersection:
            return "intersection";
        case TQVLSnapMode::smTangent:
            return "tangent";
        case TQVLSnapMode::smPerpendicular:
            return "perpendicular";
    }
    return "grid";
}

std::string SnapMark(const TQVLSnapHit& aHit, const TUnits& u) {
    const double x = u.BaseValue(aHit.Point.X);
    const double y = u.BaseValue(aHit.Point.Y);
    const double r = u.PixelValue(aHit.Mode == TQVLSnapMode::smGrid ? 3 : 6);
    const std::string_view name = SnapModeName(aHit.Mode);
    constexpr std::string_view kStyle =
        "stroke=\"#e0004a\" stroke-width=\"1.5\" vector-effect=\"non-scaling-stroke\" fill=\"none\"";
    // Each kind of snap has its own mark, as drafting programs draw them.
    switch (aHit.Mode) {
        case TQVLSnapMode::smEndPoint:
            return fmt::format(
                "<rect class=\"snap\" data-mode=\"{}\" x=\"{:.4f}\" y=\"{:.4f}\" width=\"{:.4f}\" "
                "height=\"{:.4f}\" {}/>\n",
                name, x - r, y - r, 2 * r, 2 * r, kStyle);
        case TQVLSnapMode::smMidPoint:
            return fmt::format(
                "<path class=\"snap\" data-mode=\"{}\" d=\"M {:.4f} {:.4f} L {:.4f} {:.4f} L {:.4f} {:.4f} "
                "Z\" {}/>\n",
                name, x, y - r, x + r, y + r, x - r, y + r, kStyle);
        case TQVLSnapMode::smCenter:
            return fmt::format(
                "<circle class=\"snap\" data-mode=\"{}\" cx=\"{:.4f}\" cy=\"{:.4f}\" r=\"{:.4f}\" {}/>\n",
                name, x, y, r, kStyle);
        default:
            return fmt::format(
                "<path class=\"snap\" data-mode=\"{}\" d=\"M {:.4f} {:.4f} L {:.4f} {:.4f} M {:.4f} {:.4f} L "
                "{:.4f} {:.4f}\" {}/>\n",
                name, x - r, y - r, x + r, y + r, x - r, y + r, x + r, y - r, kStyle);
    }
}

// The caret of the text edited in place: on its line, after the characters before it, where the text's
// own layout puts them. Texts laid out otherwise (turned, or of another kind) show a frame at their bounds.
std::string Caret(const TORXEditor& aEditor, const TUnits& u) {
    const TQVLTextEdit& edit = aEditor.TextEdit();
    if (edit.Item == nullptr) return {};
    std::string out = Rect(u, edit.Item->BoundsRect(), "text-edit",
                           "stroke=\"#0a6cff\" vector-effect=\"non-scaling-stroke\" fill=\"none\"");
    const auto* text = dynamic_cast<const TORXBaseText*>(edit.Item);
    if (text == nullptr || text->Angle() != TQVLAngle::ag0) return out;
    const auto lines = text->TextLines();
    const ITextMetrics& metrics = QVLTextMetrics(text->QVLab());
    const double scale = text->ScaleX() > 0.0f ? text->ScaleX() : 1.0;
    std::int64_t x = edit.Item->BoundsRect().Left;
    std::int64_t baseline = edit.Item->BoundsRect().Bottom;
    std::size_t from = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::size_t at = edit.Text.find(lines[i].Text, from);
        if (at == std::string::npos) at = from;
        const std::size_t end = at + lines[i].Text.size();
        if (edit.Caret <= end || i + 1 == lines.size()) {
            const std::size_t upto = std::clamp(edit.Caret, at, std::min(end, edit.Text.size()));
            const auto width = static_cast<double>(
                metrics.TextWidth(std::string_view(edit.Text).substr(at, upto - at), text->Font()));
            x = lines[i].X + static_cast<std::int64_t>(std::llround(width * scale));
            baseline = lines[i].Y;
            break;
        }
        from = end;
    }
    const std::int64_t ascent = metrics.Ascent(text->Font());
    const std::int64_t height = metrics.LineHeight(text->Font());
    out += fmt::format(
        "<line class=\"caret\" x1=\"{0}\" y1=\"{1}\" x2=\"{0}\" y2=\"{2}\" stroke=\"#000\" "
        "stroke-width=\"1.5\" "
        "vector-effect=\"non-scaling-stroke\"><animate attributeName=\"opacity\" values=\"1;1;0;0\" "
        "dur=\"1s\" "
        "repeatCount=\"indefinite\"/></line>\n",
        u.Base(x), u.Base(baseline - ascent), u.Base(baseline - ascent + height));
    return out;
}

}  // namespace

std::string EditOverlaySVG(TORXBaseLabel& aDocument, const TOverlayView& aView) {
    const TUnits u(aDocument, aView.PixelsPerUnit);
    TORXEditor& editor = aDocument.Editor();
    std::string out = "<g id=\"editor-overlay\" pointer-events=\"none\">\n";
    if (aView.Grid) out += Grid(aDocument, editor, u);
    out += Guides(editor, u);
    out += Handles(aDocument, u);
    out += ToolRubber(aDocument, editor, u);
    out += RubberBand(editor, u);
    out += Caret(editor, u);
    if (aView.Snap) out += SnapMark(*aView.Snap, u);
    out += "</g>";
    return out;
}

}  // namespace Orvex::Host
