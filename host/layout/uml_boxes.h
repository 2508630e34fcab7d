// Boxes with compartments: classes (name, attributes, methods), entities (name, one row per attribute)
// and states with descriptions. The element keeps the caption at its top and the links; each
// compartment is a rule across the box and one left-aligned text item per row.
#pragma once

#include "host/layout/layout_types.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

class TORXBaseLabel;
class TORXBaseFlow;

// True for a node drawn as a box with compartments.
bool HasCompartmentBox(const TQVLDiagNode& aNode);

// The box that holds the caption and every compartment row.
TLayoutSize CompartmentBoxSize(const TQVLDiagNode& aNode, const TTextMeasure& aMeasure);

// Puts the caption at the top of aFlow and adds the rules and rows inside aBox.
void AddCompartments(TORXBaseLabel& aDoc, TORXBaseFlow& aFlow, const TQVLDiagNode& aNode,
                     const TLayoutBox& aBox, const TTextMeasure& aMeasure);

// What a member row shows once its static and abstract marks ("$", "*", "{static}", "{abstract}") are
// read; the marks become underline and italics.
struct TMemberRow {
    std::string Text;
    bool Static = false;
    bool Abstract = false;
};
TMemberRow ReadMemberRow(std::string_view aRow);

}  // namespace Orvex
