// PlantUML network diagrams: "nwdiag { ... }" (in @startuml or @startnwdiag) holding network blocks with
// their attributes and hosts, group blocks, host definitions with attributes, and "a -- b" links. The
// block is read as tokens, since statements may share a line or run over several.
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_network.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/sequence_builder.h"
#include "orvex/diagrams/uml_import_lines.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TNetwork = TQVLNetworkChart::TNetwork;
using THost = TQVLNetworkChart::THost;
using TGroup = TQVLNetworkChart::TGroup;

constexpr auto kCaseless = TRegexFlag::rfCaseless;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;

bool IsNetworkText(std::string_view text) {
    static const TRegex kStart(R"(^\s*@start(\w+))", {kCaseless, TRegexFlag::rfMultiline});
    static const TRegex kBlock(R"(^\s*nwdiag\s*\{)", {kCaseless, TRegexFlag::rfMultiline});
    TRegexMatch m;
    if (kStart.Match(text, m)) {
        const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
        if (word == "nwdiag") return true;
        if (word != "uml") return false;
    }
    return kBlock.Match(text);
}

struct TToken {
    enum TKind : std::uint8_t { tkWord, tkString, tkSymbol, tkEnd } Kind = tkEnd;
    std::string Text;
    std::int32_t Line = 0;
};

// Words, quoted strings and the symbols { } [ ] = ; , and "--"; "//", "#" and "'" start comments.
std::vector<TToken> Tokenize(const std::vector<std::string_view>& lines, std::size_t first, std::size_t last,
                             std::size_t startColumn) {
    std::vector<TToken> out;
    for (std::size_t i = first; i <= last && i < lines.size(); ++i) {
        const std::string_view line = lines[i];
        const auto no = static_cast<std::int32_t>(i + 1);
        for (std::size_t p = i == first ? startColumn : 0; p < line.size();) {
            const char c = line[p];
            if (c == ' ' || c == '\t') {
                ++p;
            } else if ((c == '/' && p + 1 < line.size() && line[p + 1] == '/') || c == '#' || c == '\'') {
                break;
            } else if (c == '"') {
                const std::size_t close = line.find('"', p + 1);
                const std::size_t end = close == std::string_view::npos ? line.size() : close;
                out.push_back({TToken::tkString, std::string(line.substr(p + 1, end - p - 1)), no});
                p = end + 1;
            } else if (c == '-' && p + 1 < line.size() && line[p + 1] == '-') {
                out.push_back({TToken::tkSymbol, "--", no});
                p += 2;
            } else if (std::string_view("{}[]=;,").find(c) != std::string_view::npos) {
                out.push_back({TToken::tkSymbol, std::string(1, c), no});
                ++p;
            } else {
                std::size_t end = p;
                while (end < line.size() &&
                       std::string_view(" \t{}[]=;,\"").find(line[end]) == std::string_view::npos &&
                       !(line[end] == '-' && end + 1 < line.size() && line[end + 1] == '-'))
                    ++end;
                out.push_back({TToken::tkWord, std::string(line.substr(p, end - p)), no});
                p = end;
            }
        }
    }
    return out;
}

class TNetworkReader {
  public:
    TNetworkReader(std::string_view text, TORXDiagramModel& model)
        : fText(text),
          fLines(QVLSplitDiagramLines(text)),
          fModel(model),
          fChart(std::make_shared<TQVLNetworkChart>()) {}

