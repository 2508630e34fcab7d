#include "orvex/messages/messages.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "orvex/core/safe_file.h"
#include "orvex/core/text.h"
#include "orvex/messages/builtin_messages.h"
#include "orvex/messages/ini_text.h"

namespace Orvex {
namespace {

constexpr std::string_view kNotFound = "not found";
constexpr std::size_t kPrefixLength = 3;

struct TGroup {
    std::string_view Prefix;
    std::string_view Section;
};

// Sections are read in this order; a name repeated in two of them cannot clash, the prefixes differ.
constexpr std::array<TGroup, 8> kGroups{{{"err", "Error"},
                                         {"inf", "Info"},
                                         {"cmd", "Commands"},
                                         {"pro", "Properties"},
                                         {"dia", "Dialogs"},
                                         {"edi", "Editor"},
                                         {"act", "Actions"},
                                         {"lis", "List"}}};

const TGroup* GroupOfKey(std::string_view key) {
    for (const auto& group : kGroups)
        if (key.substr(0, kPrefixLength) == group.Prefix) return &group;
    return nullptr;
}

// Entries keep their order of arrival because a saved language file lists them in that order.
class TCatalogue {
  public:
    void LoadBuiltins() {
        fEntries.clear();
        fIndex.clear();
        for (const auto& message : BuiltinMessages())
            Set(std::string(message.Key), std::string(message.Text));
    }

    void Set(std::string key, std::string text) {
        const auto [it, added] = fIndex.try_emplace(key, fEntries.size());
        if (added)
            fEntries.emplace_back(std::move(key), std::move(text));
        else
            fEntries[it->second].second = std::move(text);
    }

    const std::string* Find(const std::string& key) const {
        const auto it = fIndex.find(key);
        return it == fIndex.end() ? nullptr : &fEntries[it->second].second;
    }

    const std::vector<std::pair<std::string, std::string>>& Entries() const { return fEntries; }

  private:
    std::vector<std::pair<std::string, std::string>> fEntries;
    std::unordered_map<std::string, std::size_t> fIndex;  // key -> position in fEntries
};

// Filled on first use, so a static constructor elsewhere that asks for a text still finds the built-ins.
TCatalogue& Catalogue() {
    static TCatalogue catalogue = [] {
        TCatalogue filled;
        filled.LoadBuiltins();
        return filled;
    }();
    return catalogue;
}

std::string Lookup(std::string_view prefix, std::string_view name) {
    std::string key;
    key.reserve(prefix.size() + name.size());
    key.append(prefix).append(name);
    const auto* text = Catalogue().Find(key);
    return text ? *text : std::string(kNotFound);
}

bool ReadFile(const std::string& fileName, std::string& bytes) {
    std::error_code error;
    if (fileName.empty() || !std::filesystem::is_regular_file(fileName, error)) return false;
    std::ifstream in(fileName, std::ios::binary);
    if (!in) return false;
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}

}  // namespace

std::string TORXMsg::GetErrorValue(std::string_view name) {
    return Lookup("err", name);
}
std::string TORXMsg::GetInfoValue(std::string_view name) {
    return Lookup("inf", name);
}
std::string TORXMsg::GetListValue(std::string_view name) {
    return Lookup("lis", name);
}
std::string TORXMsg::GetPropValue(std::string_view name) {
    return Lookup("pro", name);
}
std::string TORXMsg::GetActionsValue(std::string_view name) {
    return Lookup("act", name);
}
std::string TORXMsg::GetCommandValue(std::string_view name) {
    return Lookup("cmd", name);
}
std::string TORXMsg::GetDialogsValue(std::string_view name) {
    return Lookup("dia", name);
}
std::string TORXMsg::GetEditorValue(std::string_view name) {
    return Lookup("edi", name);
}

void TORXMsg::LoadResources(const std::string& fileName) {
    auto& catalogue = Catalogue();
    catalogue.LoadBuiltins();
    std::string bytes;
    if (!ReadFile(fileName, bytes)) return;
    // Files saved by older editors may not be UTF-8; DecodeTextFile also drops a byte-order mark.
    const auto sections = ParseIniText(Qvl::Utils::DecodeTextFile(bytes));
    for (const auto& group : kGroups)
        for (const auto& section : sections) {
            if (!Qvl::Utils::SameTextIgnoringCase(section.Name, group.Section)) continue;
            for (const auto& entry : section.Entries)
                catalogue.Set(std::string(group.Prefix) + entry.Name, entry.Value);
        }
}

bool TORXMsg::SaveToIniFile(const std::string& fileName) {
    const auto& entries = Catalogue().Entries();
    // Groups in order of their first entry, each group's entries in stored order.
    std::vector<const TGroup*> order;
    for (const auto& [key, text] : entries) {
        const auto* group = GroupOfKey(key);
        if (!group || !IniEntryReadsBack(std::string_view(key).substr(kPrefixLength), text)) return false;
        if (std::find(order.begin(), order.end(), group) == order.end()) order.push_back(group);
    }
    std::ostringstream out;
    out << "[language]\nname=english\n";
    for (const auto* group : order) {
        out << '\n' << '[' << group->Section << "]\n";
        for (const auto& [key, text] : entries)
            if (GroupOfKey(key) == group)
                out << std::string_view(key).substr(kPrefixLength) << '=' << text << '\n';
    }
    return static_cast<bool>(WriteFileAtomic(fileName, out.str()));
}

std::vector<TORXMsgGroup> TORXMsg::GetGroups() {
    std::vector<TORXMsgGroup> groups;
    for (const auto& group : kGroups) groups.push_back({group.Prefix, group.Section, 0});
    for (const auto& entry : Catalogue().Entries())
        if (const auto* group = GroupOfKey(entry.first))
            ++groups[static_cast<std::size_t>(group - kGroups.data())].Count;
    return groups;
}

}  // namespace Orvex
