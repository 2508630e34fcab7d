// The dot result and its byte form: counts and doubles in this machine's own layout, since only a
// child process of the same program writes it.
#include "host/layout/dot_result.h"

#include <graphviz/gvc.h>

#include <cstdint>
#include <cstring>

namespace Orvex {
namespace {

void CollectClusters(Agraph_t* g, std::vector<TDotCluster>& out) {
    for (Agraph_t* sub = agfstsubg(g); sub != nullptr; sub = agnxtsubg(sub)) {
        const char* name = agnameof(sub);
        if (name != nullptr && std::strncmp(name, "cluster", 7) == 0) out.push_back({name, GD_bb(sub)});
        CollectClusters(sub, out);
    }
}

class TWriter {
  public:
    void Count(std::size_t n) { Raw(static_cast<std::uint64_t>(n)); }
    void Point(pointf p) {
        Raw(p.x);
        Raw(p.y);
    }
    void Box(const boxf& b) {
        Point(b.LL);
        Point(b.UR);
    }
    void Text(const std::string& s) {
        Count(s.size());
        fOut += s;
    }
    std::string Take() { return std::move(fOut); }

  private:
    template <class T>
    void Raw(T value) {
        char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T));
        fOut.append(bytes, sizeof(T));
    }
    std::string fOut;
};

class TReader {
  public:
    explicit TReader(std::string_view bytes) : fIn(bytes) {}
    // A count must fit in what is left, each element taking at least aMinSize bytes.
    bool Count(std::size_t& n, std::size_t minSize) {
        std::uint64_t raw = 0;
        if (!Raw(raw) || raw > fIn.size() / minSize) return false;
        n = static_cast<std::size_t>(raw);
        return true;
    }
    bool Point(pointf& p) { return Raw(p.x) && Raw(p.y); }
    bool Box(boxf& b) { return Point(b.LL) && Point(b.UR); }
    bool Text(std::string& s) {
        std::size_t n = 0;
        if (!Count(n, 1)) return false;
        s.assign(fIn.substr(0, n));
        fIn.remove_prefix(n);
        return true;
    }
    bool AtEnd() const { return fIn.empty(); }

  private:
    template <class T>
    bool Raw(T& value) {
        if (fIn.size() < sizeof(T)) return false;
        std::memcpy(&value, fIn.data(), sizeof(T));
        fIn.remove_prefix(sizeof(T));
        return true;
    }
    std::string_view fIn;
};

}  // namespace

TDotResult CollectDotResult(Agraph_t* aGraph, const std::vector<Agnode_t*>& aNodes,
                            const std::vector<Agedge_t*>& aEdges) {
    TDotResult result;
    result.BoundingBox = GD_bb(aGraph);
    result.Nodes.reserve(aNodes.size());
    for (Agnode_t* n : aNodes) result.Nodes.push_back(ND_coord(n));
    result.Edges.resize(aEdges.size());
    for (std::size_t i = 0; i < aEdges.size(); ++i) {
        const splines* spl = ED_spl(aEdges[i]);
        if (spl == nullptr || spl->size == 0) continue;
        const bezier& bz = spl->list[0];
        result.Edges[i].assign(bz.list, bz.list + bz.size);
    }
    CollectClusters(aGraph, result.Clusters);
    return result;
}

std::string EncodeDotResult(const TDotResult& aResult) {
    TWriter w;
    w.Box(aResult.BoundingBox);
    w.Count(aResult.Nodes.size());
    for (const pointf p : aResult.Nodes) w.Point(p);
    w.Count(aResult.Edges.size());
    for (const auto& edge : aResult.Edges) {
        w.Count(edge.size());
        for (const pointf p : edge) w.Point(p);
    }
    w.Count(aResult.Clusters.size());
    for (const TDotCluster& c : aResult.Clusters) {
        w.Text(c.Name);
        w.Box(c.Box);
    }
    return w.Take();
}

std::optional<TDotResult> DecodeDotResult(std::string_view aBytes) {
    TReader r(aBytes);
    TDotResult result;
    std::size_t count = 0;
    if (!r.Box(result.BoundingBox) || !r.Count(count, sizeof(pointf))) return std::nullopt;
    result.Nodes.resize(count);
    for (pointf& p : result.Nodes)
        if (!r.Point(p)) return std::nullopt;
    if (!r.Count(count, sizeof(std::uint64_t))) return std::nullopt;
    result.Edges.resize(count);
    for (auto& edge : result.Edges) {
        if (!r.Count(count, sizeof(pointf))) return std::nullopt;
        edge.resize(count);
        for (pointf& p : edge)
            if (!r.Point(p)) return std::nullopt;
    }
    if (!r.Count(count, sizeof(std::uint64_t) + sizeof(boxf))) return std::nullopt;
    result.Clusters.resize(count);
    for (TDotCluster& c : result.Clusters)
        if (!r.Text(c.Name) || !r.Box(c.Box)) return std::nullopt;
    if (!r.AtEnd()) return std::nullopt;
    return result;
}

}  // namespace Orvex
