#include "host/editor/edit_properties.h"

#include <fmt/format.h>

#include <cmath>
#include <stdexcept>

#include "host/tools/item_build.h"
#include "host/tools/tool_args.h"
#include "orvex/core/color.h"
#include "orvex/document/document.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Host {

namespace {

TJSON Inspector(const TORXBaseItem& aItem) {
    TQVLInsTypeBases bases{TQVLInsTypeBase::ibID,       TQVLInsTypeBase::ibLayer, TQVLInsTypeBase::ibColor,
                           TQVLInsTypeBase::ibPenWidth, TQVLInsTypeBase::ibAngle, TQVLInsTypeBase::ibOptions,
                           TQVLInsTypeBase::ibPoints};
    TQVLInsTypes groups{TQVLInsType::inFill, TQVLInsType::inBackColor, TQVLInsType::inLineType,
                        TQVLInsType::inFont, TQVLInsType::inText,      TQVLInsType::inTerminators,
                        TQVLInsType::inData};
    aItem.CheckProp(bases, groups);
    TJSON list = TJSON::array();
    aItem.JsonInspector(bases, groups, list);
    return list;
}

bool IsColorObject(const TJSON& aValue) {
    return aValue.is_object() && aValue.contains("R") && aValue.contains("G") && aValue.contains("B");
}

// How the inspector's entry is edited, and whether the item's stored form holds it in the same shape, so
// that a value typed into the panel can be written back under the same key.
struct TFieldKind {
    std::string Type;
    bool Editable = false;
};

TFieldKind KindOf(const TJSON& aStored, const std::string& aName, const TJSON& aShown) {
    const auto it = aStored.find(aName);
    const bool stored = it != aStored.end();
    if (aShown.is_string() && aShown.get_ref<const std::string&>().starts_with('#'))
        return {"color", stored && IsColorObject(*it)};
    if (aShown.is_boolean()) return {"bool", stored && it->is_boolean()};
    if (aShown.is_number())
        return {"number",
                stored && it->is_number() && std::fabs(it->get<double>() - aShown.get<double>()) < 1e-6};
    if (aShown.is_string()) return {"text", stored && it->is_string() && *it == aShown};
    return {"text", false};
}

// The value in the stored form's shape for the key; throws std::invalid_argument for a value that does
// not fit.
TJSON StoredValue(const TJSON& aCurrent, const std::string& aName, const TJSON& aValue) {
    if (IsColorObject(aCurrent)) {
        TAlphaColor color = 0;
        if (!aValue.is_string() || !Qvl::Utils::TryParseColor(aValue.get<std::string>(), color))
            throw std::invalid_argument(
                fmt::format("{}: \"{}\" is not a colour", aName,
                            aValue.is_string() ? aValue.get<std::string>() : aValue.dump()));
        return TJSONUtils::SetAlphaColor(color);
    }
    if (aCurrent.is_boolean()) {
        if (aValue.is_boolean()) return aValue;
        if (aValue == "true" || aValue == "false") return aValue == "true";
        throw std::invalid_argument(fmt::format("{} is on or off", aName));
    }
    if (aCurrent.is_number()) {
        double number = 0;
        if (aValue.is_number()) {
            number = aValue.get<double>();
        } else if (aValue.is_string()) {
            try {
                std::size_t used = 0;
                number = std::stod(aValue.get<std::string>(), &used);
                if (used != aValue.get<std::string>().size()) throw std::invalid_argument("trailing text");
            } catch (const std::exception&) {
                throw std::invalid_argument(
                    fmt::format("{}: \"{}\" is not a number", aName, aValue.get<std::string>()));
            }
        } else {
            throw std::invalid_argument(fmt::format("{} needs a number", aName));
        }
        if (!std::isfinite(number))
            throw std::invalid_argument(fmt::format("{} needs a finite number", aName));
        if (aCurrent.is_number_integer()) return static_cast<std::int64_t>(std::llround(number));
        return number;
    }
    if (!aValue.is_string()) throw std::invalid_argument(fmt::format("{} needs a text", aName));
    return aValue;
}

}  // namespace

TJSON SelectionProperties(const TORXBaseLabel& aDocument) {
    const auto& selection = aDocument.Selection();
    TJSON out = {{"count", selection.size()}};
    if (selection.empty()) return out;
    const TORXBaseItem& item = *selection.front();
    const TJSON stored = item.WriteJson();
    out["kind"] = std::string(KindNames()[static_cast<std::size_t>(item.ItemType())]);
    out["name"] = item.ID();
    TJSON properties = TJSON::array();
    for (const auto& entry : Inspector(item)) {
        const std::string name = entry.value("Name", std::string());
        const TJSON& value = entry["Value"];
        const TFieldKind kind = KindOf(stored, name, value);
        properties.push_back(
            {{"name", name}, {"value", value}, {"type", kind.Type}, {"editable", kind.Editable}});
    }
    out["properties"] = std::move(properties);
    return out;
}

void SetSelectionProperty(TORXBaseLabel& aDocument, const std::string& aName, const TJSON& aValue) {
    std::vector<std::pair<TORXBaseItem*, TJSON>> changes;
    for (TORXBaseItem* item : aDocument.Selection()) {
        const TJSON stored = item->WriteJson();
        bool shown = false;
        for (const auto& entry : Inspector(*item)) {
            if (entry.value("Name", std::string()) != aName) continue;
            shown = KindOf(stored, aName, entry["Value"]).Editable;
        }
        if (!shown) continue;
        TJSON keys = {{aName, StoredValue(stored[aName], aName, aValue)}};
        if (aName == "ID") {
            const std::string name = keys["ID"].get<std::string>();
            if (name.empty()) throw std::invalid_argument("a name cannot be empty");
            if (aDocument.RepeatID(name, item))
                throw std::invalid_argument(fmt::format("the name \"{}\" is taken", name));
        }
        if (aName == "Layer") {
            const auto layer = keys["Layer"].get<std::int64_t>();
            if (layer < 0 || layer >= aDocument.GetLayersCount())
                throw std::invalid_argument(fmt::format("there is no layer {}", layer));
        }
        changes.emplace_back(item, std::move(keys));
    }
    if (changes.empty())
        throw std::invalid_argument(
            fmt::format("no selected item has a property {} that can be changed", aName));
    const TORXBaseLabel::TUndoGroup group(aDocument);
    aDocument.BeginUpdate(true);
    for (auto& [item, keys] : changes) ChangeItemKeys(*item, keys);
    aDocument.EndUpdate();
}

}  // namespace Orvex::Host
