// Editing a text in place and moving texts. While a text is edited the item shows every keystroke with
// undo recording off; when the edit ends the item first gets its old text back and the new one is then set
// once, recorded, so the whole edit is one undo step and a cancelled edit leaves no trace. A rich text is
// edited as its plain text; each change is made to the same span of the markup, so that the formatting
// around it survives.
//
// [SECTION] Text access   [SECTION] Caret movement   [SECTION] Editing   [SECTION] Moving texts
#include <algorithm>
#include <cmath>
#include <utility>

#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/rich_text_item.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

// [SECTION] Text access

namespace {
using A = TQVLEdAction;

// The item's editable text (a rich text's markup), and whether Enter breaks a line in it.
bool ReadText(const TORXBaseItem* item, std::string& text, bool& multiLine) {
    if (const auto* t = dynamic_cast<const TORXTextItem*>(item)) {
        text = t->Text();
        multiLine = dynamic_cast<const TORXBasePara*>(item) != nullptr;
        return true;
    }
    if (const auto* rich = dynamic_cast<const TORXBaseRichText*>(item)) {
        text = rich->GetRichText();
        multiLine = true;
        return true;
    }
    if (const auto* flow = dynamic_cast<const TORXBaseFlow*>(item)) {
        text = flow->Text();
        multiLine = true;
        return true;
    }
    if (const auto* arrow = dynamic_cast<const TORXBaseArrowLine*>(item)) {
        text = arrow->Text();
        multiLine = false;
        return true;
    }
    if (const auto* dim = dynamic_cast<const TORXBaseDim*>(item)) {
        text = dim->Text();
        multiLine = false;
        return true;
    }
    return false;
}

void WriteText(TORXBaseItem* item, const std::string& text) {
    if (auto* t = dynamic_cast<TORXTextItem*>(item)) t->SetText(text);
    if (auto* rich = dynamic_cast<TORXBaseRichText*>(item)) rich->SetRichText(text);
    if (auto* flow = dynamic_cast<TORXBaseFlow*>(item)) flow->SetText(text);
    if (auto* arrow = dynamic_cast<TORXBaseArrowLine*>(item)) arrow->SetText(text);
    if (auto* dim = dynamic_cast<TORXBaseDim*>(item)) dim->SetText(text);
    item->QVLab()->ChangeState(TOrvexState::lsCalc, item);
}

// Where each character of the plain text lies in the markup: one byte, or a whole line-break tag.
std::vector<std::pair<std::size_t, std::size_t>> MarkupSpans(const std::string& markup) {
    std::vector<std::pair<std::size_t, std::size_t>> spans;
    std::size_t pos = 0;
    while (pos < markup.size()) {
        if (markup[pos] == '<') {
            std::size_t end = markup.find('>', pos);
            end = end == std::string::npos ? markup.size() : end + 1;
            std::string name = markup.substr(pos + 1, end - pos - 1);
            if (!name.empty() && name.back() == '>') name.pop_back();
            if (ToLowerAscii(name) == "br") spans.emplace_back(pos, end);
            pos = end;
            continue;
        }
        if (markup[pos] != '\r' && markup[pos] != '\n') spans.emplace_back(pos, pos + 1);
        ++pos;
    }
    return spans;
}

// The markup with the plain characters [from, to) replaced by insert. Tags between removed characters
// stay, so formatting opened or closed there still pairs up; inserted text continues the formatting of
// the character before it.
std::string ReplaceInMarkup(std::string markup, std::size_t from, std::size_t to, const std::string& insert) {
    auto spans = MarkupSpans(markup);
    to = std::min(to, spans.size());
    for (std::size_t i = to; i > from; --i)
        markup.erase(spans[i - 1].first, spans[i - 1].second - spans[i - 1].first);
    spans = MarkupSpans(markup);
    std::size_t at = markup.size();
    if (from > 0 && from <= spans.size())
        at = spans[from - 1].second;
    else if (from == 0 && !spans.empty())
        at = spans.front().first;
    std::string text;
    for (const char c : insert) text += c == '\n' ? std::string("<BR>") : std::string(1, c);
    markup.insert(at, text);
    return markup;
}

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::size_t PrevChar(const std::string& s, std::size_t at) {
    if (at == 0) return 0;
    --at;
    while (at > 0 && IsContinuation(s[at])) --at;
    return at;
}

std::size_t NextChar(const std::string& s, std::size_t at) {
    if (at >= s.size()) return s.size();
    ++at;
    while (at < s.size() && IsContinuation(s[at])) ++at;
    return at;
}

// [SECTION] Caret movement

std::size_t LineStart(const std::string& s, std::size_t at) {
    const std::size_t nl = at == 0 ? std::string::npos : s.rfind('\n', at - 1);
    return nl == std::string::npos ? 0 : nl + 1;
}

std::size_t LineEnd(const std::string& s, std::size_t at) {
    const std::size_t nl = s.find('\n', at);
    return nl == std::string::npos ? s.size() : nl;
}

// The caret on the line above (up) or below, at the same character column or the line's end.
std::size_t VerticalMove(const std::string& s, std::size_t at, bool up) {
    const std::size_t start = LineStart(s, at);
    std::size_t column = 0;
    for (std::size_t i = start; i < at; i = NextChar(s, i)) ++column;
    std::size_t target = 0;
    if (up) {
        if (start == 0) return at;
        target = LineStart(s, start - 1);
    } else {
        const std::size_t end = LineEnd(s, at);
        if (end >= s.size()) return at;
        target = end + 1;
    }
    const std::size_t targetEnd = LineEnd(s, target);
    while (column > 0 && target < targetEnd) target = NextChar(s, target), --column;
    return target;
}

// The caret nearest to x in a single text laid out straight: the character boundary whose distance from
// the line's left end best matches. npos when the text is turned or of another kind.
std::size_t CaretAtX(const TORXBaseItem* item, std::int64_t x) {
    const auto* text = dynamic_cast<const TORXBaseText*>(item);
    if (text == nullptr || text->Angle() != TQVLAngle::ag0) return std::string::npos;
    const std::vector<TTextLinePos> lines = text->TextLines();
    if (lines.empty()) return std::string::npos;
    const ITextMetrics& metrics = QVLTextMetrics(item->QVLab());
    const double scale = text->ScaleX() > 0.0f ? text->ScaleX() : 1.0;
    const std::string& s = text->Text();
    std::size_t best = 0;
    double bestGap = -1;
    for (std::size_t at = 0;; at = NextChar(s, at)) {
        const double w =
            static_cast<double>(metrics.TextWidth(std::string_view(s).substr(0, at), text->Font()));
        const double gap =
            std::fabs(static_cast<double>(lines.front().X) + w * scale - static_cast<double>(x));
        if (bestGap < 0 || gap < bestGap) bestGap = gap, best = at;
        if (at >= s.size()) break;
    }
    return best;
}
}  // namespace

