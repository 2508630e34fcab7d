// PlantUML salt wireframes (@startsalt, or "salt" opening @startuml): "{" grids with "|" cells and their
// border marks ({+ {# {! {-), group boxes {^"Title"}, trees {T, tabs {/, menus {*, scroll areas {S, and the
// widgets: [Button], "field", ()/(X) radios, []/[X] checkboxes, ^droplist^, separators and plain texts.
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_salt.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/uml_import_lines.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TWidget = TQVLSaltChart::TWidget;

constexpr auto kCaseless = TRegexFlag::rfCaseless;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;
constexpr std::size_t kMaxNesting = 64;

bool IsSaltText(std::string_view text) {
    static const TRegex kStart(R"(^\s*@start(\w+))", {kCaseless, TRegexFlag::rfMultiline});
    static const TRegex kSalt(R"(^\s*salt\s*$)", {kCaseless, TRegexFlag::rfMultiline});
    TRegexMatch m;
    if (!kStart.Match(text, m)) return false;
    const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
    return word == "salt" || (word == "uml" && kSalt.Match(text));
}

std::string Plain(std::string_view text) {
    static const TRegex kIcon(R"(<&[^>]+>\s*)");
    std::string out(text);
    TRegexMatch m;
    while (kIcon.Match(out, m)) out.erase(m.Start(0), m.End(0) - m.Start(0));
    return QVLPlainCaption(out, true);
}

// Splits a row at "|" outside quotes, brackets and nested braces.
std::vector<std::string> SplitCells(std::string_view row) {
    std::vector<std::string> cells;
    int depth = 0;
    bool quoted = false;
    std::size_t start = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const char c = row[i];
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (c == '{' || c == '[') ++depth;
        if ((c == '}' || c == ']') && depth > 0) --depth;
        if (c == '|' && depth == 0) {
            cells.emplace_back(Trim(row.substr(start, i - start)));
            start = i + 1;
        }
    }
    cells.emplace_back(Trim(row.substr(start)));
    return cells;
}

// One cell's widget: whatever is no widget mark is plain text.
TWidget ReadWidget(std::string_view cell) {
    static const TRegex kCheck(R"(^\[([Xx ]?)\]\s*(.*)$)");
    static const TRegex kRadio(R"(^\(([Xx ]?)\)\s*(.*)$)");
    static const TRegex kButton(R"(^\[(.+)\]$)");
    static const TRegex kField(R"re(^"(.*)"$)re");
    static const TRegex kDroplist(R"(^\^(.*)\^$)");
    TRegexMatch m;
    TWidget w;
    if (cell.empty() || cell == ".") {
        w.Kind = "empty";
    } else if (cell == "==" || cell == ".." || cell == "--" || cell == "~~") {
        w.Kind = "separator";
        w.Border = std::string(cell);
    } else if (kCheck.Match(cell, m)) {
        w.Kind = "checkbox";
        w.Checked = !Trim(m.Group(1)).empty();
        w.Text = Plain(m.Group(2));
    } else if (kRadio.Match(cell, m)) {
        w.Kind = "radio";
        w.Checked = !Trim(m.Group(1)).empty();
        w.Text = Plain(m.Group(2));
    } else if (kButton.Match(cell, m)) {
        w.Kind = "button";
        w.Text = Plain(m.Group(1));
    } else if (kField.Match(cell, m)) {
        w.Kind = "field";
        w.Text = std::string(Trim(m.Group(1)));
        // People pad a field with blanks to give it its width; count characters, not UTF-8 bytes.
        for (const char c : m.Group(1)) w.Width += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    } else if (kDroplist.Match(cell, m)) {
        w.Kind = "droplist";
        std::string_view rest = m.Group(1);
        std::size_t start = 0;
        while (start <= rest.size()) {
            std::size_t end = rest.find('^', start);
            if (end == std::string_view::npos) end = rest.size();
            if (const std::string item = Plain(rest.substr(start, end - start)); !item.empty())
                w.Items.push_back(item);
            start = end + 1;
        }
        w.Text = w.Items.empty() ? "" : w.Items.front();
    } else {
        w.Kind = "text";
        w.Text = Plain(cell);
    }
    return w;
}

