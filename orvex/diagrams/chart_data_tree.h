// A JSON or YAML document shown as a tree of tables: the parsed value as it was written (keys in source
// order), and the paths of the rows the text highlights.
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"
#include "orvex/io/json.h"

namespace Orvex {

struct TQVLDataTreeChart final : TQVLChart {
    bool Yaml = false;  // the text's language: "yaml" or "json" as the chart type
    TJSON Root;
    // Each highlight is a path of keys (array elements by their index, as text) from the root to a row.
    std::vector<std::vector<std::string>> Highlights;

    std::string_view Type() const override { return Yaml ? "yaml" : "json"; }
    // "root" (the value itself), "highlights": [["key", "0", ...]].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
