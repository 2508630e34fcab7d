// The built-in English texts, in the order the catalogue stores them and a saved language file lists them.
#pragma once

#include <span>
#include <string_view>

namespace Orvex {

struct TBuiltinMessage {
    std::string_view Key;  // group prefix + name
    std::string_view Text;
};

std::span<const TBuiltinMessage> BuiltinMessages();  // all 420, grouped: err, inf, pro, lis, dia, edi, act

}  // namespace Orvex
