// The Mermaid chart kinds: pie, sankey, packet, quadrant, XY, radar and Venn. A chart becomes a small
// graph: a root for the chart (where it has one) and a node per slice, field, point or series.
#include <array>
#include <map>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/kind_helpers.h"
#include "orvex/diagrams/mermaid_parser.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::Trim;

constexpr auto kCaseless = TRegexFlag::rfCaseless;
constexpr auto kNone = TQVLDiagEdgeArrow::eaNone;
constexpr auto kArrow = TQVLDiagEdgeArrow::eaArrow;

void SetChartKind(TORXDiagramModel& model) {
    model.fKind = TQVLDiagramKind::dkFlowChart;
    model.fDirection = TQVLFlowDirection::fdLeftRight;
}

auto ExactHeader(std::string_view word) {
    return [word](std::string_view line) { return SameTextIgnoringCase(line, word); };
}

auto PatternHeader(const TRegex& pattern) {
    return [&pattern](std::string_view line) { return pattern.Match(line); };
}

std::string Str(std::string_view s) {
    return std::string(s);
}

// Comma-separated fields; a field in double quotes may hold commas, and "" inside it is one quote.
std::vector<std::string> CsvFields(std::string_view line) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quoted) {
            if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                fields.back() += '"';
                ++i;
            } else if (c == '"') {
                quoted = false;
            } else {
                fields.back() += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    for (auto& f : fields) f = std::string(Trim(f));
    return fields;
}

}  // namespace

void TORXMermaidParser::ParsePie(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^pie(?:\s+showData)?(?:\s+title\s+(.+))?$)", {kCaseless});
    static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
    static const TRegex kSlice(R"re(^"([^"]+)"\s*:\s*([0-9]+(?:[.,][0-9]+)?)$)re", {kCaseless});
    SetChartKind(aModel);
    std::string title;
    std::vector<std::pair<std::string, std::string>> slices;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, [](std::string_view) { return false; })) {
        if (kHeader.Match(line.Text, m)) {
            if (m.Matched(1)) title = QVLCleanCaption(m.Group(1));
        } else if (kTitle.Match(line.Text, m)) {
            title = QVLCleanCaption(m.Group(1));
        } else if (kSlice.Match(line.Text, m)) {
            slices.emplace_back(QVLCleanCaption(m.Group(1)), Str(m.Group(2)));
        }
    }
    if (title.empty()) title = "Pie chart";
    aModel.fTitle = title;
    aModel.AddNode("pie_root", title, TQVLFlowType::ftEllipse, true);
    TIdCounter ids("pie_slice_");
    for (const auto& [label, value] : slices) {
        const std::string id = ids.Next();
        aModel.AddNode(id, label + "\r\n" + value, TQVLFlowType::ftPreparation, true);
        aModel.AddEdge("pie_root", id, "", false, kNone);
    }
}

void TORXMermaidParser::ParseSankey(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^sankey(?:-beta)?$)", {kCaseless});
    SetChartKind(aModel);
    TIdCounter ids("sankey_");
    std::map<std::string, std::string> idOf;  // node name -> generated identifier
    auto node = [&](const std::string& name) {
        auto [it, added] = idOf.try_emplace(name);
        if (added) {
            it->second = ids.Next();
            aModel.AddNode(it->second, name, TQVLFlowType::ftProcess, true);
        }
        return it->second;
    };
    for (const auto& line : UsableLines(aLines, PatternHeader(kHeader))) {
        const auto fields = CsvFields(line.Text);
        if (fields.size() != 3 || fields[0].empty() || fields[1].empty()) continue;
        const std::string from = node(fields[0]);
        const std::string to = node(fields[1]);
        aModel.AddEdge(from, to, fields[2], false, kArrow);
    }
}

void TORXMermaidParser::ParsePacket(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^packet(?:-beta)?$)", {kCaseless});
    static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
    static const TRegex kField(R"re(^(\+\d+|\d+(?:\s*-\s*\d+)?)\s*:\s*"([^"]+)")re", {kCaseless});
    SetChartKind(aModel);
    TIdCounter ids("packet_field_");
    std::string previous;
    long long nextBit = 0;  // where a "+N" field starts
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, PatternHeader(kHeader))) {
        if (kTitle.Match(line.Text, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
            continue;
        }
        if (!kField.Match(line.Text, m)) continue;
        const std::string_view bits = m.Group(1);
        std::string range;
        // Bit numbers beyond 18 digits are not realistic; they are shown as written.
        if (bits.front() == '+' && bits.size() <= 19) {
            const long long count = std::stoll(Str(bits.substr(1)));
            range = count <= 1 ? std::to_string(nextBit)
                               : std::to_string(nextBit) + "-" + std::to_string(nextBit + count - 1);
            nextBit += count;
        } else {
            range.clear();
            for (const char c : bits)
                if (c != ' ' && c != '\t') range += c;
            const std::size_t dash = range.find('-');
            const std::string last = dash == std::string::npos ? range : range.substr(dash + 1);
            if (!last.empty() && last.size() <= 18 && last.front() != '+') nextBit = std::stoll(last) + 1;
        }
        const std::string id = ids.Next();
        aModel.AddNode(id, range + "\r\n" + QVLCleanCaption(m.Group(2)), TQVLFlowType::ftData, true);
        aModel.AddEdge(previous, id, "", false, kNone);
        previous = id;
    }
}

