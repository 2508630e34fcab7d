#pragma once

#include <nlohmann/json_fwd.hpp>

namespace Orvex {
using TJSON = nlohmann::ordered_json;
}
