// The layered layout through Graphviz's dot: node boxes are fixed to the sizes the captions need, the
// edges carry their labels so that ranks leave room for them, and the routes come back in millimetres.
#include "host/layout/graph_layout.h"

#include <graphviz/gvc.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/layout/dot_result.h"
#include "host/layout/graphviz_settings.h"
#include "host/layout/graphviz_text.h"
#include "host/layout/isolated_run.h"
#include "host/layout/layered_layout.h"
#include "orvex/core/units.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

using Qvl::Types::kMMPerInch;
using Qvl::Types::kPointsPerInch;
constexpr double kMMPerPoint = kMMPerInch / kPointsPerInch;
constexpr const char* kLabelFontSize = "9";     // pt; what the link text is drawn with
constexpr const char* kClusterFontSize = "10";  // pt; a container's title

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
// configuration only once. Its text layout is the process's own metrics (graphviz_text.h).
GVC_t* GraphvizContext() {
    static GVC_t* const context = NewGraphvizContextWithOwnText();
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
    for (const TLayoutBox& b : layout.Groups) take(b.X, b.Y, b.Right(), b.Bottom());
    for (const TLayoutRoute& r : layout.Routes)
        for (const TLayoutPoint p : r.Points) take(p.X, p.Y, p.X, p.Y);
    const double dx = margin - minX;
    const double dy = margin - minY;
    for (auto* boxes : {&layout.Boxes, &layout.Groups})
        for (TLayoutBox& b : *boxes) {
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

// The containers as Graphviz clusters, nested as the model nests them, each node in its innermost one.
// A container without nodes gets an invisible anchor so that it still takes space and links can end at
// it. Returns, per group, its cluster and the node that stands for it as a link's end.
struct TClusters {
    std::vector<Agraph_t*> Graphs;
    std::vector<Agnode_t*> Anchors;
    std::vector<std::string> Names;
};

TClusters AddClusters(Agraph_t* g, const TORXDiagramModel& model, const std::vector<Agnode_t*>& gvNodes) {
    TClusters c;
    const auto& groups = model.Groups();
    c.Graphs.assign(groups.size(), nullptr);
    c.Anchors.assign(groups.size(), nullptr);
    c.Names.resize(groups.size());
    std::unordered_map<std::string, std::size_t> index;
    for (std::size_t i = 0; i < groups.size(); ++i) index.emplace(groups[i].ID, i);
    // Parents are created before children: resolve depth first, guarding against a cycle in bad input.
    std::function<Agraph_t*(std::size_t, int)> make = [&](std::size_t i, int depth) -> Agraph_t* {
        if (c.Graphs[i] != nullptr) return c.Graphs[i];
        Agraph_t* parent = g;
        if (const auto p = index.find(groups[i].Parent); p != index.end() && p->second != i && depth < 64)
            parent = make(p->second, depth + 1);
        c.Names[i] = "cluster_" + std::to_string(i);
        Agraph_t* sub = agsubg(parent, c.Names[i].data(), 1);
        std::string text = EscapeLabel(groups[i].Text);
        agsafeset(sub, Mutable("label"), text.data(), Mutable(""));
        agsafeset(sub, Mutable("labeljust"), Mutable("l"), Mutable(""));
        agsafeset(sub, Mutable("fontsize"), Mutable(kClusterFontSize), Mutable(""));
        agsafeset(sub, Mutable("margin"), Mutable("12"), Mutable(""));
        c.Graphs[i] = sub;
        return sub;
    };
    for (std::size_t i = 0; i < groups.size(); ++i) make(i, 0);
    const auto& nodes = model.Nodes();
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        const auto found = index.find(nodes[n].Group);
        if (found != index.end()) agsubnode(c.Graphs[found->second], gvNodes[n], 1);
    }
    // The anchor of a container is its first node, found depth first; an empty one gets a placeholder.
    for (std::size_t i = groups.size(); i-- > 0;) {
        Agnode_t* first = agfstnode(c.Graphs[i]);
        if (first == nullptr) {
            std::string name = "anchor_" + std::to_string(i);
            first = agnode(c.Graphs[i], name.data(), 1);
            agsafeset(first, Mutable("width"), Mutable("0.3"), Mutable(""));
            agsafeset(first, Mutable("height"), Mutable("0.3"), Mutable(""));
            agsafeset(first, Mutable("style"), Mutable("invis"), Mutable(""));
        }
        c.Anchors[i] = first;
    }
    return c;
}

// A container whose direction differs from the diagram's lines its nodes up across the main flow, as
// long as no link leaves it (a link to the outside pins its members to the diagram's ranks).
void ApplyContainerDirections(const TORXDiagramModel& model, const TClusters& clusters,
                              const std::vector<Agnode_t*>& gvNodes) {
    const auto& groups = model.Groups();
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!groups[i].Direction || *groups[i].Direction == model.Direction()) continue;
        std::vector<std::size_t> members;
        for (std::size_t n = 0; n < model.Nodes().size(); ++n)
            if (model.Nodes()[n].Group == groups[i].ID) members.push_back(n);
        if (members.size() < 2 || members.size() != static_cast<std::size_t>(agnnodes(clusters.Graphs[i])))
            continue;
        bool crossing = false;
        for (const auto& e : model.Edges()) {
            const int from = model.NodeIndexOf(e.FromID);
            const int to = model.NodeIndexOf(e.ToID);
            const bool fromIn =
                from >= 0 && model.Nodes()[static_cast<std::size_t>(from)].Group == groups[i].ID;
            const bool toIn = to >= 0 && model.Nodes()[static_cast<std::size_t>(to)].Group == groups[i].ID;
            crossing |= fromIn != toIn;
        }
        if (crossing) continue;
        std::string name = "rank_" + std::to_string(i);
        Agraph_t* same = agsubg(clusters.Graphs[i], name.data(), 1);
        agsafeset(same, Mutable("rank"), Mutable("same"), Mutable(""));
        for (const std::size_t n : members) agsubnode(same, gvNodes[n], 1);
    }
}

}  // namespace

