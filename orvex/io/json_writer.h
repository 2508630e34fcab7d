// TJsonWriter: JSON written value by value, either straight into text (TJsonTextWriter, the exact bytes
// the JSON library's dump gives for the same tree) or into a tree (TJsonTreeWriter). Item kinds describe
// their keys once and both forms follow: a large drawing's items are written to text without building a
// tree per item, whose allocations cost more than the writing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/io/json_fwd.h"

namespace Orvex {

struct TQVLFont;

class TJsonWriter {
  public:
    virtual ~TJsonWriter() = default;
    virtual void BeginObject() = 0;
    virtual void EndObject() = 0;
    virtual void BeginArray() = 0;
    virtual void EndArray() = 0;
    virtual void Key(std::string_view key) = 0;  // inside an object, before each value
    virtual void Int(std::int64_t value) = 0;
    virtual void Float(double value) = 0;
    virtual void Bool(bool value) = 0;
    virtual void String(std::string_view value) = 0;
    virtual void Tree(const TJSON& value) = 0;  // a value that exists as a tree already

    // The drawing file's composite values, in the key order the readers of TJSONUtils expect.
    void Color(TAlphaColor color);  // "R", "G", "B", "A"
    void Font(const TQVLFont& font);
};

// Appends to a text. indent < 0 writes compact text; otherwise each nested level is indented by indent
// spaces more than depth levels already are, as a value nested depth deep in a larger dump would be.
class TJsonTextWriter final : public TJsonWriter {
  public:
    TJsonTextWriter(std::string& out, int indent, int depth = 0);
    ~TJsonTextWriter() override;
    TJsonTextWriter(const TJsonTextWriter&) = delete;
    TJsonTextWriter& operator=(const TJsonTextWriter&) = delete;

    void BeginObject() override;
    void EndObject() override;
    void BeginArray() override;
    void EndArray() override;
    void Key(std::string_view key) override;
    void Int(std::int64_t value) override;
    void Float(double value) override;
    void Bool(bool value) override;
    void String(std::string_view value) override;
    void Tree(const TJSON& value) override;

  private:
    void BeforeValue();  // the separator and indentation an array element or a first key needs
    void Open(char bracket);
    void Close(char bracket);
    void Indent(std::size_t levels);
    void Quoted(std::string_view text);  // a string or key between quotes, escaped as the library escapes

    struct TLibrarySerializer;  // the JSON library's own writer, for numbers and unusual strings
    std::string& fOut;
    std::unique_ptr<TLibrarySerializer> fLib;
    bool fPretty;
    std::size_t fStep;
    std::size_t fBaseDepth;
    std::vector<bool> fHasMembers;  // per open container: something written in it yet
    bool fAfterKey = false;
};

// Builds a tree; Take hands it over once the outermost value is complete.
class TJsonTreeWriter final : public TJsonWriter {
  public:
    TJsonTreeWriter();
    ~TJsonTreeWriter() override;
    TJsonTreeWriter(const TJsonTreeWriter&) = delete;
    TJsonTreeWriter& operator=(const TJsonTreeWriter&) = delete;

    void BeginObject() override;
    void EndObject() override;
    void BeginArray() override;
    void EndArray() override;
    void Key(std::string_view key) override;
    void Int(std::int64_t value) override;
    void Float(double value) override;
    void Bool(bool value) override;
    void String(std::string_view value) override;
    void Tree(const TJSON& value) override;
    TJSON Take();

  private:
    TJSON& Slot();  // where the next value goes
    std::unique_ptr<TJSON> fRoot;
    std::vector<TJSON*> fOpen;
    std::string fKey;
};

}  // namespace Orvex