void TORXMermaidParser::ParseQuadrant(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
    static const TRegex kQuadrant(R"(^quadrant-([1-4])\s+(.+)$)", {kCaseless});
    static const TRegex kAxis(R"(^(x-axis|y-axis)\s+(.+)$)", {kCaseless});
    static const TRegex kPoint(R"(^(.+?):\s*\[\s*([0-9]+(?:\.[0-9]+)?)\s*,\s*([0-9]+(?:\.[0-9]+)?)\s*\]$)",
                               {kCaseless});
    SetChartKind(aModel);
    std::array<std::string, 4> captions{"Quadrant 1", "Quadrant 2", "Quadrant 3", "Quadrant 4"};
    struct TPoint {
        std::string Name, X, Y;
    };
    std::vector<TPoint> points;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("quadrantChart"))) {
        if (kTitle.Match(line.Text, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
        } else if (kQuadrant.Match(line.Text, m)) {
            captions[static_cast<std::size_t>(m.Group(1)[0] - '1')] = QVLCleanCaption(m.Group(2));
        } else if (kAxis.Match(line.Text)) {
            continue;
        } else if (kPoint.Match(line.Text, m)) {
            points.push_back({QVLCleanCaption(m.Group(1)), Str(m.Group(2)), Str(m.Group(3))});
        }
    }
    for (std::size_t q = 0; q < 4; ++q)
        aModel.AddNode("quadrant_" + std::to_string(q + 1), captions[q], TQVLFlowType::ftPredefined, true);
    TIdCounter ids("quadrant_point_");
    for (const auto& p : points) {
        const std::string id = ids.Next();
        aModel.AddNode(id, p.Name + " [" + p.X + ", " + p.Y + "]", TQVLFlowType::ftEllipse, true);
        // Quadrant 1 is top right, 2 top left, 3 bottom left, 4 bottom right.
        const bool right = std::stod(p.X) >= 0.5;
        const bool top = std::stod(p.Y) >= 0.5;
        const int quadrant = top ? (right ? 1 : 2) : (right ? 4 : 3);
        aModel.AddEdge("quadrant_" + std::to_string(quadrant), id, "", false, kNone);
    }
}

void TORXMermaidParser::ParseXYChart(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^xychart(?:-beta)?(?:\s+horizontal)?$)", {kCaseless});
    static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
    static const TRegex kAxis(R"(^(x-axis|y-axis)\s+(.+)$)", {kCaseless});
    static const TRegex kSeries(R"re(^(bar|line)\s*(?:"([^"]+)"\s*)?\[([^\]]+)\]$)re", {kCaseless});
    SetChartKind(aModel);
    std::string title;
    std::vector<std::pair<std::string, std::string>> axes;  // id, caption
    std::vector<std::string> series;                        // captions
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, PatternHeader(kHeader))) {
        if (kTitle.Match(line.Text, m)) {
            title = QVLCleanCaption(m.Group(1));
        } else if (kAxis.Match(line.Text, m)) {
            const std::string axis = Qvl::Utils::ToLowerAscii(m.Group(1));
            axes.emplace_back("xy_" + axis, axis + "\r\n" + QVLCleanCaption(m.Group(2)));
        } else if (kSeries.Match(line.Text, m)) {
            const std::string kind = Qvl::Utils::ToLowerAscii(m.Group(1));
            series.push_back(JoinLines(
                {m.Matched(2) ? kind + " " + QVLCleanCaption(m.Group(2)) : kind, Str(Trim(m.Group(3)))}));
        }
    }
    if (title.empty()) title = "XY chart";
    aModel.fTitle = title;
    aModel.AddNode("xy_root", title, TQVLFlowType::ftEllipse, true);
    for (const auto& [id, caption] : axes) {
        aModel.AddNode(id, caption, TQVLFlowType::ftData, true);
        aModel.AddEdge("xy_root", id, "", false, kNone);
    }
    TIdCounter ids("xy_series_");
    for (const auto& caption : series) {
        const std::string id = ids.Next();
        aModel.AddNode(id, caption, TQVLFlowType::ftProcess, true);
        aModel.AddEdge("xy_root", id, "", false, kArrow);
    }
}

