// Reading chart texts in the reader tests: the full importer's model, its chart record, and its
// diagnostics by code.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex::ChartTest {

inline std::unique_ptr<TORXDiagramModel> Read(std::string_view text) {
    return QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid);
}

// The model's chart as its record type; null (and a test failure) when it holds another or none.
template <class T>
const T* ChartOf(const TORXDiagramModel& model) {
    const auto* chart = dynamic_cast<const T*>(model.Chart());
    EXPECT_NE(chart, nullptr) << "the text was not read as the expected chart";
    return chart;
}

// The diagnostic with this code, or null.
inline const TQVLDiagramDiagnostic* Diagnostic(const TORXDiagramModel& model, std::string_view code) {
    const auto& all = model.Diagnostics();
    const auto found = std::find_if(all.begin(), all.end(), [&](const auto& d) { return d.Code == code; });
    return found == all.end() ? nullptr : &*found;
}

}  // namespace Orvex::ChartTest
