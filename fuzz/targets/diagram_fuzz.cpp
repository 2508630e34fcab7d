// Both diagram parsers on arbitrary bytes: they must return a model, never throw, and the model must turn
// into JSON (with invalid UTF-8 replaced, as `orvex parse` does).
#include "fuzz/targets/fuzz_targets.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/io/json.h"

namespace Orvex::Fuzz {
namespace {

int ParseAs(const std::uint8_t* aData, std::size_t aSize, TQVLDiagramFormat aFormat) {
    const std::string_view text(reinterpret_cast<const char*>(aData), aSize);
    const auto model = QVLParseDiagram(text, aFormat);
    FuzzCheck(model != nullptr, "the parser returned no model");
    const std::string json =
        QVLDiagramModelToJson(*model, aFormat).dump(-1, ' ', false, TJSON::error_handler_t::replace);
    FuzzCheck(!json.empty(), "the model wrote no JSON");
    return 0;
}

}  // namespace

int FuzzMermaid(const std::uint8_t* aData, std::size_t aSize) {
    return ParseAs(aData, aSize, TQVLDiagramFormat::dgMermaid);
}

int FuzzPlantUml(const std::uint8_t* aData, std::size_t aSize) {
    return ParseAs(aData, aSize, TQVLDiagramFormat::dgPlantUML);
}

}  // namespace Orvex::Fuzz
