// Packet data: the fields of a bit layout in order, each spanning bits Start..End (inclusive), drawn in
// rows of BitsPerRow bits.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLPacketChart final : TQVLChart {
    struct TField {
        std::int64_t Start = 0;
        std::int64_t End = 0;
        std::string Text;
    };
    std::int64_t BitsPerRow = 32;
    std::vector<TField> Fields;

    std::string_view Type() const override { return "packet"; }
    // "bitsPerRow", "fields": [{"start", "end", "text"}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
