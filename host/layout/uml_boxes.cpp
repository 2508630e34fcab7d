#include "host/layout/uml_boxes.h"

#include <algorithm>
#include <cmath>

#include "host/layout/diagram_loader.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {
namespace {

constexpr double kRowGap = 0.6;          // mm between two rows of a compartment
constexpr double kCompartmentPad = 1.5;  // mm above and below a compartment's rows
constexpr double kEmptyCompartment = 3.0;

bool DrawsEmptyCompartments(const TQVLDiagNode& node) {
    // A class shows its two compartments even when empty, as UML draws them; the others only their rows.
    return node.Role == "class" || node.Role == "abstract" || node.Role == "interface";
}

double CompartmentHeight(const std::vector<std::string>& rows, const TTextMeasure& measure) {
    if (rows.empty()) return kEmptyCompartment;
    double h = 2 * kCompartmentPad;
    for (const std::string& row : rows) h += measure(ReadMemberRow(row).Text).Height + kRowGap;
    return h - kRowGap;
}

bool Shown(const TQVLDiagNode& node, const std::vector<std::string>& rows) {
    return !rows.empty() || DrawsEmptyCompartments(node);
}

}  // namespace

bool HasCompartmentBox(const TQVLDiagNode& aNode) {
    if (aNode.Role == "class" || aNode.Role == "abstract" || aNode.Role == "interface" ||
        aNode.Role == "enum" || aNode.Role == "object" || aNode.Role == "entity" ||
        aNode.Role == "requirement" || aNode.Role == "element")
        return true;
    return aNode.Role == "state" && !aNode.Compartments.empty();
}

TMemberRow ReadMemberRow(std::string_view aRow) {
    TMemberRow row;
    std::string_view text = Qvl::Utils::Trim(aRow);
    for (bool again = true; again;) {
        again = false;
        for (const std::string_view mark : {"{static}", "{classifier}", "{abstract}"}) {
            if (text.starts_with(mark)) {
                (mark == "{abstract}" ? row.Abstract : row.Static) = true;
                text = Qvl::Utils::Trim(text.substr(mark.size()));
                again = true;
            }
        }
    }
    // Mermaid writes the marks after the member: "count$", "area()*", "area() int*"... and "$" or "*"
    // right after the parameter list when a return type follows.
    if (text.ends_with("$")) {
        row.Static = true;
        text.remove_suffix(1);
    } else if (text.ends_with("*") && text.size() > 1) {
        row.Abstract = true;
        text.remove_suffix(1);
    }
    std::string out(text);
    if (const std::size_t close = out.find(')'); close != std::string::npos && close + 1 < out.size()) {
        if (out[close + 1] == '$')
            row.Static = true, out.erase(close + 1, 1);
        else if (out[close + 1] == '*')
            row.Abstract = true, out.erase(close + 1, 1);
    }
    row.Text = Qvl::Utils::Trim(out);
    return row;
}

TLayoutSize CompartmentBoxSize(const TQVLDiagNode& aNode, const TTextMeasure& aMeasure) {
    TQVLFont bold;  // the name is drawn bold
    bold.Bold = true;
    const TLayoutSize caption = FontMeasure(bold)(aNode.Text);
    double width = caption.Width;
    double height = caption.Height + 2 * kTextPaddingY;
    for (const auto& rows : aNode.Compartments) {
        if (!Shown(aNode, rows)) continue;
        for (const std::string& row : rows) width = std::max(width, aMeasure(ReadMemberRow(row).Text).Width);
        height += CompartmentHeight(rows, aMeasure);
    }
    return {width + 2 * kTextPaddingX, height};
}

void AddCompartments(TORXBaseLabel& aDoc, TORXBaseFlow& aFlow, const TQVLDiagNode& aNode,
                     const TLayoutBox& aBox, const TTextMeasure& aMeasure) {
    aFlow.SetVertAlign(TQVLVertAlign::vaTop);
    aFlow.SetBold(true);
    double y = aBox.Y + aMeasure(aNode.Text).Height + 2 * kTextPaddingY;
    const bool italicName = aNode.Role == "abstract";
    if (italicName) aFlow.SetItalic(true);
    for (const auto& rows : aNode.Compartments) {
        if (!Shown(aNode, rows)) continue;
        auto* rule = dynamic_cast<TORXBaseLine*>(aDoc.CreateItem(TQVLItemType::itLine));
        if (rule != nullptr) {
            rule->SetBase(1, BaseFromMM(aBox.X), BaseFromMM(y));
            rule->SetBase(2, BaseFromMM(aBox.Right()), BaseFromMM(y));
            rule->SetColor(aFlow.Color());
        }
        double rowY = y + kCompartmentPad;
        for (const std::string& written : rows) {
            const TMemberRow row = ReadMemberRow(written);
            auto* text = dynamic_cast<TORXBaseText*>(aDoc.CreateItem(TQVLItemType::itText));
            if (text == nullptr) continue;
            text->SetText(row.Text);
            text->SetBase(1, BaseFromMM(aBox.X + kTextPaddingX), BaseFromMM(rowY));
            if (row.Static) text->SetUnderline(true);
            if (row.Abstract) text->SetItalic(true);
            if (aNode.Style.TextColor) text->SetFontColor(*aNode.Style.TextColor);
            rowY += aMeasure(row.Text).Height + kRowGap;
        }
        y += CompartmentHeight(rows, aMeasure);
    }
}

}  // namespace Orvex
