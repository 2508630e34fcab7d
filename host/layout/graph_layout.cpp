// The layered layout through Graphviz's dot: node boxes are fixed to the sizes the captions need, the
// edges carry their labels so that ranks leave room for them, and the routes come back in millimetres.
#include "host/layout/graph_layout.h"

#include <graphviz/gvc.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "host/layout/dot_result.h"
#include "host/layout/graphviz_settings.h"
#include "host/layout/isolated_run.h"
#include "host/layout/layered_layout.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

constexpr double kPointsPerInch = 72.0;
constexpr double kMMPerInch = 25.4;
constexpr double kMMPerPoint = kMMPerInch / kPointsPerInch;
constexpr const char* kLabelFontSize = "9";  // pt; what the link text is drawn with

char* Mutable(const char* s) {
    return const_cast<char*>(s);  // the C interface takes char* but never writes through it
}

std::string Inches(double mm) {
    return std::to_string(mm / kMMPerInch);
}

// Graphviz reads labels as escape strings: backslashes must be doubled, line breaks become "\n".
std::string EscapeLabel(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\\') {
            out += "\\\\";
        } else if (c == '\r') {
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
            out += "\\n";
        } else if (c == '\n') {
            out += "\\n";
        } else {
            out += c;
        }
    }
    return out;
}

// One Graphviz context for the whole process, never freed. Graphviz's Pango text plugin keeps a pointer
// to the last font name it measured, and that name belongs to the context: freeing a context and making
// another left the pointer dangling for the next layout's labels. One context also reads the plugin
// configuration only once.
GVC_t* GraphvizContext() {
    static GVC_t* const context = gvContext();
    return context;
}

// Frees the layout too, whether or not one was made: gvFreeLayout does nothing to a graph without one.
struct TGraphDeleter {
    void operator()(Agraph_t* g) const {
        gvFreeLayout(GraphvizContext(), g);
        agclose(g);
    }
};

double SquaredDistance(TLayoutPoint a, TLayoutPoint b) {
    return (a.X - b.X) * (a.X - b.X) + (a.Y - b.Y) * (a.Y - b.Y);
}

// Consecutive points that coincide add nothing to a broken line and would give a link zero-length legs.
void DropRepeats(std::vector<TLayoutPoint>& points) {
    constexpr double kSame = 1e-3;
    std::vector<TLayoutPoint> kept;
    for (const TLayoutPoint p : points)
        if (kept.empty() || SquaredDistance(kept.back(), p) > kSame * kSame) kept.push_back(p);
    points.swap(kept);
}

// Graphviz rounds positions and sizes to its own units, so a box may stand a hair outside the bounding
// box it reports: the extent is taken from what was placed instead.
void FitToMargin(TGraphLayout& layout, double margin) {
    double minX = std::numeric_limits<double>::max();
    double minY = minX;
    double maxX = std::numeric_limits<double>::lowest();
    double maxY = maxX;
    auto take = [&](double x0, double y0, double x1, double y1) {
        minX = std::min(minX, x0);
        minY = std::min(minY, y0);
        maxX = std::max(maxX, x1);
        maxY = std::max(maxY, y1);
    };
    for (const TLayoutBox& b : layout.Boxes) take(b.X, b.Y, b.Right(), b.Bottom());
    for (const TLayoutRoute& r : layout.Routes)
        for (const TLayoutPoint p : r.Points) take(p.X, p.Y, p.X, p.Y);
    const double dx = margin - minX;
    const double dy = margin - minY;
    for (TLayoutBox& b : layout.Boxes) {
        b.X += dx;
        b.Y += dy;
    }
    for (TLayoutRoute& r : layout.Routes)
        for (TLayoutPoint& p : r.Points) {
            p.X += dx;
            p.Y += dy;
        }
    layout.Extent = {maxX - minX + 2 * margin, maxY - minY + 2 * margin};
}

// dot on the built graph, in this process or, when the settings ask, in a child process under the time
// budget; nothing when dot failed or overran.
std::optional<TDotResult> RunDot(Agraph_t* g, const std::vector<Agnode_t*>& nodes,
                                 const std::vector<Agedge_t*>& edges, const TGraphvizSettings& settings) {
    auto layOut = [&]() -> std::optional<TDotResult> {
        if (gvLayout(GraphvizContext(), g, "dot") != 0) return std::nullopt;
        return CollectDotResult(g, nodes, edges);
    };
    if (!settings.Isolated) return layOut();
    TIsolatedLimits limits;
    limits.Seconds = settings.BudgetSeconds;
    const std::optional<std::string> bytes = RunIsolated(
        [&]() -> std::string {
            const std::optional<TDotResult> result = layOut();
            if (!result) throw std::runtime_error("dot failed");
            return EncodeDotResult(*result);
        },
        limits);
    if (!bytes) return std::nullopt;
    std::optional<TDotResult> result = DecodeDotResult(*bytes);
    if (result && (result->Nodes.size() != nodes.size() || result->Edges.size() != edges.size()))
        return std::nullopt;
    return result;
}

}  // namespace