void TORXMermaidParser::ParseRadar(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
    static const TRegex kAxis(R"(^axis\s+(.+)$)", {kCaseless});
    static const TRegex kAxisItem(R"re(^([\w.-]+)(?:\["([^"]+)"\])?$)re", {kCaseless});
    static const TRegex kCurve(R"re(^curve\s+([\w.-]+)(?:\["([^"]+)"\])?\s*\{([^}]+)\}$)re", {kCaseless});
    static const TRegex kLimit(R"(^(min|max)\s+(.+)$)", {kCaseless});
    SetChartKind(aModel);
    std::string title;
    std::vector<std::string> axes;
    std::vector<std::string> curves;
    std::vector<std::string> limits;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("radar-beta"))) {
        if (kTitle.Match(line.Text, m)) {
            title = QVLCleanCaption(m.Group(1));
        } else if (kAxis.Match(line.Text, m)) {
            const std::string_view items = m.Group(1);
            for (std::size_t start = 0; start < items.size();) {
                const std::size_t end = std::min(items.find(',', start), items.size());
                TRegexMatch item;
                if (kAxisItem.Match(Trim(items.substr(start, end - start)), item))
                    axes.push_back(QVLCleanCaption(item.Matched(2) ? item.Group(2) : item.Group(1)));
                start = end + 1;
            }
        } else if (kCurve.Match(line.Text, m)) {
            curves.push_back(QVLCleanCaption(m.Matched(2) ? m.Group(2) : m.Group(1)) + "\r\n" +
                             Str(Trim(m.Group(3))));
        } else if (kLimit.Match(line.Text, m)) {
            limits.push_back(Qvl::Utils::ToLowerAscii(m.Group(1)) + " " + QVLCleanCaption(m.Group(2)));
        }
    }
    if (title.empty()) title = "Radar chart";
    aModel.fTitle = title;
    aModel.AddNode("radar_root", title, TQVLFlowType::ftEllipse, true);
    auto addAll = [&](const std::vector<std::string>& captions, const char* prefix, TQVLFlowType type,
                      bool dotted, TQVLDiagEdgeArrow arrow) {
        TIdCounter ids(prefix);
        for (const auto& caption : captions) {
            const std::string id = ids.Next();
            aModel.AddNode(id, caption, type, true);
            aModel.AddEdge("radar_root", id, "", dotted, arrow);
        }
    };
    addAll(axes, "radar_axis_", TQVLFlowType::ftData, false, kNone);
    addAll(curves, "radar_curve_", TQVLFlowType::ftProcess, false, kArrow);
    addAll(limits, "radar_limit_", TQVLFlowType::ftPredefined, true, kNone);
}

void TORXMermaidParser::ParseVenn(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
    static const TRegex kSet(R"re(^set\s+([\w.-]+)(?:\["([^"]+)"\])?$)re", {kCaseless});
    static const TRegex kUnion(R"re(^union\s+([\w.-]+(?:\s*,\s*[\w.-]+)+)(?:\["([^"]+)"\])?$)re",
                               {kCaseless});
    SetChartKind(aModel);
    TIdCounter sets("venn_set_");
    TIdCounter unions("venn_union_");
    std::map<std::string, std::string> idOf;  // set name -> generated identifier
    auto setNode = [&](const std::string& name, const std::string& caption) {
        auto [it, added] = idOf.try_emplace(name);
        if (added) it->second = sets.Next();
        aModel.AddNode(it->second, caption.empty() ? name : caption, TQVLFlowType::ftEllipse, true);
        return it->second;
    };
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("venn-beta"))) {
        if (kTitle.Match(line.Text, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
        } else if (kSet.Match(line.Text, m)) {
            setNode(Str(m.Group(1)), QVLCleanCaption(m.Group(2)));
        } else if (kUnion.Match(line.Text, m)) {
            std::vector<std::string> members;
            const std::string_view list = m.Group(1);
            for (std::size_t start = 0; start < list.size();) {
                const std::size_t end = std::min(list.find(',', start), list.size());
                members.emplace_back(Trim(list.substr(start, end - start)));
                start = end + 1;
            }
            std::string joined;
            for (const auto& name : members) joined += (joined.empty() ? "" : ", ") + name;
            const std::string id = unions.Next();
            aModel.AddNode(id, m.Matched(2) ? QVLCleanCaption(m.Group(2)) : "Union " + joined,
                           TQVLFlowType::ftPreparation, true);
            for (const auto& name : members) aModel.AddEdge(setNode(name, ""), id, "", false, kNone);
        }
    }
}

}  // namespace Orvex
