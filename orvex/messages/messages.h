// TORXMsg: the process-wide catalogue of user-visible texts, looked up by group and name. Built-in English
// texts are always present; a language file (INI, UTF-8) overrides them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Orvex {

// One group of the catalogue: the prefix of its keys, its section in a language file, its entries now.
struct TORXMsgGroup {
    std::string_view Prefix;
    std::string_view Section;
    std::size_t Count;
};

class TORXMsg {
  public:
    TORXMsg() = delete;

    // Each lookup forms the key from its group prefix ("err", "inf", ...) and name; an unknown key gives
    // "not found".
    static std::string GetErrorValue(std::string_view name);
    static std::string GetInfoValue(std::string_view name);
    static std::string GetListValue(std::string_view name);
    static std::string GetPropValue(std::string_view name);
    static std::string GetActionsValue(std::string_view name);
    static std::string GetCommandValue(std::string_view name);
    static std::string GetDialogsValue(std::string_view name);
    static std::string GetEditorValue(std::string_view name);

    // Refills the catalogue with the built-in texts, then overrides them from the file when it exists.
    // Not safe while other threads look texts up.
    static void LoadResources(const std::string& fileName);
    // Writes the whole catalogue as a language file; false when the file cannot be written.
    // Texts are written as name=value lines, so an entry that would not read back (a line break in its
    // text) is refused: false, and the file is not touched.
    static bool SaveToIniFile(const std::string& fileName);

    static std::vector<TORXMsgGroup> GetGroups();  // all eight, in the order a language file is read
};

}  // namespace Orvex