    void Read() {
        static const TRegex kBlock(R"(^\s*nwdiag\s*\{)", {kCaseless});
        static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
        const std::vector<TUmlLine> statements = UmlStatementLines(fText, TQVLDiagramFormat::dgPlantUML);
        std::int32_t skipUntil = 0;  // lines of the nwdiag block, read as tokens
        for (const TUmlLine& line : statements) {
            if (line.No <= skipUntil) continue;
            TRegexMatch m;
            if (kBlock.Match(line.Text, m)) {
                skipUntil = ReadBlock(static_cast<std::size_t>(line.No - 1));
            } else if (kTitle.Match(line.Text, m)) {
                fModel.fTitle = QVLPlainCaption(m.Group(1), true);
            } else if (IsPresentation(line.Text)) {
                UmlNotDrawn(fModel, line, "a presentation setting.");
            } else {
                fModel.AddDiagnostic(kWarning, line.No, "NWDIAG_UNRECOGNIZED_LINE",
                                     "A network diagram is written inside \"nwdiag { ... }\".", line.Text);
            }
        }
        fModel.SetChart(std::move(fChart));
    }

  private:
    static bool IsPresentation(std::string_view line) {
        static const TRegex kPresentation(
            R"(^(?:skinparam|scale|caption|header|footer|hide|show|!|<style>)\b)", {kCaseless});
        return kPresentation.Match(line);
    }

    // Reads the block opening on line index `first`; returns the (1-based) number of its last line.
    std::int32_t ReadBlock(std::size_t first) {
        // The block runs to the "}" that closes its "{": count braces outside strings and comments.
        const std::size_t open = fLines[first].find('{');
        std::size_t last = first + 1;
        while (last < fLines.size() && !Trim(fLines[last]).starts_with("@end")) ++last;
        fTokens = Tokenize(fLines, first, last - 1, open + 1);
        fAt = 0;
        ReadStatements(nullptr, nullptr);
        if (fAt >= fTokens.size()) {
            fModel.AddDiagnostic(kError, static_cast<std::int32_t>(first + 1), "NWDIAG_UNCLOSED",
                                 "The nwdiag block is not closed with \"}\".", Trim(fLines[first]));
            return static_cast<std::int32_t>(last);
        }
        return fTokens[fAt++].Line;  // the closing brace
    }

    // Statements up to the "}" that ends the current block (left unread).
    void ReadStatements(TNetwork* network, TGroup* group) {
        while (fAt < fTokens.size() && !IsSymbol(fTokens[fAt], "}")) {
            const TToken& token = fTokens[fAt];
            if (IsSymbol(token, ";") || IsSymbol(token, ",")) {
                ++fAt;
            } else if (token.Kind == TToken::tkWord && (token.Text == "network" || token.Text == "group") &&
                       network == nullptr && group == nullptr && OpensBlock(fAt + 1)) {
                token.Text == "network" ? ReadNetwork() : ReadGroup(nullptr);
            } else if (token.Kind == TToken::tkWord && token.Text == "group" && network != nullptr &&
                       group == nullptr && OpensBlock(fAt + 1)) {
                ReadGroup(network);
            } else if (token.Kind != TToken::tkSymbol && fAt + 1 < fTokens.size() &&
                       IsSymbol(fTokens[fAt + 1], "=")) {
                ReadBlockAttribute(network, group);
            } else if (token.Kind != TToken::tkSymbol) {
                ReadHostStatement(network, group);
            } else {
                Unexpected(token);
                ++fAt;
            }
        }
    }

    bool OpensBlock(std::size_t i) const {
        if (i < fTokens.size() && fTokens[i].Kind != TToken::tkSymbol) ++i;  // the optional name
        return i < fTokens.size() && IsSymbol(fTokens[i], "{");
    }

    static bool IsSymbol(const TToken& token, std::string_view symbol) {
        return token.Kind == TToken::tkSymbol && token.Text == symbol;
    }

    void Unexpected(const TToken& token) {
        fModel.AddDiagnostic(kWarning, token.Line, "NWDIAG_UNRECOGNIZED_LINE",
                             "\"" + token.Text + "\" is not understood here.", LineText(token.Line));
    }

    std::string LineText(std::int32_t no) const {
        return std::string(Trim(fLines[static_cast<std::size_t>(no - 1)]));
    }

