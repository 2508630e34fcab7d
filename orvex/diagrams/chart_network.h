// Network diagram data: networks with their address and the hosts on them (each with its address on that
// network), the hosts' own look, groups of hosts and direct links between hosts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvex/core/color.h"
#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLNetworkChart final : TQVLChart {
    struct TMember {
        std::string Host;
        std::string Address;
    };
    struct TNetwork {
        std::string Id;  // the name written after "network"; generated for an unnamed one
        std::string Text;
        std::string Address;
        std::optional<Qvl::Types::TAlphaColor> Color;
        bool Full = false;             // "width = full": the bar spans every host column
        std::vector<TMember> Members;  // in source order
    };
    struct THost {
        std::string Id;
        std::string Text;   // the description, else the id
        std::string Shape;  // as written ("database", "cloud", ...); empty for a plain box
        std::optional<Qvl::Types::TAlphaColor> Color;
    };
    struct TGroup {
        std::string Text;
        std::optional<Qvl::Types::TAlphaColor> Color;
        std::vector<std::string> Hosts;
    };
    struct TPeer {
        std::string From;
        std::string To;
    };
    std::vector<TNetwork> Networks;
    std::vector<THost> Hosts;  // in order of first mention
    std::vector<TGroup> Groups;
    std::vector<TPeer> Peers;

    std::string_view Type() const override { return "nwdiag"; }
    // "networks": [{"id", "text", "address", "full", "hosts": [{"id", "address"}]}], "hosts": [{"id", "text",
    // "shape"}], "groups": [{"text", "hosts"}], "peers": [{"from", "to"}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
