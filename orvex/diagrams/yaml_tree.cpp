#include "orvex/diagrams/yaml_tree.h"

#include <charconv>
#include <cmath>
#include <vector>

#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/io/json_text.h"

namespace Orvex {
namespace {

using Qvl::Utils::Trim;

struct TYamlLine {
    int Indent = 0;
    std::string Text;  // without indentation, trailing comment and trailing blanks
    std::int32_t No = 0;
};

// Thrown inside the parser only; QVLParseYaml turns it into the result's error.
struct TYamlError {
    std::string Message;
    std::int32_t Line = 0;
};

// The text before a comment: "#" at the start or after a blank, outside quotes.
std::string_view WithoutComment(std::string_view text) {
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            if (c == quote) quote = 0;
            continue;
        }
        if ((c == '"' || c == '\'') && (i == 0 || text[i - 1] == ' ' || text[i - 1] == '[' ||
                                        text[i - 1] == '{' || text[i - 1] == ',' || text[i - 1] == ':'))
            quote = c;
        else if (c == '#' && (i == 0 || text[i - 1] == ' ' || text[i - 1] == '\t'))
            return text.substr(0, i);
    }
    return text;
}

// The position of the ":" that ends a mapping key (followed by a blank or the end), outside quotes and
// brackets; npos when the text is no "key: value".
std::size_t KeyColon(std::string_view text) {
    char quote = 0;
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            if (c == quote) quote = 0;
            continue;
        }
        if ((c == '"' || c == '\'') && i == 0) quote = c;
        if (c == '[' || c == '{') ++depth;
        if (c == ']' || c == '}') --depth;
        if (c == ':' && depth == 0 && (i + 1 == text.size() || text[i + 1] == ' ' || text[i + 1] == '\t'))
            return i;
    }
    return std::string_view::npos;
}

bool IsSequenceItem(std::string_view text) {
    return text == "-" || text.starts_with("- ") || text.starts_with("-\t");
}

// Flow collections and scalars within one line.
class TFlowReader {
  public:
    TFlowReader(std::string_view text, std::int32_t line) : fText(text), fLine(line) {}

    TJSON ReadWhole() {
        TJSON value = Read(0);
        SkipBlanks();
        if (fPos != fText.size())
            Fail("unexpected \"" + std::string(fText.substr(fPos)) + "\" after the value");
        return value;
    }

  private:
    TJSON Read(std::size_t depth) {
        if (depth > kJSONMaxDepth) Fail("nested deeper than " + std::to_string(kJSONMaxDepth) + " levels");
        SkipBlanks();
        if (fPos < fText.size() && fText[fPos] == '[') return ReadSequence(depth);
        if (fPos < fText.size() && fText[fPos] == '{') return ReadMapping(depth);
        return ReadScalar(depth > 0);
    }

    TJSON ReadSequence(std::size_t depth) {
        ++fPos;
        TJSON out = TJSON::array();
        for (;;) {
            SkipBlanks();
            if (Take(']')) return out;
            out.push_back(Read(depth + 1));
            SkipBlanks();
            if (Take(']')) return out;
            if (!Take(',')) Fail("a flow sequence separates its items with \",\" and ends with \"]\"");
        }
    }

    TJSON ReadMapping(std::size_t depth) {
        ++fPos;
        TJSON out = TJSON::object();
        for (;;) {
            SkipBlanks();
            if (Take('}')) return out;
            const TJSON key = ReadScalar(true, true);
            SkipBlanks();
            if (!Take(':')) Fail("a flow mapping entry is \"key: value\"");
            out[key.is_string() ? key.get<std::string>() : key.dump()] = Read(depth + 1);
            SkipBlanks();
            if (Take('}')) return out;
            if (!Take(',')) Fail("a flow mapping separates its entries with \",\" and ends with \"}\"");
        }
    }

    // Inside a flow collection a plain scalar ends at ",", "]", "}" (and ":" for a key).
    TJSON ReadScalar(bool inFlow, bool key = false) {
        SkipBlanks();
        if (fPos < fText.size() && (fText[fPos] == '"' || fText[fPos] == '\'')) return ReadQuoted();
        const std::size_t start = fPos;
        while (fPos < fText.size()) {
            const char c = fText[fPos];
            if (inFlow && (c == ',' || c == ']' || c == '}')) break;
            if (key && c == ':') break;
            ++fPos;
        }
        return PlainScalar(Trim(fText.substr(start, fPos - start)));
    }

