// Mermaid kanban boards: `kanban`, then the columns at the outermost indentation and their cards indented
// beneath, each written `id[Text]` (or `id`, `[Text]`, another bracket pair) with optional metadata
// `@{ ticket: X, assigned: 'name', priority: 'High' }`, which may run over several lines.
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_kanban.h"
#include "orvex/diagrams/chart_reading.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TSeverity = TQVLDiagramDiagnosticSeverity;

struct TNode {
    std::string Id;
    std::string Text;
    std::string Metadata;  // between "@{" and "}"
};

// Without one pair of enclosing quotes and, inside them, the backticks of a markdown string.
std::string Unquoted(std::string_view text) {
    text = Trim(text);
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front()) {
        text = text.substr(1, text.size() - 2);
        if (text.size() >= 2 && text.front() == '`' && text.back() == '`')
            text = text.substr(1, text.size() - 2);
    }
    return std::string(text);
}

// `id`, `id[Text]`, `id(Text)`, `id((Text))`, `id{{Text}}`, `id))Text((`, `id)Text(`, `id>Text]` or the
// bracketed text alone (which then is the id as well). False when brackets do not close.
bool ReadNode(std::string_view text, TNode& node) {
    static const TRegex kNode(
        R"re(^([^\[\(\{\)>]*?)\s*(?:(\[|\(\(|\(|\{\{|\)\)|\)|>)(.*?)(\]|\)\)|\)|\}\}|\(\(|\())?$)re");
    TRegexMatch m;
    if (!kNode.MatchAt(text, 0, m)) return false;
    node.Id = std::string(Trim(m.Group(1)));
    node.Text = m.Matched(3) ? Unquoted(m.Group(3)) : node.Id;
    if (node.Id.empty()) node.Id = node.Text;
    return !node.Text.empty() || !node.Id.empty();
}

// "key: value" pairs separated by commas or line breaks; quoted values may hold commas.
std::vector<std::pair<std::string, std::string>> MetadataPairs(std::string_view text) {
    static const TRegex kPair(R"re(\s*(\w+)\s*:\s*("[^"]*"|'[^']*'|[^,\n]*)\s*[,\n]?)re");
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const TRegexMatch& m : kPair.MatchAll(text))
        pairs.emplace_back(std::string(m.Group(1)), Unquoted(m.Group(2)));
    return pairs;
}

class TKanbanReader {
  public:
    TKanbanReader(TORXDiagramModel& model, TQVLKanban& board) : fModel(model), fBoard(board) {}

    void Node(std::size_t indent, std::int32_t lineNo, const std::string& source, std::string_view node,
              std::string_view metadata) {
        TNode n;
        if (!ReadNode(Trim(node), n)) {
            fModel.AddDiagnostic(TSeverity::dsWarning, lineNo, "KANBAN_UNRECOGNIZED_LINE",
                                 "A kanban line is a column or a card: `id[Text]`, optionally followed by "
                                 "`@{ ticket: , assigned: , priority: }`.",
                                 source);
            return;
        }
        if (fColumnIndent == kNoColumn) fColumnIndent = indent;
        if (indent < fColumnIndent)
            fModel.AddDiagnostic(TSeverity::dsError, lineNo, "KANBAN_ITEM_OUTSIDE_COLUMN",
                                 "\"" + n.Text +
                                     "\" is indented less than the first column; it is taken as "
                                     "a column.",
                                 source);
        if (indent <= fColumnIndent) {
            if (!Trim(metadata).empty())
                fModel.AddDiagnostic(TSeverity::dsWarning, lineNo, "KANBAN_COLUMN_METADATA",
                                     "A column's metadata is not drawn; only cards carry it.", source);
            fBoard.Columns.push_back({n.Id, n.Text, {}});
            return;
        }
        TQVLKanban::TCard card{n.Id, n.Text, {}, {}, {}};
        for (const auto& [key, value] : MetadataPairs(metadata)) {
            if (key == "ticket")
                card.Ticket = value;
            else if (key == "assigned")
                card.Assigned = value;
            else if (key == "priority") {
                card.Priority = value;
                if (value != "Very High" && value != "High" && value != "Low" && value != "Very Low")
                    fModel.AddDiagnostic(TSeverity::dsWarning, lineNo, "KANBAN_PRIORITY",
                                         "A priority is 'Very High', 'High', 'Low' or 'Very Low'; \"" +
                                             value + "\" is kept but not coloured.",
                                         source);
            } else if (key == "label")
                card.Text = value;
            else
                fModel.AddDiagnostic(TSeverity::dsWarning, lineNo, "KANBAN_METADATA",
                                     "Card metadata \"" + key +
                                         "\" is not drawn (ticket, assigned, priority "
                                         "and label are).",
                                     source);
        }
        fBoard.Columns.back().Cards.push_back(std::move(card));
    }

