// Quarter-turn rotations and the text alignments.
#pragma once

#include <cstdint>

namespace Qvl::Types {

enum class TQVLAngle : std::uint8_t { ag0, ag90, ag180, ag270 };
enum class TQVLHorzAlign : std::uint8_t { haLeft, haCenter, haRight, haJustify };
enum class TQVLVertAlign : std::uint8_t { vaTop, vaCenter, vaBottom };

}  // namespace Qvl::Types

namespace Qvl::Utils {

// Rotation is clockwise on screen, hence the negative values; anything unknown gives 0.
constexpr float DegAngle(Qvl::Types::TQVLAngle a) {
    switch (a) {
        case Qvl::Types::TQVLAngle::ag0:
            return 0.0f;
        case Qvl::Types::TQVLAngle::ag90:
            return -90.0f;
        case Qvl::Types::TQVLAngle::ag180:
            return -180.0f;
        case Qvl::Types::TQVLAngle::ag270:
            return -270.0f;
    }
    return 0.0f;
}

constexpr float PrintAngle(Qvl::Types::TQVLAngle a) {  // radians, single precision
    switch (a) {
        case Qvl::Types::TQVLAngle::ag0:
            return 0.0f;
        case Qvl::Types::TQVLAngle::ag90:
            return -1.5707964f;
        case Qvl::Types::TQVLAngle::ag180:
            return -3.1415927f;
        case Qvl::Types::TQVLAngle::ag270:
            return -4.712389f;
    }
    return 0.0f;
}

}  // namespace Qvl::Utils