TGraphLayout LayoutGraph(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                         const TGraphLayoutOptions& aOptions) {
    TGraphLayout result;
    const auto& nodes = aModel.Nodes();
    result.Boxes.resize(nodes.size());
    if (nodes.empty()) return result;
    TGraphvizSettings settings = ChooseGraphviz(MeasureGraph(aModel), aOptions);
    if (settings.Engine == TGraphEngine::geLayered) return LayoutLayered(aModel, aSizes, aOptions);
    // The Graphviz of Debian 12 corrupts its heap on some graphs with clusters (its flat-edge pass
    // reallocates a list that gvFreeLayout then frees again; a composite state with a choice looping back
    // into it is enough). With clusters dot runs in a child process: a crash there costs only the dot
    // layout, and nobody frees the child's heap.
    if (!aModel.Groups().empty() && aOptions.TimeBudget > 0 && IsolationAvailable()) {
        settings.Isolated = true;
        settings.BudgetSeconds = aOptions.TimeBudget;
    }

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

    const TClusters clusters = AddClusters(g, aModel, gvNodes);
    ApplyContainerDirections(aModel, clusters, gvNodes);
    if (!clusters.Graphs.empty()) agattr(g, AGRAPH, Mutable("compound"), Mutable("true"));

    struct TPending {
        int Edge;
        int From;
        int To;
        Agedge_t* GvEdge;
        int FromGroup = -1;
        int ToGroup = -1;
    };
    std::vector<TPending> pending;
    const auto& edges = aModel.Edges();
    // A link's end that names a container is drawn from the container's anchor and clipped at its frame.
    auto groupIndex = [&](const std::string& id) {
        for (std::size_t i = 0; i < aModel.Groups().size(); ++i)
            if (aModel.Groups()[i].ID == id) return static_cast<int>(i);
        return -1;
    };
    auto nodeIndexOfAnchor = [&](int group) {
        const Agnode_t* anchor = clusters.Anchors[static_cast<std::size_t>(group)];
        for (std::size_t n = 0; n < gvNodes.size(); ++n)
            if (gvNodes[n] == anchor) return static_cast<int>(n);
        return -1;
    };
    for (std::size_t e = 0; e < edges.size(); ++e) {
        int from = aModel.NodeIndexOf(edges[e].FromID);
        int to = aModel.NodeIndexOf(edges[e].ToID);
        const int fromGroup = from < 0 ? groupIndex(edges[e].FromID) : -1;
        const int toGroup = to < 0 ? groupIndex(edges[e].ToID) : -1;
        if ((from < 0 && fromGroup < 0) || (to < 0 && toGroup < 0)) continue;
        Agnode_t* tail = fromGroup >= 0 ? clusters.Anchors[static_cast<std::size_t>(fromGroup)]
                                        : gvNodes[static_cast<std::size_t>(from)];
        Agnode_t* head = toGroup >= 0 ? clusters.Anchors[static_cast<std::size_t>(toGroup)]
                                      : gvNodes[static_cast<std::size_t>(to)];
        if (fromGroup >= 0) from = nodeIndexOfAnchor(fromGroup);
        if (toGroup >= 0) to = nodeIndexOfAnchor(toGroup);
        // A direction hint ("A -left-> B") turns the edge round when it points against the flow, and
        // puts the two ends side by side when it runs across the flow.
        const std::string& hint = edges[e].Hint;
        const bool across = aModel.Direction() == TQVLFlowDirection::fdLeftRight;
        if (hint == "up" || hint == "left") std::swap(tail, head);
        if (fromGroup < 0 && toGroup < 0 &&
            (hint == (across ? "up" : "left") || hint == (across ? "down" : "right")) &&
            aModel.Nodes()[static_cast<std::size_t>(from)].Group ==
                aModel.Nodes()[static_cast<std::size_t>(to)].Group) {
            std::string name = "side_" + std::to_string(e);
            const int cluster = groupIndex(aModel.Nodes()[static_cast<std::size_t>(from)].Group);
            Agraph_t* side =
                agsubg(cluster >= 0 ? clusters.Graphs[static_cast<std::size_t>(cluster)] : g, name.data(), 1);
            agsafeset(side, Mutable("rank"), Mutable("same"), Mutable(""));
            agsubnode(side, tail, 1);
            agsubnode(side, head, 1);
        }
        Agedge_t* ge = agedge(g, tail, head, nullptr, 1);
        if (fromGroup >= 0)
            agsafeset(ge, Mutable("ltail"),
                      Mutable(clusters.Names[static_cast<std::size_t>(fromGroup)].c_str()), Mutable(""));
        if (toGroup >= 0)
            agsafeset(ge, Mutable("lhead"),
                      Mutable(clusters.Names[static_cast<std::size_t>(toGroup)].c_str()), Mutable(""));
        if (!edges[e].Text.empty() && !straight) {
            std::string text = EscapeLabel(edges[e].Text);
            agxset(ge, label, text.data());
        }
        pending.push_back({static_cast<int>(e), from, to, ge, fromGroup, toGroup});
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

    // Cluster frames in millimetres, parallel to the model's groups; dot reports them by name.
    for (const std::string& name : clusters.Names) {
        const auto found = std::find_if(dot->Clusters.begin(), dot->Clusters.end(),
                                        [&](const TDotCluster& c) { return c.Name == name; });
        if (found == dot->Clusters.end()) {
            result.Groups.push_back({});
            continue;
        }
        const boxf cb = found->Box;
        const TLayoutPoint topLeft = toMM({cb.LL.x, cb.UR.y});
        const TLayoutPoint bottomRight = toMM({cb.UR.x, cb.LL.y});
        result.Groups.push_back(
            {topLeft.X, topLeft.Y, bottomRight.X - topLeft.X, bottomRight.Y - topLeft.Y, true});
    }

    for (std::size_t k = 0; k < pending.size(); ++k) {
        const TPending& p = pending[k];
        TLayoutRoute route;
        route.Edge = p.Edge;
        route.From = p.From;
        route.To = p.To;
        route.FromGroup = p.FromGroup;
        route.ToGroup = p.ToGroup;
        const TLayoutBox& fromBox = p.FromGroup >= 0 ? result.Groups[static_cast<std::size_t>(p.FromGroup)]
                                                     : result.Boxes[static_cast<std::size_t>(p.From)];
        const TLayoutBox& toBox = p.ToGroup >= 0 ? result.Groups[static_cast<std::size_t>(p.ToGroup)]
                                                 : result.Boxes[static_cast<std::size_t>(p.To)];
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