    TJSON ReadQuoted() {
        const char quote = fText[fPos++];
        std::string out;
        while (fPos < fText.size()) {
            const char c = fText[fPos++];
            if (c == quote) {
                if (quote == '\'' && fPos < fText.size() && fText[fPos] == '\'') {
                    out += '\'';
                    ++fPos;
                    continue;
                }
                return out;
            }
            if (c == '\\' && quote == '"' && fPos < fText.size()) {
                const char e = fText[fPos++];
                out += e == 'n' ? '\n' : e == 't' ? '\t' : e;
                continue;
            }
            out += c;
        }
        Fail("the quoted text is not closed");
    }

    static TJSON PlainScalar(std::string_view text) {
        if (text.empty() || text == "~" || text == "null" || text == "Null" || text == "NULL") return nullptr;
        if (text == "true" || text == "True" || text == "TRUE") return true;
        if (text == "false" || text == "False" || text == "FALSE") return false;
        std::int64_t whole = 0;
        auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), whole);
        if (error == std::errc{} && end == text.data() + text.size()) return whole;
        double real = 0;
        auto [realEnd, realError] = std::from_chars(text.data(), text.data() + text.size(), real);
        if (realError == std::errc{} && realEnd == text.data() + text.size() && std::isfinite(real))
            return real;
        return std::string(text);
    }

    void SkipBlanks() {
        while (fPos < fText.size() && (fText[fPos] == ' ' || fText[fPos] == '\t')) ++fPos;
    }
    bool Take(char c) {
        if (fPos >= fText.size() || fText[fPos] != c) return false;
        ++fPos;
        return true;
    }
    [[noreturn]] void Fail(std::string message) const { throw TYamlError{std::move(message), fLine}; }

    std::string_view fText;
    std::int32_t fLine;
    std::size_t fPos = 0;
};

class TBlockReader {
  public:
    explicit TBlockReader(std::vector<TYamlLine> lines) : fLines(std::move(lines)) {}

    TJSON ReadDocument() {
        if (fLines.empty()) return nullptr;
        TJSON value = ReadNode(fLines[0].Indent, 0);
        if (fAt < fLines.size()) Fail(fLines[fAt], "the line's indentation matches no open block");
        return value;
    }

  private:
    // The node whose first line is fLines[fAt]; a plain scalar there runs on over lines deeper than
    // `owner` (the indentation of the line that holds the node, the node's own when it stands alone).
    TJSON ReadNode(int indent, std::size_t depth, int owner = -1) {
        if (depth > kJSONMaxDepth)
            Fail(fLines[fAt], "nested deeper than " + std::to_string(kJSONMaxDepth) + " levels");
        const TYamlLine& line = fLines[fAt];
        if (line.Indent != indent) Fail(line, "the line is not indented like the lines before it");
        if (IsSequenceItem(line.Text)) return ReadSequence(indent, depth);
        if (KeyColon(line.Text) != std::string_view::npos) return ReadMapping(indent, depth);
        ++fAt;
        return WithContinuation(TFlowReader(line.Text, line.No).ReadWhole(), line.Text,
                                owner < 0 ? indent : owner);
    }

    // A plain scalar may run on over deeper-indented lines, which join it with blanks.
    TJSON WithContinuation(TJSON value, std::string_view text, int indent) {
        const bool plain = value.is_string() && !text.starts_with('"') && !text.starts_with('\'') &&
                           !text.starts_with('[') && !text.starts_with('{');
        while (plain && fAt < fLines.size() && fLines[fAt].Indent > indent &&
               !IsSequenceItem(fLines[fAt].Text) && KeyColon(fLines[fAt].Text) == std::string_view::npos)
            value = value.get<std::string>() + " " + fLines[fAt++].Text;
        return value;
    }

    TJSON ReadSequence(int indent, std::size_t depth) {
        TJSON out = TJSON::array();
        while (fAt < fLines.size() && fLines[fAt].Indent == indent && IsSequenceItem(fLines[fAt].Text)) {
            TYamlLine& line = fLines[fAt];
            const std::string_view rest = Trim(std::string_view(line.Text).substr(1));
            if (rest.empty()) {
                ++fAt;
                out.push_back(ReadNested(indent, depth));
                continue;
            }
            // "- key: value" or "- - x": the rest is a node of its own, indented where its text starts.
            const int offset = static_cast<int>(line.Text.size() - rest.size());
            line.Indent += offset;
            line.Text = std::string(rest);
            out.push_back(ReadNode(line.Indent, depth + 1, indent));
        }
        return out;
    }

