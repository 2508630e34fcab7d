// The drawing tools: each collects points by clicks (a press, drag and release counts as two), shows them
// with the cursor as rubber points, and on its last point creates its item as one undo group. Points snap
// through SearchPoint; Shift keeps a segment horizontal or vertical.
//
// [SECTION] Tool table   [SECTION] Info texts   [SECTION] Events   [SECTION] Creating the item
#include <algorithm>
#include <cmath>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/messages/messages.h"

namespace Orvex {

// [SECTION] Tool table

namespace {
using A = TQVLEdAction;
using S = TQVLEdState;

constexpr std::int32_t kOpen = 1000;  // point lists end by Enter or the right button

struct TToolPlan {
    TQVLItemType Kind = TQVLItemType::itUndefined;
    std::int32_t Points = 0;  // picks that finish the tool; kOpen for point lists
    std::int32_t Least = 0;   // picks a point list needs
};

TToolPlan Plan(TQVLEdAction action) {
    using K = TQVLItemType;
    switch (action) {
        case A::eaPoint:
            return {K::itPoint, 1, 1};
        case A::eaLine:
            return {K::itLine, 2, 2};
        case A::eaArrowLine:
            return {K::itArrowLine, 2, 2};
        case A::eaRectangle:
            return {K::itRectangle, 2, 2};
        case A::eaEllipse:
            return {K::itEllipse, 2, 2};
        case A::eaCirclePR:
        case A::eaCircle2P:
            return {K::itCircle, 2, 2};
        case A::eaCircle3P:
            return {K::itCircle, 3, 3};
        case A::eaText:
            return {K::itText, 2, 2};
        case A::eaParagraph:
            return {K::itPara, 2, 2};
        case A::eaRichText:
            return {K::itRichText, 2, 2};
        case A::eaFlow:
            return {K::itFlow, 2, 2};
        case A::eaArc:
            return {K::itArc, 3, 3};
        case A::eaSector2P:
            return {K::itSector, 2, 2};
        case A::eaSectorPR:
        case A::eaSector3P:
            return {K::itSector, 3, 3};
        case A::eaPolyline:
            return {K::itPolyLine, kOpen, 2};
        case A::eaPolygon:
            return {K::itPolygon, kOpen, 3};
        case A::eaBezier:
            return {K::itBezier, kOpen, 2};
        case A::eaLink:
            return {K::itLink, 2, 2};
        case A::eaPolyLink:
            return {K::itLink, kOpen, 2};
        case A::eaDim:
            return {K::itDim, 3, 3};
        case A::eaDimAng:  // centre, the two arms, a point of the dimension arc
            return {K::itDim, 4, 4};
        case A::eaDimRad1:
        case A::eaDimRad2:
        case A::eaDimDia1:
        case A::eaDimDia2:
            return {K::itDim, 2, 2};
        default:
            return {};
    }
}

// The step that asks for the next pick once `picked` points are in.
TQVLEdState NextState(TQVLEdAction action, std::size_t picked) {
    if (action == A::eaCirclePR || action == A::eaSectorPR) {
        if (picked == 0) return S::edPickCenter;
        return picked == 1 ? S::edPickRadio : S::edPickNext;
    }
    if (Plan(action).Points == kOpen) return picked == 0 ? S::edPickFirst : S::edPickNext;
    switch (picked) {
        case 0:
            return S::edPickFirst;
        case 1:
            return S::edPickSecond;
        case 2:
            return S::edPickThird;
        default:
            return S::edPickNext;
    }
}
}  // namespace

// [SECTION] Info texts

namespace {
const char* ActionKey(TQVLEdAction action) {
    static constexpr const char* kKeys[kEdActionCount] = {"",
                                                          "Selection",
                                                          "Move",
                                                          "DrawPoint",
                                                          "DrawLine",
                                                          "DrawArrowLine",
                                                          "DrawRectangle",
                                                          "DrawPolyline",
                                                          "DrawArc",
                                                          "DrawPolygon",
                                                          "DrawBezier",
                                                          "DrawCirclePR",
                                                          "DrawCircle2P",
                                                          "DrawCircle3P",
                                                          "DrawEllipse",
                                                          "DrawText",
                                                          "EditText",
                                                          "MoveText",
                                                          "DrawParagraph",
                                                          "DrawRichText",
                                                          "TrimLines",
                                                          "JoinLines",
                                                          "ExtendLines",
                                                          "Equidist",
                                                          "DrawBarcode",
                                                          "DrawPDF417",
                                                          "DrawDataMatrix",
                                                          "DrawQRCode",
                                                          "DrawImage",
                                                          "Objects",
                                                          "DrawLink",
                                                          "DrawLink",
                                                          "DrawTable",
                                                          "DrawPolytext",
                                                          "DrawRank",
                                                          "DrawNutriScore",
                                                          "DrawLevel",
                                                          "DrawSymbol",
                                                          "DrawDim",
                                                          "DrawDimRad",
                                                          "DrawDimRad",
                                                          "DrawDimDia",
                                                          "DrawDimDia",
                                                          "DrawSectorPR",
                                                          "DrawSector2P",
                                                          "DrawSector3P",
                                                          "DrawPackage",
                                                          "DrawDimAng"};
    const auto i = static_cast<std::size_t>(action);
    return i < std::size(kKeys) ? kKeys[i] : "";
}

const char* StateKey(TQVLEdState state) {
    switch (state) {
        case S::edPickPoint:
            return "SelPoint";
        case S::edSelectDrag:
            return "SelectRect";
        case S::edPickFirst:
            return "SelFirstPoint";
        case S::edPickSecond:
            return "SelSecondPoint";
        case S::edPickThird:
            return "SelThirdPoint";
        case S::edPickNext:
            return "SelNextPoint";
        case S::edPickRadio:
            return "SelRadio";
        case S::edPickCenter:
            return "SelCenter";
        case S::edPickRadioX:
            return "SelRadioX";
        case S::edPickRadioY:
            return "SelRadioY";
        case S::edEditing:
            return "Editing";
        case S::edPickRef:
        case S::edFirstRef:
            return "SelPickRef";
        case S::edPickNextRef:
        case S::edSecondRef:
            return "SelPickNextRef";
        case S::edTrim:
        case S::edExtend:
            return "SelTrimLines";
        case S::edPick1Distance:
        case S::edEquidist:
            return "SelFirstPointDistance";
        case S::edPick2Distance:
            return "SelSecondPointDistance";
        case S::edPickSide:
            return "SelSidePos";
        case S::edPickCircle:
            return "SelCircle";
        case S::edEnd:
        case S::edPackage:
            return "";
    }
    return "";
}
}  // namespace

std::string ActionText(TQVLEdAction action, TQVLEdState state) {
    const char* a = ActionKey(action);
    const char* s = StateKey(state);
    std::string text = *a != '\0' ? TORXMsg::GetActionsValue(a) : std::string{};
    if (*s != '\0' && action != A::eaNone) {
        if (!text.empty()) text += ": ";
        text += TORXMsg::GetActionsValue(s);
    }
    return text;
}

// [SECTION] Events

TQVLPto64 TORXEditor::Constrain(const TQVLPto64& p, TQVLShiftState shift) const {
    if (!shift.Contains(TQVLShift::ssShift) || fToolPoints.size() < 2) return p;
    const TQVLPto64& last = fToolPoints[fToolPoints.size() - 2];  // the last picked point
    if (std::llabs(p.X - last.X) >= std::llabs(p.Y - last.Y)) return {p.X, last.Y};
    return {last.X, p.Y};
}

bool TORXEditor::ToolPick(const TQVLPto64& raw, TQVLShiftState shift) {
    const TToolPlan plan = Plan(fDoc.fAction);
    if (plan.Kind == TQVLItemType::itUndefined) return false;
    fDown = raw;  // where the pointer was pressed, before snapping
    TQVLPto64 p = raw;
    TQVLSnapHit hit;
    const bool hasFrom = fToolPoints.size() >= 2;
    const TQVLPto64 from = hasFrom ? fToolPoints[fToolPoints.size() - 2] : TQVLPto64{};
    fGuides.clear();
    SearchPoint(p.X, p.Y, hit, hasFrom ? &from : nullptr);
    if (fToolPoints.empty()) {
        if (!LinkEndAt(p, true)) return false;  // a link starts on an element
        fToolPoints.push_back(p);               // the picked point
        fToolPoints.push_back(p);               // and the cursor
    } else {
        p = Constrain(p, shift);
        fToolPoints.back() = p;
        if (fDoc.fAction == A::eaLink || fDoc.fAction == A::eaPolyLink) {
            if (LinkEndAt(p, false)) {
                fToolPoints.push_back(p);
                return Finish();
            }
            if (fDoc.fAction == A::eaLink) return false;  // a straight link ends on an element only
        }
        fToolPoints.push_back(p);
    }
    fPressPicks = fToolPoints.size();
    if (static_cast<std::int32_t>(fToolPoints.size()) - 1 >= plan.Points) return Finish();
    SetState(NextState(fDoc.fAction, fToolPoints.size() - 1));
    return true;
}

bool TORXEditor::ToolMove(const TQVLPto64& raw, TQVLShiftState shift) {
    fLast = raw;
    if (fToolPoints.empty()) {
        Info();
        return false;
    }
    TQVLPto64 p = raw;
    TQVLSnapHit hit;
    fGuides.clear();
    const TQVLPto64 from = fToolPoints[fToolPoints.size() - 2];
    SearchPoint(p.X, p.Y, hit, &from);
    fToolPoints.back() = Constrain(p, shift);
    Info();
    return true;
}

bool TORXEditor::ToolUp(const TQVLPto64& raw, TQVLShiftState shift) {
    // A release away from the point its press picked picks a point of its own: press, drag and release
    // draws a line.
    if (!fButton || fToolPoints.size() < 2 || fToolPoints.size() != fPressPicks) return false;
    const double d = std::hypot(static_cast<double>(raw.X - fDown.X), static_cast<double>(raw.Y - fDown.Y));
    if (d <= static_cast<double>(Tolerance())) return false;
    fButton = false;
    return ToolPick(raw, shift);
}

TQVLEdState TORXEditor::FirstState() const {
    switch (fDoc.fAction) {
        case A::eaNone:
        case A::eaSelection:
        case A::eaMove:
        case A::eaEdText:
        case A::eaMoveText:
            return S::edPickPoint;
        case A::eaTrim:
        case A::eaExtend:
        case A::eaEquidist:
            return S::edPickRef;
        case A::eaJoin:
            return S::edPickFirst;
        default:
            return NextState(fDoc.fAction, 0);
    }
}

TORXBaseItem* TORXEditor::CreateKind(TQVLEdAction action) {
    const TToolPlan plan = Plan(action);
    return plan.Kind == TQVLItemType::itUndefined ? nullptr : fDoc.CreateItem(plan.Kind);
}

bool TORXEditor::Finish() {
    const TToolPlan plan = Plan(fDoc.fAction);
    // The last of the tool's points is the cursor.
    std::vector<TQVLPto64> picked = fToolPoints;
    if (!picked.empty()) picked.pop_back();
    if (static_cast<std::int32_t>(picked.size()) < plan.Least) return false;
    fPicked = picked;
    fDoc.BeginUpdate(true);
    TORXBaseItem* item = CreateFromTool();
    fDoc.EndUpdate();
    fToolPoints.clear();
    fPicked.clear();
    fLinkFrom = TQVLink{};
    fGuides.clear();
    SetState(NextState(fDoc.fAction, 0));
    if (item == nullptr) return false;
    fDoc.CheckIntersetions();
    return true;
}

}  // namespace Orvex
