// PlantUML source into a diagram model: framing, decoration and preprocessor lines are dropped, the kind is
// taken from the start marker or guessed from the content, and one routine per kind reads the rest.
// Never throws.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

class TORXPlantUMLParser {
  public:
    enum class TPumlKind : std::uint8_t {
        pkUnknown,
        pkSequence,
        pkActivity,
        pkState,
        pkMindMap,
        pkArchimate,
        pkStructure,
        pkC4,
        pkTiming,
        pkNetwork,
        pkChronology,
        pkData,
        pkSalt,
        pkGrammar,
        pkFiles,
        pkDitaa,
        pkChen,
        pkGantt
    };
    using TLines = std::vector<std::string_view>;

    static void Parse(std::string_view aText, TORXDiagramModel& aModel);

    // The content lines that the routines see: trimmed, without framing, comments, preprocessor and
    // styling lines; a title line sets the model's title and is dropped.
    static TLines ContentLines(std::string_view aText, TORXDiagramModel& aModel);
    static TPumlKind DetectKind(const TLines& aLines);
    // The kind named by a start marker other than the plain one; pkUnknown when there is none.
    static TPumlKind KindFromMarker(std::string_view aText);
    // True for a relation between two names as class, component and use-case diagrams write them
    // ("A <|-- B : label", "[Web] ..> [Db]", "Bob --> Alice"). A sequence message always carries ": text",
    // and such lines are recognised as messages before this test, so a plain arrow without a text is a
    // relation: it makes the text a structure diagram.
    static bool IsStructureRelation(std::string_view aLine);

    static void ParseSequence(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseActivity(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseState(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseMindMap(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseArchimate(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseStructure(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseC4(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseTiming(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseNetwork(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseChronology(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseData(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseSalt(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseGrammar(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseFiles(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseDitaa(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseChen(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseGantt(const TLines& aLines, TORXDiagramModel& aModel);
};

}  // namespace Orvex
