// Private to the parsers: small pieces that the per-kind routines of both share, usable lines with their
// indentation, generated identifiers, and the parent stack of indentation-based trees.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_model.h"
#include "orvex/diagrams/diagram_text.h"

namespace Orvex {

struct TKindLine {
    std::string_view Text;  // trimmed
    int Indent = 0;
};

// The lines a routine reads: not empty, not a "%%" comment, and not the routine's own header.
template <typename THeaderTest>
std::vector<TKindLine> UsableLines(const std::vector<std::string_view>& lines, THeaderTest isHeader) {
    std::vector<TKindLine> out;
    for (const std::string_view raw : lines) {
        const std::string_view text = Qvl::Utils::Trim(raw);
        if (text.empty() || text.starts_with("%%") || isHeader(text)) continue;
        out.push_back({text, QVLIndentOf(raw)});
    }
    return out;
}

// "prefix1", "prefix2", ...: the running number starts at 1 for the first item of its kind.
class TIdCounter {
  public:
    explicit TIdCounter(std::string prefix) : fPrefix(std::move(prefix)) {}
    std::string Next() { return fPrefix + std::to_string(++fCount); }
    int Count() const { return fCount; }

  private:
    std::string fPrefix;
    int fCount = 0;
};

// Parents by indentation: a line deeper than the one before is its child; a line at the same or a shallower
// depth closes the deeper levels.
class TIndentTree {
  public:
    // The parent of a node at this depth ("" for a root), forgetting the levels it closes.
    std::string ParentFor(int indent) {
        while (!fStack.empty() && fStack.back().first >= indent) fStack.pop_back();
        return fStack.empty() ? std::string() : fStack.back().second;
    }
    void Push(int indent, std::string id) { fStack.emplace_back(indent, std::move(id)); }
    std::size_t Depth() const { return fStack.size(); }

  private:
    std::vector<std::pair<int, std::string>> fStack;
};

inline std::string JoinLines(const std::vector<std::string>& parts) {
    std::string out;
    for (const auto& part : parts) {
        if (part.empty()) continue;
        if (!out.empty()) out += "\r\n";
        out += part;
    }
    return out;
}

// A state-diagram transition. "[*]" is the start pseudo-state as a source and the end pseudo-state as a
// target, so one diagram's start and end each become a single node.
inline void AddStateTransition(TORXDiagramModel& aModel, std::string from, std::string to,
                               const std::string& caption) {
    if (from == "[*]") {
        from = "__start__";
        aModel.AddNode(from, "", TQVLFlowType::ftStart, true);
    } else {
        aModel.AddNode(from, "", TQVLFlowType::ftProcess, false);
    }
    if (to == "[*]") {
        to = "__end__";
        aModel.AddNode(to, "", TQVLFlowType::ftEnd, true);
    } else {
        aModel.AddNode(to, "", TQVLFlowType::ftProcess, false);
    }
    aModel.AddEdge(from, to, caption, false, TQVLDiagEdgeArrow::eaArrow);
}

}  // namespace Orvex
