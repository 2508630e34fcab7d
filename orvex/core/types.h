// The shared records and helpers in one include, and their names brought into namespace Orvex so that the
// engine's own code reads as the system is described (TQVLPto, QVRound, ...).
#pragma once

#include "orvex/core/angle.h"
#include "orvex/core/color.h"
#include "orvex/core/numeric.h"
#include "orvex/core/paper.h"
#include "orvex/core/point.h"
#include "orvex/core/rect.h"
#include "orvex/core/set.h"
#include "orvex/core/units.h"

namespace Orvex {
using namespace Qvl::Types;  // NOLINT(google-build-using-namespace): the shared vocabulary of every module
using namespace Qvl::Utils;  // NOLINT(google-build-using-namespace)
}  // namespace Orvex
