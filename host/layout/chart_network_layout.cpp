// A network diagram: networks as long horizontal bars, named at their left with their address, and the
// hosts as boxes in columns, each below the first network it sits on and joined by a vertical line to
// every network it sits on, the host's address on that network written beside the line. Groups are shaded
// areas behind their hosts; direct host-to-host links are links between the boxes.
#include <algorithm>
#include <string>
#include <vector>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_network.h"

namespace Orvex {
namespace {

using TNetwork = TQVLNetworkChart::TNetwork;
using THost = TQVLNetworkChart::THost;

constexpr double kBarMM = 4.5;
constexpr double kLineGapMM = 9.0;  // between a bar and the hosts below it, room for the address
constexpr double kHostPadMM = 4.0;
constexpr double kMinHostWidthMM = 22.0;
constexpr double kMinHostHeightMM = 11.0;
constexpr double kColumnGapMM = 8.0;
constexpr double kBarOverhangMM = 4.0;
constexpr double kGroupPadMM = 3.0;
constexpr float kAddressHeight = 2.8f;
const TAlphaColor kBarFill = Qvl::Utils::AlphaColor(0xC9, 0xDA, 0xF2);
const TAlphaColor kHostFill = Qvl::Utils::AlphaColor(0xFF, 0xFF, 0xFF);
const TAlphaColor kGroupFill = Qvl::Utils::AlphaColor(0xF3, 0xE3, 0xC3);
const TAlphaColor kWire = Qvl::Utils::AlphaColor(0x44, 0x4C, 0x5E);

TQVLFlowType ShapeOf(const std::string& shape) {
    if (shape == "database" || shape == "storage") return TQVLFlowType::ftDatabase;
    if (shape == "cloud") return TQVLFlowType::ftEllipse;
    if (shape == "file") return TQVLFlowType::ftDocument;
    if (shape == "folder" || shape == "frame") return TQVLFlowType::ftPredefined;
    return TQVLFlowType::ftProcess;
}

struct THostPlace {
    std::vector<std::size_t> Networks;  // indices of the networks it sits on, in order
    int Row = -1;                       // the network it hangs below; -1 above the first
    TLayoutBox Box;
};

class TNetworkDrawer {
  public:
    TNetworkDrawer(TChartCanvas& canvas, const TQVLNetworkChart& chart) : fCanvas(canvas), fChart(chart) {}

    TLayoutSize Draw(TLayoutPoint origin) {
        Arrange(origin);
        for (const auto& group : fChart.Groups) DrawGroup(group);
        for (std::size_t n = 0; n < fChart.Networks.size(); ++n) DrawNetwork(n, origin.X);
        std::vector<TORXBaseFlow*> boxes;
        for (std::size_t h = 0; h < fChart.Hosts.size(); ++h) {
            const THost& host = fChart.Hosts[h];
            boxes.push_back(fCanvas.Box(fPlaces[h].Box, ShapeOf(host.Shape), host.Text,
                                        {.Fill = host.Color.value_or(kHostFill), .Stroke = kWire}, host.Id));
        }
        for (const auto& peer : fChart.Peers) {
            const TORXBaseFlow* from = boxes[HostIndex(peer.From)];
            const TORXBaseFlow* to = boxes[HostIndex(peer.To)];
            if (from != nullptr && to != nullptr)
                fCanvas.Link(*from, *to, {.Fill = std::nullopt, .Stroke = kWire}, false);
        }
        return {fRight - origin.X, fBottom - origin.Y};
    }

  private:
    std::size_t HostIndex(const std::string& id) const {
        for (std::size_t h = 0; h < fChart.Hosts.size(); ++h)
            if (fChart.Hosts[h].Id == id) return h;
        return 0;
    }

