// The JSON tree of drawing files and protocol messages. Insertion order is part of the file format, hence
// the ordered variant. Headers that only pass trees around include json_fwd.h instead.
#pragma once

#include <nlohmann/json.hpp>

namespace Orvex {
using TJSON = nlohmann::ordered_json;
}
