// Stand-in for the message catalogue until it lands: only the texts the document needs.
#include "orvex/messages/messages.h"

namespace Orvex {

std::string TORXMsg::GetPropValue(std::string_view name) {
    return name == "Default" ? "Default" : "not found";
}

std::string TORXMsg::GetInfoValue(std::string_view name) {
    return name == "NewLayer" ? "New Layer" : "not found";
}

void TORXMsg::LoadResources(const std::string& fileName) {
    (void)fileName;
}

}  // namespace Orvex
