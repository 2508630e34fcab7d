// Venn data: areas in source order, each one set (`set`) or the overlap of several (`union`), with its
// size (the overlap's share when the text gives none), label, the texts written inside it, and its style.
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

struct TQVLVennChart final : TQVLChart {
    struct TText {
        std::string ID;
        std::string Label;
    };
    struct TArea {
        std::vector<std::string> Sets;  // sorted; one name for a set
        double Size = 0;
        std::string Label;  // the set's name when it has none
        std::vector<TText> Texts;
        TQVLDiagStyle Style;
    };
    std::vector<TArea> Areas;

    // The area of exactly these sets (sorted), or null.
    const TArea* Find(const std::vector<std::string>& aSets) const;

    std::string_view Type() const override { return "venn"; }
    // "areas": [{"sets", "size", "label", "texts": [{"id", "label"}]}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
