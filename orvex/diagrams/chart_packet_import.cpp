// Mermaid packet diagrams: `0-15: "Source port"`, `16: "Flag"` (one bit) or `+8: "Next"` (the next 8
// bits), each field starting right after the one before.
#include <charconv>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_packet.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexMatch;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;
// Beyond this a packet is a mistake rather than a layout: ten thousand rows of 32 bits.
constexpr std::int64_t kMostBits = 320000;

bool ReadBits(std::string_view text, std::int64_t& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size();
}

}  // namespace

void TQVLPacketChart::WriteJson(TJSON& aOut) const {
    aOut["bitsPerRow"] = BitsPerRow;
    TJSON fields = TJSON::array();
    for (const TField& f : Fields)
        fields.push_back(TJSON{{"start", f.Start}, {"end", f.End}, {"text", f.Text}});
    aOut["fields"] = std::move(fields);
}

bool QVLReadPacketChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    TQVLChartText text;
    if (!QVLReadChartText(aText, aFormat, {"packet-beta", "packet"}, aModel, text)) return false;
    static const TRegex kField(R"(^(?:(\d+)(?:\s*-\s*(\d+))?|\+\s*(\d+))\s*:\s*(.*)$)");
    auto chart = std::make_shared<TQVLPacketChart>();

    QVLChartBareHeader(aModel, text, "PACKET_HEADER");
    std::int64_t next = 0;  // the first bit after the fields so far
    for (const TQVLChartLine& line : text.Lines) {
        TRegexMatch m;
        if (!kField.MatchAt(line.Text, 0, m)) {
            QVLChartNote(aModel, line, kWarning, "PACKET_UNRECOGNIZED_LINE",
                         "A packet line is `start-end: \"label\"`, `bit: \"label\"` or `+bits: \"label\"`.");
            continue;
        }
        TQVLPacketChart::TField field;
        std::int64_t bits = 0;
        if (m.Matched(3)) {
            if (!ReadBits(m.Group(3), bits) || bits <= 0) {
                QVLChartNote(aModel, line, kError, "PACKET_RANGE", "A field has at least one bit.");
                continue;
            }
            field.Start = next;
            field.End = next + bits - 1;
        } else if (!ReadBits(m.Group(1), field.Start) ||
                   !ReadBits(m.Matched(2) ? m.Group(2) : m.Group(1), field.End)) {
            QVLChartNote(aModel, line, kError, "PACKET_RANGE", "The field's bit numbers are too large.");
            continue;
        }
        if (field.End < field.Start) {
            QVLChartNote(aModel, line, kError, "PACKET_RANGE",
                         "A field's end bit comes after its start bit.");
            continue;
        }
        if (field.End >= kMostBits) {
            QVLChartNote(aModel, line, kError, "PACKET_RANGE",
                         "A packet holds at most " + std::to_string(kMostBits) + " bits.");
            continue;
        }
        if (field.Start < next) {
            QVLChartNote(
                aModel, line, kError, "PACKET_OVERLAP",
                "The field overlaps the one before: it should start at bit " + std::to_string(next) + ".");
            continue;
        }
        if (field.Start > next)
            QVLChartNote(aModel, line, kError, "PACKET_GAP",
                         "The field leaves a gap: it should start at bit " + std::to_string(next) + ".");
        field.Text = QVLPlainCaption(m.Group(4));
        next = field.End + 1;
        chart->Fields.push_back(std::move(field));
    }
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
