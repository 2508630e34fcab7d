// Shared checks of the diagram layout tests: examples read from the repository, node sizes from a
// fixed-pitch measure, and the geometric properties every layout must keep.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "host/layout/layout_types.h"
#include "orvex/diagrams/diagram_parse.h"

namespace Orvex::LayoutTest {

inline std::string ReadExample(const std::string& relative) {
    std::ifstream in(std::string(ORVEX_SOURCE_DIR) + "/examples/" + relative, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::unique_ptr<TORXDiagramModel> ParseExample(const std::string& relative) {
    return QVLParseDiagram(ReadExample(relative), QVLResolveFileFormat(relative, TQVLDiagramFormat::dgAuto));
}

inline TTextMeasure TestMeasure() {
    return FixedPitchMeasure(2.0, 4.5);
}

inline std::vector<TLayoutSize> NodeSizes(const TORXDiagramModel& model) {
    const TTextMeasure measure = TestMeasure();
    std::vector<TLayoutSize> sizes;
    for (const TQVLDiagNode& n : model.Nodes()) sizes.push_back(FlowBoxSize(n.Shape, measure(n.Text)));
    return sizes;
}

inline void ExpectNoOverlap(const std::vector<TLayoutBox>& boxes) {
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t j = i + 1; j < boxes.size(); ++j)
            EXPECT_FALSE(boxes[i].Overlaps(boxes[j]))
                << "boxes " << i << " and " << j << " overlap: (" << boxes[i].X << "," << boxes[i].Y << " "
                << boxes[i].Width << "x" << boxes[i].Height << ") (" << boxes[j].X << "," << boxes[j].Y << " "
                << boxes[j].Width << "x" << boxes[j].Height << ")";
}

// True when the point lies on the box's outline (within a tolerance in mm).
inline bool OnOutline(const TLayoutBox& box, TLayoutPoint p, double tolerance = 0.5) {
    const bool insideX = p.X >= box.X - tolerance && p.X <= box.Right() + tolerance;
    const bool insideY = p.Y >= box.Y - tolerance && p.Y <= box.Bottom() + tolerance;
    const bool nearX = std::abs(p.X - box.X) <= tolerance || std::abs(p.X - box.Right()) <= tolerance;
    const bool nearY = std::abs(p.Y - box.Y) <= tolerance || std::abs(p.Y - box.Bottom()) <= tolerance;
    return (insideX && insideY) && (nearX || nearY);
}

// Every route starts on its source box and ends on its target box, and every resolvable edge has one.
inline void ExpectRoutesBound(const TORXDiagramModel& model, const TGraphLayout& layout) {
    std::size_t resolvable = 0;
    for (const TQVLDiagEdge& e : model.Edges())
        if (model.NodeIndexOf(e.FromID) >= 0 && model.NodeIndexOf(e.ToID) >= 0) ++resolvable;
    EXPECT_EQ(layout.Routes.size(), resolvable);
    for (const TLayoutRoute& r : layout.Routes) {
        ASSERT_GE(r.Points.size(), 2u);
        const TQVLDiagEdge& e = model.Edges()[static_cast<std::size_t>(r.Edge)];
        EXPECT_EQ(r.From, model.NodeIndexOf(e.FromID));
        EXPECT_EQ(r.To, model.NodeIndexOf(e.ToID));
        EXPECT_TRUE(OnOutline(layout.Boxes[static_cast<std::size_t>(r.From)], r.Points.front()))
            << "edge " << r.Edge << " starts off its source";
        EXPECT_TRUE(OnOutline(layout.Boxes[static_cast<std::size_t>(r.To)], r.Points.back()))
            << "edge " << r.Edge << " ends off its target";
    }
}

// No route passes through a box other than its own two (sampled every half millimetre; a route may graze
// an outline).
inline void ExpectRoutesAvoidBoxes(const TGraphLayout& layout, double tolerance = 0.5) {
    for (const TLayoutRoute& r : layout.Routes) {
        for (std::size_t k = 1; k < r.Points.size(); ++k) {
            const TLayoutPoint a = r.Points[k - 1];
            const TLayoutPoint b = r.Points[k];
            const double length = std::hypot(b.X - a.X, b.Y - a.Y);
            const int steps = std::max(1, static_cast<int>(length / 0.5));
            for (int s = 0; s <= steps; ++s) {
                const double t = static_cast<double>(s) / steps;
                const TLayoutPoint p{a.X + (b.X - a.X) * t, a.Y + (b.Y - a.Y) * t};
                for (std::size_t n = 0; n < layout.Boxes.size(); ++n) {
                    if (static_cast<int>(n) == r.From || static_cast<int>(n) == r.To) continue;
                    const TLayoutBox& box = layout.Boxes[n];
                    const bool inside = p.X > box.X + tolerance && p.X < box.Right() - tolerance &&
                                        p.Y > box.Y + tolerance && p.Y < box.Bottom() - tolerance;
                    if (inside) {
                        ADD_FAILURE() << "route of edge " << r.Edge << " crosses box " << n;
                        return;
                    }
                }
            }
        }
    }
}

}  // namespace Orvex::LayoutTest