class TSaltReader {
  public:
    TSaltReader(std::vector<TUmlLine> lines, TORXDiagramModel& model)
        : fLines(std::move(lines)), fModel(model) {}

    TWidget Read() {
        // Everything up to the first "{" is the text's preamble: only "salt" and settings belong there.
        while (fAt < fLines.size() && !fLines[fAt].Text.starts_with('{')) {
            Preamble(fLines[fAt]);
            ++fAt;
        }
        if (fAt == fLines.size()) {
            fModel.AddDiagnostic(kError, 0, "SALT_NO_GRID", "A wireframe is written inside \"{\" ... \"}\".",
                                 "");
            TWidget empty;
            empty.Kind = "grid";
            return empty;
        }
        const TUmlLine& open = fLines[fAt++];
        TWidget root = ReadGrid(open, open.Text.substr(1), 0);
        for (; fAt < fLines.size(); ++fAt)
            fModel.AddDiagnostic(kWarning, fLines[fAt].No, "SALT_UNRECOGNIZED_LINE",
                                 "The wireframe ended with the \"}\" before this line.", fLines[fAt].Text);
        return root;
    }

  private:
    void Preamble(const TUmlLine& line) {
        static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
        TRegexMatch m;
        if (Qvl::Utils::SameTextIgnoringCase(line.Text, "salt")) return;
        if (kTitle.Match(line.Text, m))
            fModel.fTitle = Plain(m.Group(1));
        else
            UmlNotDrawn(fModel, line, "a setting outside the wireframe.");
    }

