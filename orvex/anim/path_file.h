// Path animation files: a JSON object naming the path type, easing, timing and segments, read into a
// TPathAnimator. Reading never throws; a file that is not valid comes back with one line saying why.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "orvex/anim/path_animator.h"
#include "orvex/core/result.h"

namespace Orvex {

struct TPathFile {
    TPathType PathType = TPathType::ptLine;
    TPathEasing Easing = TPathEasing::peLinear;
    double TotalTime = 0.0;
    double TimeScale = 1.0;
    bool Reverse = false;
    std::vector<TPathSegment> Segments;
};

// Codes: QVLErr::kNoFile when the file could not be read at all, kLimit when it nests too deep, kNoJson
// when it is not JSON, kInvalid when it is JSON but not a valid path. Value is empty on failure.
using TPathFileResult = TQVLResult<TPathFile>;

TPathFileResult ParsePathFile(std::string_view text);
TPathFileResult ReadPathFile(const std::string& fileName);

// Configures the animator and puts it at the start of the run. Throws the animator's std::out_of_range for
// a non-positive total time or time scale, before anything has changed.
void ApplyPathFile(const TPathFile& file, TPathAnimator& animator);

std::string_view PathTypeName(TPathType value);
std::string_view PathEasingName(TPathEasing value);

}  // namespace Orvex
