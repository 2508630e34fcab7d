// Timing diagram data: lanes (robust, concise, clock, binary, analog) with their state changes over time,
// messages between lanes, duration constraints and highlighted spans. Times are plain numbers in the
// text's own unit (clock times written h:mm:ss count seconds).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvex/core/color.h"
#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLTimingChart final : TQVLChart {
    struct TChange {
        double Time = 0;
        std::string State;  // as drawn; "{-}" hides the signal, "{A,B}" is one of several states
        std::optional<Qvl::Types::TAlphaColor> Color;
    };
    struct TLane {
        std::string Id;
        std::string Text;
        std::string Kind;  // "robust", "concise", "clock", "binary", "analog"
        // Levels top-down: as declared with "has"; else a robust lane's first state at the bottom and a
        // concise lane's in order of use.
        std::vector<std::string> States;
        std::vector<TChange> Changes;  // in time order
        double Period = 0;             // clocks only
        double Pulse = 0;
        double Offset = 0;
    };
    struct TMessage {
        std::string From;
        double FromTime = 0;
        std::string To;
        double ToTime = 0;
        std::string Text;
    };
    struct TConstraint {
        std::string Lane;
        double From = 0;
        double To = 0;
        std::string Text;
    };
    struct THighlight {
        double From = 0;
        double To = 0;
        std::string Text;
        std::optional<Qvl::Types::TAlphaColor> Color;
    };
    std::vector<TLane> Lanes;
    std::vector<TMessage> Messages;
    std::vector<TConstraint> Constraints;
    std::vector<THighlight> Highlights;
    double PixelsPerUnit = 0;  // from "scale N as P pixels"; 0 when the text does not say

    std::string_view Type() const override { return "timing"; }
    // "lanes": [{"id", "text", "kind", "states", "changes": [{"time", "state"}], and for clocks
    // "period", "pulse", "offset"}], "messages": [{"from", "fromTime", "to", "toTime", "text"}],
    // "constraints": [{"lane", "from", "to", "text"}], "highlights": [{"from", "to", "text"}], "scale".
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
