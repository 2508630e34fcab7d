// The property panel of the editor page: the engine's property inspector of the selected item, each entry
// marked with the kind of field it needs and whether it can be changed; and changes made through the
// item's stored form, recorded, so that each change is one undo step.
#pragma once

#include <string>

#include "orvex/io/json.h"

namespace Orvex {
class TORXBaseLabel;
}

namespace Orvex::Host {

// {"count", "kind", "name", "properties": [{"name", "value", "type", "editable"}]} of the first selected
// item ("type" is "color", "bool", "number" or "text"); {"count": 0} without a selection.
TJSON SelectionProperties(const TORXBaseLabel& aDocument);

// Sets the property on every selected item that has it, as one undo step; throws std::invalid_argument
// with a message for the person when no selected item takes the value.
void SetSelectionProperty(TORXBaseLabel& aDocument, const std::string& aName, const TJSON& aValue);

}  // namespace Orvex::Host