    TJSON ReadMapping(int indent, std::size_t depth) {
        TJSON out = TJSON::object();
        while (fAt < fLines.size() && fLines[fAt].Indent == indent) {
            const TYamlLine& line = fLines[fAt];
            const std::size_t colon = KeyColon(line.Text);
            if (colon == std::string_view::npos || IsSequenceItem(line.Text))
                Fail(line, "a mapping line is \"key: value\"");
            const std::string_view keyText = Trim(std::string_view(line.Text).substr(0, colon));
            const TJSON key = TFlowReader(keyText, line.No).ReadWhole();
            const std::string name = key.is_string() ? key.get<std::string>() : key.dump();
            if (out.contains(name)) Fail(line, "the key \"" + name + "\" appears twice");
            const std::string_view rest = Trim(std::string_view(line.Text).substr(colon + 1));
            const std::int32_t no = line.No;
            ++fAt;
            if (rest.empty()) {
                // A sequence may stand at the key's own indentation.
                if (fAt < fLines.size() && fLines[fAt].Indent == indent && IsSequenceItem(fLines[fAt].Text))
                    out[name] = ReadSequence(indent, depth + 1);
                else
                    out[name] = ReadNested(indent, depth);
            } else if (rest == "|" || rest == ">" || rest == "|-" || rest == ">-" || rest == "|+" ||
                       rest == ">+") {
                out[name] = ReadBlockScalar(indent, rest);
            } else {
                out[name] = WithContinuation(ReadInline(rest, no), rest, indent);
            }
        }
        return out;
    }

    // The node below a line that ends in "key:" or "-": deeper lines, or null when there are none.
    TJSON ReadNested(int indent, std::size_t depth) {
        if (fAt >= fLines.size() || fLines[fAt].Indent <= indent) return nullptr;
        return ReadNode(fLines[fAt].Indent, depth + 1);
    }

    TJSON ReadInline(std::string_view text, std::int32_t no) {
        if (text.starts_with('&') || text.starts_with('*') || text.starts_with('!'))
            throw TYamlError{"anchors, aliases and tags are not read", no};
        return TFlowReader(text, no).ReadWhole();
    }

    // "|" keeps the line breaks, ">" folds the lines into one; "-" drops the final break.
    std::string ReadBlockScalar(int indent, std::string_view style) {
        std::string out;
        const bool fold = style[0] == '>';
        bool first = true;
        while (fAt < fLines.size() && fLines[fAt].Indent > indent) {
            if (!first) out += fold ? ' ' : '\n';
            out += fLines[fAt].Text;
            first = false;
            ++fAt;
        }
        if (!style.ends_with('-')) out += '\n';
        return out;
    }

    [[noreturn]] static void Fail(const TYamlLine& line, std::string message) {
        throw TYamlError{std::move(message), line.No};
    }

    std::vector<TYamlLine> fLines;
    std::size_t fAt = 0;
};

}  // namespace

TYamlResult QVLParseYaml(std::string_view aText, std::int32_t aFirstLine) {
    std::vector<TYamlLine> lines;
    const auto raw = QVLSplitDiagramLines(aText);
    TYamlResult result;
    try {
        bool documentStarted = false;
        for (std::size_t i = 0; i < raw.size(); ++i) {
            const auto no = static_cast<std::int32_t>(static_cast<std::int32_t>(i) + aFirstLine);
            const std::string_view text = Trim(WithoutComment(raw[i]));
            if (text.empty() || text.starts_with("%")) continue;
            if (text == "---" || text.starts_with("--- ")) {
                if (documentStarted || !lines.empty()) throw TYamlError{"only one document is read", no};
                documentStarted = true;
                continue;
            }
            if (text == "...") break;
            if (raw[i].find('\t') < raw[i].find_first_not_of(" \t"))
                throw TYamlError{"YAML indents with spaces, not tabs", no};
            lines.push_back({QVLIndentOf(raw[i]), std::string(text), no});
        }
        result.Value = TBlockReader(std::move(lines)).ReadDocument();
    } catch (const TYamlError& e) {
        result.Value = nullptr;
        result.Error = e.Message;
        result.ErrorLine = e.Line;
    }
    return result;
}

}  // namespace Orvex