// [SECTION] Editing

bool TORXBaseLabel::KeyPressEditor(const std::string& chars) {
    return fEditor->Chars(chars);
}

bool TORXEditor::BeginTextEdit(TORXBaseItem* item) {
    std::string text;
    bool multiLine = false;
    if (item == nullptr || !ReadText(item, text, multiLine)) return false;
    fText = TQVLTextEdit{item, text, 0, multiLine};
    fTextBefore = text;
    if (const auto* rich = dynamic_cast<const TORXBaseRichText*>(item)) {
        fText.Text = rich->GetPlainText();
    }
    fText.Caret = fText.Text.size();  // typing goes on at the end, as after a click on a text
    fDoc.ClearSelection(false);
    fDoc.SelectItem(item, true);
    SetState(TQVLEdState::edEditing);
    return true;
}

bool TORXEditor::TextPick(const TQVLPto64& p) {
    TORXBaseItem* item = ItemAt(p);
    bool changed = false;
    if (fText.Item != nullptr && item != fText.Item) {
        EndTextEdit(true);  // a click elsewhere finishes the edit
        changed = true;
    }
    if (fText.Item == nullptr) {
        if (!BeginTextEdit(item)) return changed;
        changed = true;
    }
    // The caret goes where the text was clicked, where the layout tells; else it stays (at the end).
    const std::size_t at = CaretAtX(item, p.X);
    if (at != std::string::npos && at != fText.Caret) {
        fText.Caret = at;
        Info();
        changed = true;
    }
    return changed;
}

void TORXEditor::EditText(std::size_t from, std::size_t to, const std::string& insert) {
    fText.Text.replace(from, to - from, insert);
    fText.Caret = from + insert.size();
    TORXBaseItem* item = fText.Item;
    const TNoRecord off(fDoc);
    fDoc.BeginUpdate(true);
    if (const auto* rich = dynamic_cast<const TORXBaseRichText*>(item)) {
        // Plain positions count bytes, a line break one: the same span is replaced in the markup.
        WriteText(item, ReplaceInMarkup(rich->GetRichText(), from, to, insert));
    } else {
        WriteText(item, fText.Text);
    }
    fDoc.EndUpdate();
    Info();
}

void TORXEditor::EndTextEdit(bool keep) {
    TORXBaseItem* item = fText.Item;
    if (item == nullptr) return;
    const bool alive = fDoc.ItemIndex(item) >= 0;
    std::string now;
    bool multiLine = false;
    if (alive) ReadText(item, now, multiLine);
    fText = TQVLTextEdit{};
    if (alive) {
        {
            const TNoRecord off(fDoc);
            fDoc.BeginUpdate(true);
            WriteText(item, fTextBefore);
            fDoc.EndUpdate();
        }
        if (keep && now != fTextBefore) {
            fDoc.BeginUpdate(true);
            // A single text left empty would be an invisible item nobody can pick: it goes, in the same step.
            if (now.empty() && dynamic_cast<TORXBaseText*>(item) != nullptr) {
                std::erase(fDoc.fSelection, item);
                fDoc.DeleteItem(item, true);
            } else {
                WriteText(item, now);
            }
            fDoc.EndUpdate();
            fDoc.ChangeValue(TQVChange::chChText);
        }
    }
    fTextBefore.clear();
    SetState(FirstState());
}

