// Property tables: a kind lists its properties once, one row each (undo index, JSON key, the field, the
// values accepted, whether the inspector shows it), and that list drives the property getters and setters
// the undo commands use, the kind's keys in drawing files (written in row order, read tolerantly) and its
// rows in the inspector. Values outside a row's bounds are clamped here and nowhere else: by a setter
// silently, by a read with a warning that names the key.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "orvex/core/numeric.h"
#include "orvex/core/types.h"
#include "orvex/document/item_types.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/io/json_writer.h"
#include "orvex/items/enum_bounds.h"

namespace Orvex {

// When the inspector lists a row: never, always, or when it shows the row's group.
enum class TPropShow : std::uint8_t { psNever, psAlways, psWithGroup };

template <class Item>
struct TEnumAccess {
    std::int64_t (*Get)(const Item&);
    void (*Put)(Item&, std::int64_t);  // stores a value already within the row's bounds
};

// A key whose file form is more than one plain value (a nested object, an array, a conversion).
template <class Item>
struct TCustomAccess {
    void (*Write)(const Item&, TJsonWriter&);  // the key and its value, or nothing when left out
    void (*Read)(Item&, const TJSON& obj);     // from the item's whole object
};

// The field behind a row. Its type decides the undo command that records a change: enums TORXEnumValueCmd,
// integers TORXBaseValueCmd, floats TORXFloatCmd, Booleans TORXBoolCmd, texts TORXTxtCmd, colours
// TORXColorCmd.
template <class Item>
using TPropField =
    std::variant<TEnumAccess<Item>, std::int64_t* (*)(Item&), float* (*)(Item&), bool* (*)(Item&),
                 std::string* (*)(Item&), TAlphaColor* (*)(Item&), TCustomAccess<Item>>;

template <class Item>
struct TPropRow {
    std::uint16_t Index = 0;  // the undo commands' property index; kPropNone for a key of the file only
    std::string_view Key;     // the JSON key; empty for a property filed inside another row's key
    TPropField<Item> Field;
    std::int64_t Min = std::numeric_limits<std::int64_t>::min();  // enums and integers: values accepted
    std::int64_t Max = std::numeric_limits<std::int64_t>::max();
    TPropShow Show = TPropShow::psNever;
    TQVLInsType Group = TQVLInsType::inFill;  // with psWithGroup
    bool Read = true;  // false: written for other readers, derived from other keys when read

    TPropRow Shown() const {
        return With([](TPropRow& r) { r.Show = TPropShow::psAlways; });
    }
    TPropRow ShownWith(TQVLInsType group) const {
        return With([group](TPropRow& r) { r.Show = TPropShow::psWithGroup, r.Group = group; });
    }
    TPropRow WrittenOnly() const {
        return With([](TPropRow& r) { r.Read = false; });
    }

  private:
    template <class TChange>
    TPropRow With(TChange change) const {
        TPropRow row = *this;
        change(row);
        return row;
    }
};

// Row builders for a kind's table; the member pointers are formed inside the kind, where they are
// accessible.
template <class Item>
struct TPropRows {
    template <auto M>
    static TPropRow<Item> Enum(std::uint16_t index, std::string_view key,
                               std::remove_cvref_t<decltype(std::declval<Item&>().*M)> last) {
        using E = std::remove_cvref_t<decltype(std::declval<Item&>().*M)>;
        TPropRow<Item> row;
        row.Index = index;
        row.Key = key;
        row.Field = TEnumAccess<Item>{[](const Item& i) { return static_cast<std::int64_t>(i.*M); },
                                      [](Item& i, std::int64_t v) { i.*M = static_cast<E>(v); }};
        row.Min = 0;
        row.Max = static_cast<std::int64_t>(last);
        return row;
    }
    template <auto M>
    static TPropRow<Item> Value(std::uint16_t index, std::string_view key) {
        using T = std::remove_cvref_t<decltype(std::declval<Item&>().*M)>;
        TPropRow<Item> row;
        row.Index = index;
        row.Key = key;
        row.Field = static_cast<T* (*)(Item&)>([](Item& i) { return &(i.*M); });
        return row;
    }
    template <auto M>
    static TPropRow<Item> Int(std::uint16_t index, std::string_view key, std::int64_t min, std::int64_t max) {
        TPropRow<Item> row = Value<M>(index, key);
        row.Min = min;
        row.Max = max;
        return row;
    }
    // A field that is not a direct member (a part of the font, say); key empty when another row files it.
    template <class T>
    static TPropRow<Item> Field(std::uint16_t index, std::string_view key, T* (*field)(Item&)) {
        TPropRow<Item> row;
        row.Index = index;
        row.Key = key;
        row.Field = field;
        return row;
    }
    static TPropRow<Item> Custom(std::string_view key, TCustomAccess<Item> access) {
        TPropRow<Item> row;
        row.Key = key;
        row.Field = access;
        return row;
    }
};

template <class Item>
class TPropTable {
  public:
    using TRow = TPropRow<Item>;
    explicit TPropTable(std::vector<TRow> rows) : fRows(std::move(rows)) {}

    const std::vector<TRow>& Rows() const { return fRows; }

    const TRow* Find(std::uint16_t index) const {
        if (index == 0) return nullptr;
        for (const TRow& row : fRows)
            if (row.Index == index) return &row;
        return nullptr;
    }