    void ReadNetwork() {
        ++fAt;  // "network"
        TNetwork network;
        if (fTokens[fAt].Kind != TToken::tkSymbol) network.Id = fTokens[fAt++].Text;
        if (network.Id.empty()) network.Id = "network_" + std::to_string(fChart->Networks.size() + 1);
        network.Text = network.Id;
        ++fAt;  // "{"
        fChart->Networks.push_back(std::move(network));
        ReadStatements(&fChart->Networks.back(), nullptr);
        if (fAt < fTokens.size()) ++fAt;  // "}"
    }

    void ReadGroup(TNetwork* network) {
        ++fAt;  // "group"
        TGroup group;
        if (fTokens[fAt].Kind != TToken::tkSymbol) group.Text = fTokens[fAt++].Text;
        ++fAt;  // "{"
        fChart->Groups.push_back(std::move(group));
        // Hosts named in a group inside a network also sit on that network.
        ReadStatements(network, &fChart->Groups.back());
        if (fAt < fTokens.size()) ++fAt;  // "}"
    }

    // "address = ...", "color = ...", "description = ..." of the enclosing network or group.
    void ReadBlockAttribute(TNetwork* network, TGroup* group) {
        const TToken& key = fTokens[fAt];
        fAt += 2;
        if (fAt >= fTokens.size() || fTokens[fAt].Kind == TToken::tkSymbol) {
            fModel.AddDiagnostic(kWarning, key.Line, "NWDIAG_ATTRIBUTE",
                                 "\"" + key.Text + "\" needs a value.", LineText(key.Line));
            return;
        }
        const TToken& value = fTokens[fAt++];
        const std::string name = Qvl::Utils::ToLowerAscii(key.Text);
        if (group != nullptr) {
            if (name == "color")
                group->Color = Color(value);
            else if (name == "description" || name == "label")
                group->Text = QVLPlainCaption(value.Text, true);
            else
                NotDrawnAttribute(key);
        } else if (network != nullptr) {
            if (name == "address")
                network->Address = value.Text;
            else if (name == "color")
                network->Color = Color(value);
            else if (name == "description" || name == "label")
                network->Text = QVLPlainCaption(value.Text, true);
            else if (name == "width" && Qvl::Utils::ToLowerAscii(value.Text) == "full")
                network->Full = true;
            else
                NotDrawnAttribute(key);
        } else {
            NotDrawnAttribute(key);
        }
    }

    // "host", "host [attributes]", or "a -- b -- c".
    void ReadHostStatement(TNetwork* network, TGroup* group) {
        const TToken& name = fTokens[fAt++];
        THost& host = HostOf(name.Text);
        std::string address;
        if (fAt < fTokens.size() && IsSymbol(fTokens[fAt], "[")) address = ReadHostAttributes(host);
        if (network != nullptr) {
            bool known = false;
            for (auto& member : network->Members)
                if (member.Host == host.Id) {
                    known = true;
                    if (!address.empty()) member.Address = address;  // named again, now with its address
                }
            if (!known) network->Members.push_back({host.Id, address});
        } else if (!address.empty()) {
            fModel.AddDiagnostic(kWarning, name.Line, "NWDIAG_ATTRIBUTE",
                                 "An address belongs to a host inside a network block; it is not drawn here.",
                                 LineText(name.Line));
        }
        if (group != nullptr) group->Hosts.push_back(host.Id);
        std::string from = host.Id;
        while (fAt + 1 < fTokens.size() && IsSymbol(fTokens[fAt], "--") &&
               fTokens[fAt + 1].Kind != TToken::tkSymbol) {
            const std::string to = HostOf(fTokens[fAt + 1].Text).Id;
            fChart->Peers.push_back({from, to});
            from = to;
            fAt += 2;
        }
    }

