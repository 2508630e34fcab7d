// Reading helpers the full importer's readers share: front matter, colours and CSS-like style
// properties, and captions cleaned of markdown, HTML and creole markup.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// The index of the first line after a Mermaid front matter block ("---" ... "---" before any
// statement); 0 when there is none or it is not closed.
std::size_t QVLFrontMatterEnd(const std::vector<std::string_view>& aLines);
// A top-level "key: value" of the front matter, unquoted; "" when absent.
std::string QVLFrontMatterValue(std::string_view aText, std::string_view aKey);

// "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", "rgb(r,g,b)", "rgba(r,g,b,a)", a web colour name, or
// "none"/"transparent" (fully transparent). False for anything else.
bool QVLReadColor(std::string_view aText, TAlphaColor& aColor);

// CSS-like declarations ("fill:#f9f,stroke:#333,stroke-width:4px", separated by "," or ";") applied onto
// aStyle. Returns the declarations it does not map, as written ("rx:5"), so the caller can name them.
std::vector<std::string> QVLApplyStyleProperties(std::string_view aProps, TQVLDiagStyle& aStyle);
// Every property set in aOver replaces the one in aInto.
void QVLMergeStyle(TQVLDiagStyle& aInto, const TQVLDiagStyle& aOver);

// A caption as a person reads it: one pair of enclosing quotes dropped, a Mermaid markdown string
// (backticks) unwrapped, HTML tags and entities, markdown and (with aCreole) PlantUML creole emphasis
// removed, "<br>", "\n" and real line feeds turned into CR LF, each line trimmed.
std::string QVLPlainCaption(std::string_view aText, bool aCreole = false);

}  // namespace Orvex
