// TJSONUtils: the helpers every writer and reader of drawing objects shares. Readers are tolerant: a key
// that is absent or of another type reads as 0, empty text, false or an empty object or array.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/io/json_fwd.h"

namespace Orvex {

struct TQVLFont;

class TJSONUtils {
  public:
    TJSONUtils() = delete;

    // Colour objects: integer "R", "G", "B", "A" in that order. A missing component reads as 0, alpha
    // included, so a colour without "A" is fully transparent.
    static TJSON SetAlphaColor(TAlphaColor color);
    static TAlphaColor GetAlphaColor(const TJSON& obj);

    static std::int64_t GetInt(const TJSON& obj, std::string_view key);  // numbers truncate toward zero
    static double GetFloat(const TJSON& obj, std::string_view key);
    static bool GetBool(const TJSON& obj, std::string_view key);
    static std::string GetString(const TJSON& obj, std::string_view key);
    static const TJSON& GetObject(const TJSON& obj,
                                  std::string_view key);  // a shared empty object when absent
    static const TJSON& GetArray(const TJSON& obj, std::string_view key);  // a shared empty array when absent
    static TAlphaColor GetColor(const TJSON& obj, std::string_view key);   // the colour object under key

    static double Round(double value);  // 3 decimals: every number a drawing file holds
    // Base units as a rounded number of millimetres (or of unit), and back with half to even.
    static double BaseToMM(std::int64_t value);
    static std::int64_t MMToBase(double mm);
    static double BaseToUnit(std::int64_t value, TQVLUnits unit);
    static std::int64_t UnitToBase(double value, TQVLUnits unit);

    static TJSON SetStrings(const std::vector<std::string>& list);
    static std::vector<std::string> GetStrings(const TJSON& obj,
                                               std::string_view key);  // non-strings skipped

    static TJSON SetFont(const TQVLFont& font);
    static TQVLFont GetFont(const TJSON& obj);
};

}  // namespace Orvex