TGraphLayout LayoutGraph(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                         const TGraphLayoutOptions& aOptions) {
    TGraphLayout result;
    const auto& nodes = aModel.Nodes();
    result.Boxes.resize(nodes.size());
    if (nodes.empty()) return result;
    const TGraphvizSettings settings = ChooseGraphviz(MeasureGraph(aModel), aOptions);
    if (settings.Engine == TGraphEngine::geLayered) return LayoutLayered(aModel, aSizes, aOptions);

    std::unique_ptr<Agraph_t, TGraphDeleter> graph(agopen(Mutable("diagram"), Agdirected, nullptr));
    Agraph_t* g = graph.get();
    const bool straight = settings.StraightEdges;

    agattr(g, AGRAPH, Mutable("rankdir"),
           Mutable(aModel.Direction() == TQVLFlowDirection::fdLeftRight ? "LR" : "TB"));
    std::string nodeSep = Inches(aOptions.NodeSep);
    std::string rankSep = Inches(aOptions.RankSep);
    agattr(g, AGRAPH, Mutable("nodesep"), nodeSep.data());
    agattr(g, AGRAPH, Mutable("ranksep"), rankSep.data());
    ApplyGraphvizSettings(g, settings);
    Agsym_t* shape = agattr(g, AGNODE, Mutable("shape"), Mutable("box"));
    Agsym_t* fixed = agattr(g, AGNODE, Mutable("fixedsize"), Mutable("true"));
    Agsym_t* width = agattr(g, AGNODE, Mutable("width"), Mutable("1"));
    Agsym_t* height = agattr(g, AGNODE, Mutable("height"), Mutable("0.5"));
    agattr(g, AGNODE, Mutable("label"), Mutable(""));
    agattr(g, AGEDGE, Mutable("dir"), Mutable("none"));  // routes must reach the outlines, not arrow bases
    agattr(g, AGEDGE, Mutable("fontsize"), Mutable(kLabelFontSize));
    Agsym_t* label = agattr(g, AGEDGE, Mutable("label"), Mutable(""));
    (void)shape;
    (void)fixed;

    std::vector<Agnode_t*> gvNodes(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        std::string name = "n" + std::to_string(i);
        Agnode_t* n = agnode(g, name.data(), 1);
        const TLayoutSize size = i < aSizes.size() ? aSizes[i] : TLayoutSize{20, 10};
        std::string w = Inches(size.Width);
        std::string h = Inches(size.Height);
        agxset(n, width, w.data());
        agxset(n, height, h.data());
        gvNodes[i] = n;
    }

    struct TPending {
        int Edge;
        int From;
        int To;
        Agedge_t* GvEdge;
    };
    std::vector<TPending> pending;
    const auto& edges = aModel.Edges();
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const int from = aModel.NodeIndexOf(edges[e].FromID);
        const int to = aModel.NodeIndexOf(edges[e].ToID);
        if (from < 0 || to < 0) continue;
        Agedge_t* ge = agedge(g, gvNodes[static_cast<std::size_t>(from)],
                              gvNodes[static_cast<std::size_t>(to)], nullptr, 1);
        if (!edges[e].Text.empty() && !straight) {
            std::string text = EscapeLabel(edges[e].Text);
            agxset(ge, label, text.data());
        }
        pending.push_back({static_cast<int>(e), from, to, ge});
    }

    std::vector<Agedge_t*> gvEdges;
    gvEdges.reserve(pending.size());
    for (const TPending& p : pending) gvEdges.push_back(p.GvEdge);
    const std::optional<TDotResult> dot = RunDot(g, gvNodes, gvEdges, settings);
    // dot failed or overran its budget: the plain layout never does either.
    if (!dot) return LayoutLayered(aModel, aSizes, aOptions);

    const boxf bb = dot->BoundingBox;
    auto toMM = [&](pointf p) {
        return TLayoutPoint{(p.x - bb.LL.x) * kMMPerPoint + aOptions.Margin,
                            (bb.UR.y - p.y) * kMMPerPoint + aOptions.Margin};
    };
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const TLayoutPoint c = toMM(dot->Nodes[i]);
        const TLayoutSize size = i < aSizes.size() ? aSizes[i] : TLayoutSize{20, 10};
        result.Boxes[i] = {c.X - size.Width / 2, c.Y - size.Height / 2, size.Width, size.Height, true};
    }

    for (std::size_t k = 0; k < pending.size(); ++k) {
        const TPending& p = pending[k];
        TLayoutRoute route;
        route.Edge = p.Edge;
        route.From = p.From;
        route.To = p.To;
        const TLayoutBox& fromBox = result.Boxes[static_cast<std::size_t>(p.From)];
        const TLayoutBox& toBox = result.Boxes[static_cast<std::size_t>(p.To)];
        const std::vector<pointf>& bz = dot->Edges[k];
        if (bz.size() >= 2) {
            // On-curve points of the Bézier chain: with polyline routing they are the bends.
            for (std::size_t j = 0; j < bz.size(); j += 3) route.Points.push_back(toMM(bz[j]));
            if ((bz.size() - 1) % 3 != 0) route.Points.push_back(toMM(bz.back()));
            // Edges that dot turned round to keep ranks acyclic may come back from head to tail.
            if (p.From != p.To && SquaredDistance(route.Points.front(), fromBox.Center()) >
                                      SquaredDistance(route.Points.front(), toBox.Center()))
                std::reverse(route.Points.begin(), route.Points.end());
        }
        if (route.Points.size() < 2)
            route.Points = {ClipToBox(fromBox, toBox.Center()), ClipToBox(toBox, fromBox.Center())};
        DropRepeats(route.Points);
        route.Kind = route.Points.size() > 2 ? TRouteKind::rkPolyline : TRouteKind::rkStraight;
        result.Routes.push_back(std::move(route));
    }
    FitToMargin(result, aOptions.Margin);
    return result;
}

}  // namespace Orvex