  private:
    TORXDiagramModel& fModel;
    TQVLKanban& fBoard;
    static constexpr std::size_t kNoColumn = std::string_view::npos;
    std::size_t fColumnIndent = kNoColumn;  // the indentation of the first column
};

}  // namespace

void TQVLKanban::WriteJson(TJSON& aOut) const {
    TJSON columns = TJSON::array();
    for (const TColumn& c : Columns) {
        TJSON cards = TJSON::array();
        for (const TCard& k : c.Cards)
            cards.push_back(TJSON{{"id", k.Id},
                                  {"text", k.Text},
                                  {"ticket", k.Ticket},
                                  {"assigned", k.Assigned},
                                  {"priority", k.Priority}});
        columns.push_back(TJSON{{"id", c.Id}, {"text", c.Text}, {"cards", std::move(cards)}});
    }
    aOut["columns"] = std::move(columns);
}

bool QVLReadKanban(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    std::size_t headerLine = 0;
    if (QVLMermaidHeaderWord(aText, &headerLine) != "kanban") return false;

    auto board = std::make_shared<TQVLKanban>();
    aModel.fTitle = QVLFrontMatterValue(aText, "title");
    TKanbanReader reader(aModel, *board);
    const auto raw = QVLSplitDiagramLines(aText);

    const TQVLChartLines chartLines = QVLChartLines(aText, headerLine);
    if (Qvl::Utils::ToLowerAscii(chartLines.Header.Text) != "kanban")
        aModel.AddDiagnostic(TSeverity::dsWarning, chartLines.Header.No, "KANBAN_HEADER",
                             "Nothing may follow \"kanban\" on its line.",
                             std::string(chartLines.Header.Text));
    const auto& lines = chartLines.Body;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const TUmlLine& line = lines[i];
        std::string source(line.Text);
        const std::string_view rawLine = raw[static_cast<std::size_t>(line.No) - 1];
        const std::size_t indent = rawLine.find_first_not_of(" \t");
        std::string_view node = line.Text;
        std::string metadata;
        if (const std::size_t at = node.find("@{"); at != std::string_view::npos) {
            metadata = std::string(node.substr(at + 2));
            node = node.substr(0, at);
            // The block may go on over the following lines until its closing brace.
            while (metadata.find('}') == std::string::npos && i + 1 < lines.size()) {
                ++i;
                (metadata += '\n') += lines[i].Text;
                (source += '\n') += lines[i].Text;
            }
            const std::size_t close = metadata.rfind('}');
            if (close == std::string::npos) {
                aModel.AddDiagnostic(TSeverity::dsError, line.No, "KANBAN_METADATA",
                                     "The card's metadata \"@{\" is not closed with \"}\".", source);
            } else {
                if (!Trim(std::string_view(metadata).substr(close + 1)).empty())
                    aModel.AddDiagnostic(TSeverity::dsWarning, line.No, "KANBAN_UNRECOGNIZED_LINE",
                                         "Nothing may follow a card's metadata.", source);
                metadata.resize(close);
            }
        }
        reader.Node(indent, line.No, source, node, metadata);
    }
    aModel.SetChart(std::move(board));
    return true;
}

}  // namespace Orvex