bool TORXEditor::Chars(const std::string& utf8) {
    if (fText.Item == nullptr || !fDoc.GetEditable() || !IsValidUtf8(utf8)) return false;
    std::string typed;
    // Control characters come as keys (Enter, Backspace, ...), so a host that sends both adds nothing twice.
    for (const char c : utf8)
        if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) typed += c;
    if (typed.empty()) return false;
    EditText(fText.Caret, fText.Caret, typed);
    return true;
}

bool TORXEditor::TextKey(TQVLEdKey key, TQVLShiftState shift) {
    std::string& s = fText.Text;
    std::size_t& caret = fText.Caret;
    const std::size_t was = caret;
    switch (key) {
        case TQVLEdKey::ekEscape:
            EndTextEdit(false);
            return true;
        case TQVLEdKey::ekEnter:
            // Ctrl+Enter finishes a text that takes line breaks.
            if (!fText.MultiLine || shift.Contains(TQVLShift::ssCtrl)) {
                EndTextEdit(true);
                return true;
            }
            EditText(caret, caret, "\n");
            return true;
        case TQVLEdKey::ekBackspace:
            if (caret == 0) return false;
            EditText(PrevChar(s, caret), caret, "");
            return true;
        case TQVLEdKey::ekDelete:
            if (caret >= s.size()) return false;
            EditText(caret, NextChar(s, caret), "");
            return true;
        case TQVLEdKey::ekLeft:
            caret = PrevChar(s, caret);
            break;
        case TQVLEdKey::ekRight:
            caret = NextChar(s, caret);
            break;
        case TQVLEdKey::ekHome:
            caret = shift.Contains(TQVLShift::ssCtrl) ? 0 : LineStart(s, caret);
            break;
        case TQVLEdKey::ekEnd:
            caret = shift.Contains(TQVLShift::ssCtrl) ? s.size() : LineEnd(s, caret);
            break;
        case TQVLEdKey::ekUp:
        case TQVLEdKey::ekDown:
            caret = VerticalMove(s, caret, key == TQVLEdKey::ekUp);
            break;
    }
    if (caret == was) return false;
    Info();
    return true;
}

// [SECTION] Moving texts

bool TORXEditor::MoveTextPick(const TQVLPto64& p) {
    TORXBaseItem* item = ItemAt(p);
    const auto* dim = dynamic_cast<const TORXBaseDim*>(item);
    const bool linearDim =
        dim != nullptr && (dim->DimType() == TQVDimType::dmtHorz || dim->DimType() == TQVDimType::dmtVert ||
                           dim->DimType() == TQVDimType::dmtAligned);
    if (item == nullptr || (dynamic_cast<const TORXTextItem*>(item) == nullptr &&
                            dynamic_cast<const TORXBaseRichText*>(item) == nullptr && !linearDim))
        return false;
    fDoc.ClearSelection(false);
    fDoc.SelectItem(item, true);
    fDown = fLast = fGrab = p;
    fDrag = TDrag::kPending;
    return true;
}

namespace {
bool IsTextMoveOfDim(TQVLEdAction action, const TORXBaseItem* item, const TQVLPtoA& points) {
    return action == A::eaMoveText && dynamic_cast<const TORXBaseDim*>(item) != nullptr && points.size() >= 4;
}
}  // namespace

bool TORXEditor::PointLimitsDrag(const TORXBaseItem* item, std::size_t index) const {
    if (IsTextMoveOfDim(fDoc.fAction, item, item->Points())) return index < 2;
    // Only the angle kind uses points 7 and 8 of a dimension; the others leave them at the origin, where
    // they would keep the dimension from being dragged up or left at all.
    if (const auto* dim = dynamic_cast<const TORXBaseDim*>(item);
        dim != nullptr && (index == 6 || index == 7))
        return dim->DimType() == TQVDimType::dmtAngle;
    return true;
}

TQVLPtoA TORXEditor::MovedPoints(const TORXBaseItem* item, const TQVLPtoA& points, std::int64_t dx,
                                 std::int64_t dy) const {
    TQVLPtoA out = points;
    if (IsTextMoveOfDim(fDoc.fAction, item, points)) {
        // A dimension's text sits on its dimension line: the line moves across itself, the measured
        // points stay.
        const double ux = static_cast<double>(points[1].X - points[0].X);
        const double uy = static_cast<double>(points[1].Y - points[0].Y);
        const double len = std::hypot(ux, uy);
        if (len <= 0) return out;
        const double nx = -uy / len;
        const double ny = ux / len;
        const double across = static_cast<double>(dx) * nx + static_cast<double>(dy) * ny;
        for (std::size_t i = 0; i < 2; ++i) out[i].BaseMove(MathRound(across * nx), MathRound(across * ny));
        return out;
    }
    for (auto& q : out) q.BaseMove(dx, dy);
    return out;
}

}  // namespace Orvex