    // The field of type T behind a property index, or nullptr when the table has none of that type there.
    template <class T>
    T* FieldOf(Item& item, std::uint16_t index) const {
        const TRow* row = Find(index);
        if (row == nullptr) return nullptr;
        const auto* ref = std::get_if<T* (*)(Item&)>(&row->Field);
        return ref != nullptr ? (*ref)(item) : nullptr;
    }

    static std::int64_t Clamp(const TRow& row, std::int64_t value) {
        return std::clamp(value, row.Min, row.Max);
    }

    void Write(const Item& item, TJsonWriter& w) const {
        auto& self =
            const_cast<Item&>(item);  // the field accessors are shared with the setters; read only here
        for (const TRow& row : fRows) {
            if (const auto* custom = std::get_if<TCustomAccess<Item>>(&row.Field)) {
                custom->Write(item, w);
                continue;
            }
            if (row.Key.empty()) continue;
            w.Key(row.Key);
            std::visit(
                [&](const auto& field) {
                    using F = std::decay_t<decltype(field)>;
                    if constexpr (std::is_same_v<F, TEnumAccess<Item>>)
                        w.Int(field.Get(item));
                    else if constexpr (std::is_same_v<F, std::int64_t* (*)(Item&)>)
                        w.Int(*field(self));
                    else if constexpr (std::is_same_v<F, float* (*)(Item&)>)
                        w.Float(RoundTo3Decimals(static_cast<double>(*field(self))));
                    else if constexpr (std::is_same_v<F, bool* (*)(Item&)>)
                        w.Bool(*field(self));
                    else if constexpr (std::is_same_v<F, std::string* (*)(Item&)>)
                        w.String(*field(self));
                    else if constexpr (std::is_same_v<F, TAlphaColor* (*)(Item&)>)
                        w.Color(*field(self));
                },
                row.Field);
        }
    }

    // Reads every row's key as TJSONUtils reads (absent or of another type: 0, false, empty). A number
    // outside a row's bounds is clamped and reported to warn, a callable taking the message.
    template <class TWarn>
    void Read(Item& item, const TJSON& obj, TWarn&& warn) const {
        using U = TJSONUtils;
        for (const TRow& row : fRows) {
            if (!row.Read) continue;
            if (const auto* custom = std::get_if<TCustomAccess<Item>>(&row.Field)) {
                custom->Read(item, obj);
                continue;
            }
            if (row.Key.empty()) continue;
            const auto bounded = [&]() {
                const std::int64_t read = U::GetInt(obj, row.Key);
                const std::int64_t kept = Clamp(row, read);
                if (kept != read)
                    warn("\"" + std::string(row.Key) + "\" " + std::to_string(read) + " is outside " +
                         std::to_string(row.Min) + ".." + std::to_string(row.Max) + "; read as " +
                         std::to_string(kept));
                return kept;
            };
            std::visit(
                [&](const auto& field) {
                    using F = std::decay_t<decltype(field)>;
                    if constexpr (std::is_same_v<F, TEnumAccess<Item>>)
                        field.Put(item, bounded());
                    else if constexpr (std::is_same_v<F, std::int64_t* (*)(Item&)>)
                        *field(item) = bounded();
                    else if constexpr (std::is_same_v<F, float* (*)(Item&)>)
                        *field(item) = static_cast<float>(U::GetFloat(obj, row.Key));
                    else if constexpr (std::is_same_v<F, bool* (*)(Item&)>)
                        *field(item) = U::GetBool(obj, row.Key);
                    else if constexpr (std::is_same_v<F, std::string* (*)(Item&)>)
                        *field(item) = U::GetString(obj, row.Key);
                    else if constexpr (std::is_same_v<F, TAlphaColor* (*)(Item&)>)
                        *field(item) = U::GetColor(obj, row.Key);
                },
                row.Field);
        }
    }

    // The inspector's entries for the rows shown with the groups in set: {"Name": key, "Value": value}.
    void Inspect(const Item& item, TQVLInsTypes set, TJSON& array) const {
        auto& self = const_cast<Item&>(item);
        for (const TRow& row : fRows) {
            if (row.Show == TPropShow::psNever || row.Key.empty()) continue;
            if (row.Show == TPropShow::psWithGroup && !set.Contains(row.Group)) continue;
            TJSON value = std::visit(
                [&](const auto& field) -> TJSON {
                    using F = std::decay_t<decltype(field)>;
                    if constexpr (std::is_same_v<F, TEnumAccess<Item>>)
                        return field.Get(item);
                    else if constexpr (std::is_same_v<F, float* (*)(Item&)>)
                        return RoundTo3Decimals(static_cast<double>(*field(self)));
                    else if constexpr (std::is_same_v<F, TAlphaColor* (*)(Item&)>)
                        return AlphaColorToHex(*field(self));
                    else if constexpr (std::is_same_v<F, TCustomAccess<Item>>)
                        return nullptr;
                    else
                        return *field(self);
                },
                row.Field);
            if (value.is_null()) continue;
            TJSON entry = TJSON::object();
            entry["Name"] = std::string(row.Key);
            entry["Value"] = std::move(value);
            array.push_back(std::move(entry));
        }
    }

  private:
    std::vector<TRow> fRows;
};

}  // namespace Orvex
