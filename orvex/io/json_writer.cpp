#include "orvex/io/json_writer.h"

#include <charconv>

#include "orvex/core/font.h"
#include "orvex/core/numeric.h"
#include "orvex/io/json.h"

namespace Orvex {

namespace {
// Text the library would write unchanged between quotes: no control characters, quotes or backslashes,
// and plain ASCII, whose UTF-8 needs no check.
bool VerbatimString(std::string_view s) {
    for (const char c : s) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 0x20 || b >= 0x80 || c == '"' || c == '\\') return false;
    }
    return true;
}
}  // namespace

void TJsonWriter::Color(TAlphaColor color) {
    BeginObject();
    Key("R");
    Int(RedOf(color));
    Key("G");
    Int(GreenOf(color));
    Key("B");
    Int(BlueOf(color));
    Key("A");
    Int(AlphaOf(color));
    EndObject();
}

void TJsonWriter::Font(const TQVLFont& font) {
    BeginObject();
    Key("Name");
    String(font.Name);
    Key("Bold");
    Bool(font.Bold);
    Key("Italic");
    Bool(font.Italic);
    Key("Underline");
    Bool(font.Underline);
    Key("Strikeout");
    Bool(font.Strikeout);
    Key("FontHeight");
    Float(RoundTo3Decimals(font.FontHeight));
    Key("FontColor");
    Color(font.FontColor);
    EndObject();
}

// [SECTION] Text

struct TJsonTextWriter::TLibrarySerializer {
    explicit TLibrarySerializer(std::string& out)
        : Writer(nlohmann::detail::output_adapter<char>(out), ' ',
                 nlohmann::detail::error_handler_t::strict) {}
    nlohmann::detail::serializer<TJSON> Writer;
};

TJsonTextWriter::TJsonTextWriter(std::string& out, int indent, int depth)
    : fOut(out),
      fLib(std::make_unique<TLibrarySerializer>(out)),
      fPretty(indent >= 0),
      fStep(indent > 0 ? static_cast<std::size_t>(indent) : 0),
      fBaseDepth(depth > 0 ? static_cast<std::size_t>(depth) : 0) {}

TJsonTextWriter::~TJsonTextWriter() = default;

void TJsonTextWriter::Indent(std::size_t levels) {
    fOut += '\n';
    fOut.append(levels * fStep, ' ');
}

void TJsonTextWriter::BeforeValue() {
    if (fAfterKey) {
        fAfterKey = false;
        return;
    }
    if (fHasMembers.empty()) return;
    if (fHasMembers.back()) fOut += ',';
    fHasMembers.back() = true;
    if (fPretty) Indent(fBaseDepth + fHasMembers.size());
}

void TJsonTextWriter::Open(char bracket) {
    BeforeValue();
    fOut += bracket;
    fHasMembers.push_back(false);
}

void TJsonTextWriter::Close(char bracket) {
    const bool members = fHasMembers.back();
    fHasMembers.pop_back();
    if (members && fPretty) Indent(fBaseDepth + fHasMembers.size());
    fOut += bracket;
}

void TJsonTextWriter::BeginObject() {
    Open('{');
}

void TJsonTextWriter::EndObject() {
    Close('}');
}

void TJsonTextWriter::BeginArray() {
    Open('[');
}

void TJsonTextWriter::EndArray() {
    Close(']');
}

void TJsonTextWriter::Key(std::string_view key) {
    BeforeValue();
    Quoted(key);
    fOut += fPretty ? ": " : ":";
    fAfterKey = true;
}

void TJsonTextWriter::Int(std::int64_t value) {
    BeforeValue();
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    fOut.append(digits, end);
}

void TJsonTextWriter::Float(double value) {
    BeforeValue();
    fLib->Writer.dump(TJSON(value), false, false, 0, 0);  // the library's shortest form, "null" if not finite
}

void TJsonTextWriter::Bool(bool value) {
    BeforeValue();
    fOut += value ? "true" : "false";
}

void TJsonTextWriter::String(std::string_view value) {
    BeforeValue();
    Quoted(value);
}

void TJsonTextWriter::Quoted(std::string_view value) {
    if (VerbatimString(value)) {
        fOut += '"';
        fOut += value;
        fOut += '"';
    } else {  // escapes and the check of UTF-8 exactly as the library does them
        fLib->Writer.dump(TJSON(std::string(value)), false, false, 0, 0);
    }
}

void TJsonTextWriter::Tree(const TJSON& value) {
    BeforeValue();
    fLib->Writer.dump(value, fPretty, false, static_cast<unsigned>(fStep),
                      static_cast<unsigned>((fBaseDepth + fHasMembers.size()) * fStep));
}

// [SECTION] Tree

TJsonTreeWriter::TJsonTreeWriter() = default;
TJsonTreeWriter::~TJsonTreeWriter() = default;

TJSON& TJsonTreeWriter::Slot() {
    if (fOpen.empty()) {
        fRoot = std::make_unique<TJSON>();
        return *fRoot;
    }
    TJSON& parent = *fOpen.back();
    return parent.is_object() ? parent[fKey] : parent.emplace_back();
}

void TJsonTreeWriter::BeginObject() {
    constexpr std::size_t kItemKeysHint = 40;  // an item's keys: written by the hundred thousand
    TJSON& slot = Slot();
    slot = TJSON::object();
    if (fOpen.empty()) slot.get_ref<TJSON::object_t&>().reserve(kItemKeysHint);
    fOpen.push_back(&slot);
}

void TJsonTreeWriter::EndObject() {
    fOpen.pop_back();
}

void TJsonTreeWriter::BeginArray() {
    TJSON& slot = Slot();
    slot = TJSON::array();
    fOpen.push_back(&slot);
}

void TJsonTreeWriter::EndArray() {
    fOpen.pop_back();
}

void TJsonTreeWriter::Key(std::string_view key) {
    fKey.assign(key);
}

void TJsonTreeWriter::Int(std::int64_t value) {
    Slot() = value;
}

void TJsonTreeWriter::Float(double value) {
    Slot() = value;
}

void TJsonTreeWriter::Bool(bool value) {
    Slot() = value;
}

void TJsonTreeWriter::String(std::string_view value) {
    Slot() = std::string(value);
}

void TJsonTreeWriter::Tree(const TJSON& value) {
    Slot() = value;
}

TJSON TJsonTreeWriter::Take() {
    return fRoot != nullptr ? std::move(*fRoot) : TJSON();
}

}  // namespace Orvex