    // Columns left to right in order of first mention, rows top-down: the bar of each network, then the
    // hosts that hang below it.
    void Arrange(TLayoutPoint origin) {
        fPlaces.assign(fChart.Hosts.size(), {});
        for (std::size_t n = 0; n < fChart.Networks.size(); ++n)
            for (const auto& member : fChart.Networks[n].Members) {
                THostPlace& place = fPlaces[HostIndex(member.Host)];
                place.Networks.push_back(n);
                if (place.Row < 0) place.Row = static_cast<int>(n);
            }
        double labelWidth = 0;
        for (const TNetwork& network : fChart.Networks)
            labelWidth = std::max({labelWidth, fCanvas.Measure(network.Text, {.Bold = true}).Width,
                                   fCanvas.Measure(network.Address, {.Height = kAddressHeight}).Width});
        double x = origin.X + labelWidth + kColumnGapMM;
        const std::vector<int> anchors = PeerAnchors();
        for (std::size_t h = 0; h < fChart.Hosts.size(); ++h) {
            if (anchors[h] >= 0) continue;
            const TLayoutSize text = fCanvas.Measure(fChart.Hosts[h].Text);
            double width = std::max(kMinHostWidthMM, text.Width + 2 * kHostPadMM);
            for (const TNetwork& network : fChart.Networks)
                for (const auto& member : network.Members)
                    if (member.Host == fChart.Hosts[h].Id)
                        width = std::max(
                            width, 2 * fCanvas.Measure(member.Address, {.Height = kAddressHeight}).Width + 4);
            fPlaces[h].Box = {x, 0, width, std::max(kMinHostHeightMM, text.Height + 2 * kHostPadMM), true};
            x += width + kColumnGapMM;
        }
        for (std::size_t h = 0; h < fChart.Hosts.size(); ++h) {
            if (anchors[h] < 0) continue;
            const TLayoutBox& below = fPlaces[static_cast<std::size_t>(anchors[h])].Box;
            const TLayoutSize text = fCanvas.Measure(fChart.Hosts[h].Text);
            const double width = std::max(kMinHostWidthMM, text.Width + 2 * kHostPadMM);
            fPlaces[h].Box = {below.Center().X - width / 2, 0, width,
                              std::max(kMinHostHeightMM, text.Height + 2 * kHostPadMM), true};
        }
        fRight = std::max(x - kColumnGapMM + kBarOverhangMM, origin.X + labelWidth);

        double y = origin.Y;
        y = PlaceRow(-1, y);
        fBarY.clear();
        for (std::size_t n = 0; n < fChart.Networks.size(); ++n) {
            fBarY.push_back(y);
            y = PlaceRow(static_cast<int>(n), y + kBarMM + kLineGapMM);
        }
        fBottom = y;
    }

    // A host on no network that is linked to a host on one (the internet beside its router) stands above
    // that host instead of taking a column of its own: its index, or -1. One such host per anchor.
    std::vector<int> PeerAnchors() const {
        std::vector<int> anchors(fChart.Hosts.size(), -1);
        std::vector<bool> taken(fChart.Hosts.size(), false);
        for (const auto& peer : fChart.Peers)
            for (const auto& [loose, fixed] :
                 {std::pair{peer.From, peer.To}, std::pair{peer.To, peer.From}}) {
                const std::size_t l = HostIndex(loose), f = HostIndex(fixed);
                if (fPlaces[l].Row < 0 && fPlaces[f].Row == 0 && anchors[l] < 0 && !taken[f]) {
                    anchors[l] = static_cast<int>(f);
                    taken[f] = true;
                }
            }
        return anchors;
    }

    // Places the hosts of one row with their tops at y; returns where the next bar goes.
    double PlaceRow(int row, double y) {
        double height = 0;
        for (THostPlace& place : fPlaces)
            if (place.Row == row) {
                place.Box.Y = y;
                height = std::max(height, place.Box.Height);
            }
        return height > 0 ? y + height + kLineGapMM : y;
    }