    // The attributes in brackets; returns the address, applies the rest to the host.
    std::string ReadHostAttributes(THost& host) {
        ++fAt;  // "["
        std::string address;
        while (fAt < fTokens.size() && !IsSymbol(fTokens[fAt], "]") && !IsSymbol(fTokens[fAt], "}")) {
            const TToken& key = fTokens[fAt];
            if (IsSymbol(key, ",") || IsSymbol(key, ";")) {
                ++fAt;
                continue;
            }
            if (key.Kind == TToken::tkSymbol || fAt + 2 >= fTokens.size() ||
                !IsSymbol(fTokens[fAt + 1], "=")) {
                Unexpected(key);
                ++fAt;
                continue;
            }
            const TToken& value = fTokens[fAt + 2];
            fAt += 3;
            const std::string name = Qvl::Utils::ToLowerAscii(key.Text);
            if (name == "address")
                address = value.Text;
            else if (name == "description")
                host.Text = QVLPlainCaption(StripIcons(value.Text), true);
            else if (name == "shape")
                host.Shape = Qvl::Utils::ToLowerAscii(value.Text);
            else if (name == "color")
                host.Color = Color(value);
            else
                NotDrawnAttribute(key);
        }
        if (fAt < fTokens.size() && IsSymbol(fTokens[fAt], "]")) ++fAt;
        return address;
    }

    static std::string StripIcons(std::string_view text) {
        static const TRegex kIcon(R"(<&[^>]+>\s*)");
        std::string out(text);
        TRegexMatch m;
        while (kIcon.Match(out, m)) out.erase(m.Start(0), m.End(0) - m.Start(0));
        return out;
    }

    std::optional<TAlphaColor> Color(const TToken& value) {
        auto color = QVLSeqColor(value.Text);
        if (!color)
            fModel.AddDiagnostic(kWarning, value.Line, "NWDIAG_COLOR",
                                 "\"" + value.Text + "\" is not a colour.", LineText(value.Line));
        return color;
    }

    void NotDrawnAttribute(const TToken& key) {
        fModel.AddDiagnostic(kWarning, key.Line, "UNSUPPORTED_STATEMENT",
                             "Not drawn: the attribute \"" + key.Text + "\".", LineText(key.Line));
    }

    THost& HostOf(const std::string& id) {
        for (THost& host : fChart->Hosts)
            if (host.Id == id) return host;
        fChart->Hosts.push_back({id, id, "", std::nullopt});
        return fChart->Hosts.back();
    }

    std::string_view fText;
    std::vector<std::string_view> fLines;
    TORXDiagramModel& fModel;
    std::shared_ptr<TQVLNetworkChart> fChart;
    std::vector<TToken> fTokens;
    std::size_t fAt = 0;
};

}  // namespace

void TQVLNetworkChart::WriteJson(TJSON& aOut) const {
    TJSON networks = TJSON::array();
    for (const TNetwork& n : Networks) {
        TJSON hosts = TJSON::array();
        for (const auto& m : n.Members) hosts.push_back(TJSON{{"id", m.Host}, {"address", m.Address}});
        networks.push_back(TJSON{{"id", n.Id},
                                 {"text", n.Text},
                                 {"address", n.Address},
                                 {"full", n.Full},
                                 {"hosts", std::move(hosts)}});
    }
    aOut["networks"] = std::move(networks);
    TJSON hosts = TJSON::array();
    for (const THost& h : Hosts) hosts.push_back(TJSON{{"id", h.Id}, {"text", h.Text}, {"shape", h.Shape}});
    aOut["hosts"] = std::move(hosts);
    TJSON groups = TJSON::array();
    for (const TGroup& g : Groups) groups.push_back(TJSON{{"text", g.Text}, {"hosts", g.Hosts}});
    aOut["groups"] = std::move(groups);
    TJSON peers = TJSON::array();
    for (const TPeer& p : Peers) peers.push_back(TJSON{{"from", p.From}, {"to", p.To}});
    aOut["peers"] = std::move(peers);
}

bool QVLReadNetworkChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgPlantUML || !IsNetworkText(aText)) return false;
    TNetworkReader(aText, aModel).Read();
    return true;
}

}  // namespace Orvex