    // The kind and marks written right after "{", and the rest of the opening line.
    TWidget OpenGrid(std::string_view& rest) {
        static const TRegex kMarks(R"re(^(T|/|\*|SI|S-|S|\+|#|!|-|\^"([^"]*)"|\^)?)re");
        TWidget grid;
        grid.Kind = "grid";
        TRegexMatch m;
        kMarks.MatchAt(rest, 0, m);
        const std::string mark(m.Group(1));
        if (mark == "T") grid.Kind = "tree";
        if (mark == "/") grid.Kind = "tabs";
        if (mark == "*") grid.Kind = "menu";
        if (mark == "+" || mark == "#" || mark == "!" || mark == "-") grid.Border = mark;
        if (mark.starts_with('^')) {
            grid.Border = "+";
            grid.Title = m.Matched(2) ? Plain(m.Group(2)) : "";
        }
        if (mark.starts_with('S')) grid.Border = "+";  // a scroll area is drawn as its frame
        rest = Trim(rest.substr(static_cast<std::size_t>(m.End(0))));
        return grid;
    }

    // A grid opened on `line` whose first row (if any) is `rest`; reads up to its "}".
    TWidget ReadGrid(const TUmlLine& line, std::string_view rest, std::size_t depth) {
        TWidget grid = OpenGrid(rest);
        if (depth > kMaxNesting) {
            fModel.AddDiagnostic(kError, line.No, "SALT_TOO_DEEP", "The grids nest too deep.", line.Text);
            return grid;
        }
        int row = 0;
        bool closed = false;
        // A grid written on one line ("{ a | b }") closes where it opened.
        if (rest.ends_with('}') && Balanced(rest)) {
            AddRow(grid, line, rest.substr(0, rest.size() - 1), row, depth);
            return grid;
        }
        if (!rest.empty()) AddRow(grid, line, rest, row, depth);
        while (fAt < fLines.size()) {
            const TUmlLine& next = fLines[fAt++];
            if (next.Text == "}") {
                closed = true;
                break;
            }
            AddRow(grid, next, next.Text, row, depth);
        }
        if (!closed)
            fModel.AddDiagnostic(kError, line.No, "SALT_UNCLOSED",
                                 "The grid opened here is not closed with \"}\".", line.Text);
        return grid;
    }

    static bool Balanced(std::string_view text) {
        int depth = 1;  // the grid's own "{" was already taken
        bool quoted = false;
        for (const char c : text) {
            if (c == '"') quoted = !quoted;
            if (quoted) continue;
            depth += c == '{' ? 1 : c == '}' ? -1 : 0;
        }
        return depth == 0;
    }

    void AddRow(TWidget& grid, const TUmlLine& line, std::string_view text, int& row, std::size_t depth) {
        text = Trim(text);
        if (text.empty()) return;
        if (grid.Kind == "tree") {
            AddTreeItem(grid, line, text, row);
        } else if (grid.Kind == "tabs" || grid.Kind == "menu") {
            for (const std::string& cell : SplitCells(text))
                if (!cell.empty()) grid.Items.push_back(Plain(cell));
            return;
        } else {
            int col = 0;
            for (const std::string& cell : SplitCells(text)) {
                if (cell == "*" && !grid.Children.empty() && grid.Children.back().Row == row) {
                    ++grid.Children.back().ColSpan;  // "*" widens the cell on its left
                    ++col;
                    continue;
                }
                TWidget widget;
                if (cell.starts_with('{')) {
                    widget = ReadGrid(line, std::string_view(cell).substr(1), depth + 1);
                } else {
                    widget = ReadWidget(cell);
                    if (cell.find('{') != std::string::npos || cell.find('}') != std::string::npos)
                        fModel.AddDiagnostic(kWarning, line.No, "SALT_UNRECOGNIZED_LINE",
                                             "A brace inside a cell is shown as text; a grid starts a cell.",
                                             line.Text);
                }
                widget.Row = row;
                widget.Col = col++;
                grid.Children.push_back(std::move(widget));
            }
        }
        ++row;
    }

    // "+ text", "++ text", ...: the number of "+" is the level; "|" adds columns, kept as items.
    void AddTreeItem(TWidget& tree, const TUmlLine& line, std::string_view text, int row) {
        std::size_t level = 0;
        while (level < text.size() && text[level] == '+') ++level;
        if (level == 0) {
            fModel.AddDiagnostic(kWarning, line.No, "SALT_UNRECOGNIZED_LINE",
                                 "A tree line starts with one \"+\" per level.", line.Text);
            return;
        }
        TWidget item;
        item.Kind = "item";
        item.Level = static_cast<int>(level);
        item.Row = row;
        std::vector<std::string> columns = SplitCells(text.substr(level));
        item.Text = Plain(columns.front());
        for (std::size_t i = 1; i < columns.size(); ++i) item.Items.push_back(Plain(columns[i]));
        tree.Children.push_back(std::move(item));
    }

    std::vector<TUmlLine> fLines;
    TORXDiagramModel& fModel;
    std::size_t fAt = 0;
};

TJSON WidgetJson(const TWidget& w) {
    TJSON out{{"kind", w.Kind}, {"text", w.Text}, {"row", w.Row}, {"col", w.Col}};
    if (w.ColSpan > 1) out["colSpan"] = w.ColSpan;
    if (w.Kind == "checkbox" || w.Kind == "radio") out["checked"] = w.Checked;
    if (!w.Border.empty()) out["border"] = w.Border;
    if (!w.Title.empty()) out["title"] = w.Title;
    if (w.Kind == "item") out["level"] = w.Level;
    if (w.Kind == "field") out["width"] = w.Width;
    if (!w.Items.empty()) out["items"] = w.Items;
    if (w.Kind == "grid" || w.Kind == "tree") {
        TJSON children = TJSON::array();
        for (const TWidget& child : w.Children) children.push_back(WidgetJson(child));
        out["children"] = std::move(children);
    }
    return out;
}

}  // namespace

void TQVLSaltChart::WriteJson(TJSON& aOut) const {
    aOut["root"] = WidgetJson(Root);
}

bool QVLReadSaltChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgPlantUML || !IsSaltText(aText)) return false;
    auto chart = std::make_shared<TQVLSaltChart>();
    chart->Root = TSaltReader(UmlStatementLines(aText, TQVLDiagramFormat::dgPlantUML), aModel).Read();
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