    void DrawGroup(const TQVLNetworkChart::TGroup& group) {
        bool any = false;
        TLayoutBox area;
        for (const std::string& id : group.Hosts) {
            const TLayoutBox& box = fPlaces[HostIndex(id)].Box;
            if (!any) {
                area = box;
                any = true;
                continue;
            }
            const double right = std::max(area.Right(), box.Right());
            const double bottom = std::max(area.Bottom(), box.Bottom());
            area.X = std::min(area.X, box.X);
            area.Y = std::min(area.Y, box.Y);
            area.Width = right - area.X;
            area.Height = bottom - area.Y;
        }
        if (!any) return;
        const double label =
            group.Text.empty() ? 0 : fCanvas.Measure(group.Text, {.Height = kAddressHeight}).Height + 1;
        const TLayoutBox shaded{area.X - kGroupPadMM, area.Y - kGroupPadMM - label,
                                area.Width + 2 * kGroupPadMM, area.Height + 2 * kGroupPadMM + label, true};
        fCanvas.Rect(shaded,
                     {.Fill = group.Color.value_or(kGroupFill), .Stroke = group.Color.value_or(kGroupFill)},
                     2);
        fCanvas.Text({shaded.X + 1.5, shaded.Y + 0.8}, group.Text, {.Height = kAddressHeight});
    }

    void DrawNetwork(std::size_t n, double left) {
        const TNetwork& network = fChart.Networks[n];
        const double barY = fBarY[n];
        double from = fRight, to = left;
        for (const auto& member : network.Members) {
            const TLayoutBox& box = fPlaces[HostIndex(member.Host)].Box;
            from = std::min(from, box.X - kBarOverhangMM);
            to = std::max(to, box.Right() + kBarOverhangMM);
        }
        if ((network.Members.empty() || network.Full) && !fPlaces.empty()) {
            for (const THostPlace& place : fPlaces) {
                from = std::min(from, place.Box.X - kBarOverhangMM);
                to = std::max(to, place.Box.Right() + kBarOverhangMM);
            }
        }
        if (from > to) from = left;
        to = std::max(to, from + kMinHostWidthMM);
        // The wires first, so the bar and the boxes cover their ends.
        for (const auto& member : network.Members) {
            const TLayoutBox& box = fPlaces[HostIndex(member.Host)].Box;
            const double cx = box.Center().X;
            const bool below = box.Y > barY;  // the host hangs below this bar
            const double y0 = below ? barY + kBarMM : box.Bottom();
            const double y1 = below ? box.Y : barY;
            fCanvas.Line({cx, y0}, {cx, y1}, {.Fill = std::nullopt, .Stroke = kWire, .PenMM = 0.35f});
            fCanvas.Text(
                {cx + 1, below ? y0 + 0.8 : y1 - 0.8}, member.Address,
                {.Height = kAddressHeight, .Vertical = below ? TChartAlign::caStart : TChartAlign::caEnd});
        }
        fCanvas.Rect({from, barY, to - from, kBarMM, true},
                     {.Fill = network.Color.value_or(kBarFill), .Stroke = kWire});
        const double labelRight = from - 2;
        fCanvas.Text({labelRight, barY + kBarMM / 2}, network.Text,
                     {.Bold = true, .Horizontal = TChartAlign::caEnd, .Vertical = TChartAlign::caEnd});
        fCanvas.Text({labelRight, barY + kBarMM / 2 + 0.5}, network.Address,
                     {.Height = kAddressHeight, .Horizontal = TChartAlign::caEnd});
    }

    TChartCanvas& fCanvas;
    const TQVLNetworkChart& fChart;
    std::vector<THostPlace> fPlaces;
    std::vector<double> fBarY;
    double fRight = 0;
    double fBottom = 0;
};

}  // namespace

TLayoutSize DrawNetworkChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    return TNetworkDrawer(aCanvas, static_cast<const TQVLNetworkChart&>(aChart)).Draw(aOrigin);
}

}  // namespace Orvex
