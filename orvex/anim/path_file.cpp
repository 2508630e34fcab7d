#include "orvex/anim/path_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <optional>
#include <sstream>
#include <system_error>

#include "orvex/core/text.h"
#include "orvex/io/json_text.h"

namespace Orvex {
namespace {

constexpr std::array<std::string_view, 6> kPathTypeNames = {"ptLine",    "ptPolyline", "ptCircle",
                                                            "ptEllipse", "ptArc",      "ptBezier"};
constexpr std::array<std::string_view, 5> kEasingNames = {"peLinear", "peEaseIn", "peEaseOut", "peEaseInOut",
                                                          "peSmoothStep"};

template <typename E, std::size_t N>
std::optional<E> EnumByName(const std::array<std::string_view, N>& names, std::string_view name) {
    for (std::size_t i = 0; i < N; ++i)
        if (names[i] == name) return static_cast<E>(i);
    return std::nullopt;
}

// Walks the tree and keeps the first complaint; every reader returns false once there is one.
class TReader {
  public:
    std::string Error;

    bool Fail(std::string message) {
        if (Error.empty()) Error = std::move(message);
        return false;
    }

    bool OnlyKeys(const TJSON& object, std::string_view where, std::initializer_list<std::string_view> keys) {
        for (const auto& item : object.items()) {
            if (std::find(keys.begin(), keys.end(), item.key()) == keys.end())
                return Fail(fmt::format("unknown key \"{}\" in {}", item.key(), where));
        }
        return true;
    }

    bool Number(const TJSON& object, const char* key, std::string_view where, double& out) {
        const auto it = object.find(key);
        if (it == object.end()) return true;
        if (!it->is_number()) return Fail(fmt::format("{}{} must be a number", where, key));
        out = it->get<double>();
        return true;
    }

    bool Point(const TJSON& object, const char* key, std::string_view where, TPoint2D& out) {
        const auto it = object.find(key);
        if (it == object.end()) return true;
        if (!it->is_array() || it->size() != 2 || !(*it)[0].is_number() || !(*it)[1].is_number())
            return Fail(fmt::format("{}{} must be an array of two numbers [x, y]", where, key));
        out = {(*it)[0].get<double>(), (*it)[1].get<double>()};
        return true;
    }

    template <typename E, std::size_t N>
    bool Name(const TJSON& object, const char* key, const std::array<std::string_view, N>& names,
              const char* what, E& out) {
        const auto it = object.find(key);
        if (it == object.end()) return true;
        if (!it->is_string()) return Fail(fmt::format("{} must be a string", key));
        const auto& text = it->get_ref<const std::string&>();
        const auto value = EnumByName<E>(names, text);
        if (!value) return Fail(fmt::format("unknown {} \"{}\"", what, text));
        out = *value;
        return true;
    }

    bool Segment(const TJSON& node, std::size_t index, TPathSegment& out) {
        const std::string where = fmt::format("segments[{}].", index);
        if (!node.is_object()) return Fail(fmt::format("segments[{}] must be an object", index));
        if (!OnlyKeys(node, fmt::format("segments[{}]", index),
                      {"start", "end", "control1", "control2", "radius", "radiusY", "startAngle", "endAngle",
                       "speedFactor"}))
            return false;
        out = TPathSegment{};
        out.SpeedFactor = 1.0;
        return Point(node, "start", where, out.StartPoint) && Point(node, "end", where, out.EndPoint) &&
               Point(node, "control1", where, out.ControlPoint1) &&
               Point(node, "control2", where, out.ControlPoint2) &&
               Number(node, "radius", where, out.Radius) && Number(node, "radiusY", where, out.RadiusY) &&
               Number(node, "startAngle", where, out.StartAngle) &&
               Number(node, "endAngle", where, out.EndAngle) &&
               Number(node, "speedFactor", where, out.SpeedFactor);
    }

    bool File(const TJSON& root, TPathFile& out) {
        if (!root.is_object()) return Fail("the path file must hold a JSON object");
        if (!OnlyKeys(root, "the path file",
                      {"type", "easing", "totalTime", "timeScale", "reverse", "segments"}))
            return false;
        for (const char* key : {"type", "totalTime", "segments"})
            if (!root.contains(key)) return Fail(fmt::format("missing key \"{}\"", key));
        if (!Name(root, "type", kPathTypeNames, "path type", out.PathType) ||
            !Name(root, "easing", kEasingNames, "easing", out.Easing) ||
            !Number(root, "totalTime", "", out.TotalTime) || !Number(root, "timeScale", "", out.TimeScale))
            return false;
        if (const auto it = root.find("reverse"); it != root.end()) {
            if (!it->is_boolean()) return Fail("reverse must be true or false");
            out.Reverse = it->get<bool>();
        }
        const TJSON& segments = root["segments"];
        if (!segments.is_array() || segments.empty())
            return Fail("segments must be an array of at least one segment");
        out.Segments.resize(segments.size());
        for (std::size_t i = 0; i < segments.size(); ++i)
            if (!Segment(segments[i], i, out.Segments[i])) return false;
        return true;
    }
};

}  // namespace

std::string_view PathTypeName(TPathType value) {
    return kPathTypeNames.at(static_cast<std::size_t>(value));
}

std::string_view PathEasingName(TPathEasing value) {
    return kEasingNames.at(static_cast<std::size_t>(value));
}

TPathFileResult ParsePathFile(std::string_view text) {
    TJSON root;
    // Only the depth is checked ahead: the library's own message says where a syntax error is.
    if (!JsonTextNestingWithin(text, kJSONMaxDepth)) {
        return TPathFileResult::Failure(
            QVLErr::kLimit,
            fmt::format("the path file is not read: nested deeper than {} levels", kJSONMaxDepth));
    }
    try {
        root = TJSON::parse(text);
    } catch (const TJSON::parse_error& e) {
        // The library's message carries the line and column; its bracketed error id is of no use to a reader.
        std::string_view detail = e.what();
        if (const auto close = detail.find("] "); close != std::string_view::npos)
            detail.remove_prefix(close + 2);
        return TPathFileResult::Failure(QVLErr::kNoJson,
                                        fmt::format("the path file is not valid JSON: {}", detail));
    }
    TReader reader;
    TPathFile file;
    if (!reader.File(root, file)) return TPathFileResult::Failure(QVLErr::kInvalid, std::move(reader.Error));
    return TPathFileResult::Success(std::move(file));
}

TPathFileResult ReadPathFile(const std::string& fileName) {
    std::error_code ec;
    if (std::filesystem::is_directory(fileName, ec)) {
        return TPathFileResult::Failure(QVLErr::kNoFile,
                                        fmt::format("cannot read {}: it is a directory", fileName));
    }
    std::ifstream stream(fileName, std::ios::binary);
    if (!stream) {
        return TPathFileResult::Failure(QVLErr::kNoFile,
                                        fmt::format("cannot open {}: {}", fileName, std::strerror(errno)));
    }
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    if (stream.bad()) {
        return TPathFileResult::Failure(QVLErr::kNoFile, fmt::format("cannot read {}", fileName));
    }
    return ParsePathFile(Qvl::Utils::DecodeTextFile(bytes.str()));
}

void ApplyPathFile(const TPathFile& file, TPathAnimator& animator) {
    animator.SetTiming(file.TotalTime, file.TimeScale);  // first: it is the only step that can refuse
    animator.SetPath(file.PathType, file.Segments);
    animator.SetEasing(file.Easing);
    animator.SetReverse(file.Reverse);
    animator.Reset();
}

}  // namespace Orvex
