// A git graph: one lane per branch in lane order, commits as dots advancing along the lanes in the order
// they were made (or by depth with parallelCommits), the line between a commit and its first parent in
// the commit's branch colour, merges joining the merged head's lane, cherry-picks dashed. Left to right
// by default; TB and BT turn the lanes into columns.
#include <algorithm>
#include <map>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_gitgraph.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"

namespace Orvex {
namespace {

using TGit = TQVLGitGraph;

constexpr double kLaneGapMM = 16.0;
constexpr double kMinCommitGapMM = 11.0;
constexpr double kMaxCommitGapMM = 26.0;
constexpr double kDotMM = 5.0;
constexpr double kLabelGapMM = 6.0;  // between the branch names and the first commit
constexpr float kIdHeight = 2.5f;
constexpr float kTagHeight = 2.5f;
constexpr float kBranchPenMM = 1.0f;
constexpr TAlphaColor kLaneColor = 0xFFBFBFBFu;
constexpr TAlphaColor kTagFill = 0xFFFFF2B3u;
constexpr TAlphaColor kIdGround = 0xFFF2F2F2u;

// Branch colours strong enough for thick lines: the series palette darkened.
TAlphaColor BranchColor(std::size_t lane) {
    const TAlphaColor soft = ChartSeriesColor(lane);
    auto channel = [soft](int shift) { return ((soft >> shift) & 0xFFu) * 3 / 5; };
    return 0xFF000000u | (channel(16) << 16) | (channel(8) << 8) | channel(0);
}

// Where each commit stands along the lanes: one step per commit, or with parallel commits one step past
// its furthest parent, so work on different branches shares columns.
std::vector<std::size_t> Steps(const TGit& git) {
    std::vector<std::size_t> steps(git.Commits.size(), 0);
    std::map<std::string, std::size_t> stepOf;
    for (std::size_t i = 0; i < git.Commits.size(); ++i) {
        std::size_t step = i;
        if (git.ParallelCommits) {
            step = 0;
            for (const std::string& p : git.Commits[i].Parents)
                if (const auto it = stepOf.find(p); it != stepOf.end()) step = std::max(step, it->second + 1);
        }
        steps[i] = step;
        stepOf[git.Commits[i].Id] = step;
    }
    return steps;
}

class TGitDrawer {
  public:
    TGitDrawer(TChartCanvas& canvas, const TGit& git, TLayoutPoint origin)
        : fCanvas(canvas),
          fGit(git),
          fOrigin(origin),
          fVertical(git.Direction != TGit::TDirection::gdLeftRight) {
        const auto order = git.LaneOrder();
        for (std::size_t lane = 0; lane < order.size(); ++lane)
            fLaneOf[git.Branches[order[lane]].Name] = lane;
        fLanes = order.size();
    }

    TLayoutSize Draw() {
        const TChartTextStyle idStyle{.Height = kIdHeight};
        double widestId = 0;
        for (const auto& c : fGit.Commits)
            widestId = std::max(widestId, fCanvas.Measure(c.Id, idStyle).Width);
        // Ids sit beneath their dots side by side when the lanes run across, so they set the pitch.
        fPitch = fVertical || !fGit.ShowCommitLabels
                     ? kMinCommitGapMM
                     : std::clamp(widestId + 2.0, kMinCommitGapMM, kMaxCommitGapMM);
        fLabelExtent = BranchLabelExtent();
        // With the lanes as columns the ids stand left of their dots, between the lanes.
        const double idRoom = fVertical && fGit.ShowCommitLabels ? widestId + 3 : 0;
        fAcrossStart = kDotMM + idRoom;
        fLaneGap = std::max(kLaneGapMM, idRoom + kDotMM + 2);
        fSteps = Steps(fGit);
        const auto& steps = fSteps;
        std::size_t last = 0;
        for (const std::size_t s : steps) last = std::max(last, s);
        fLength =
            fLabelExtent + kLabelGapMM + static_cast<double>(fGit.Commits.empty() ? 0 : last + 1) * fPitch;

        DrawLanes();
        std::vector<TORXBaseFlow*> dots;
        for (std::size_t i = 0; i < fGit.Commits.size(); ++i) {
            const auto& c = fGit.Commits[i];
            dots.push_back(DrawCommit(c, Center(c.Branch, steps[i])));
            fIndexOf.emplace(c.Id, i);
        }
        for (std::size_t i = 0; i < fGit.Commits.size(); ++i) DrawParentLines(i, dots);
        for (std::size_t i = 0; i < fGit.Commits.size(); ++i) {
            const auto& c = fGit.Commits[i];
            DrawId(c, Center(c.Branch, steps[i]));
            DrawTags(c, Center(c.Branch, steps[i]));
        }

        const double across =
            fAcrossStart + static_cast<double>(fLanes == 0 ? 0 : fLanes - 1) * fLaneGap + kDotMM + 8;
        return fVertical ? TLayoutSize{across, fLength} : TLayoutSize{fLength, across + 4};
    }

  private:
    double BranchLabelExtent() const {
        if (!fGit.ShowBranches) return 0;
        double widest = 0;
        for (const auto& b : fGit.Branches) {
            const TLayoutSize size = fCanvas.Measure(b.Name, {.Bold = true});
            widest = std::max(widest, fVertical ? size.Height : size.Width);
        }
        return widest + 4;
    }

    // The centre of a commit on its branch's lane at a step along the lanes.
    TLayoutPoint Center(const std::string& branch, std::size_t step) const {
        const auto it = fLaneOf.find(branch);
        const double across =
            fAcrossStart + static_cast<double>(it == fLaneOf.end() ? 0 : it->second) * fLaneGap;
        const double run = (static_cast<double>(step) + 0.5) * fPitch;
        // Bottom to top, the branch names stand at the bottom and the first commit just above them.
        const double along = fGit.Direction == TGit::TDirection::gdBottomTop
                                 ? fLength - fLabelExtent - kLabelGapMM - run
                                 : fLabelExtent + kLabelGapMM + run;
        return fVertical ? TLayoutPoint{fOrigin.X + across, fOrigin.Y + along}
                         : TLayoutPoint{fOrigin.X + along, fOrigin.Y + across};
    }

    // Each lane: a faint dotted guide across the chart and, unless hidden, the branch's name on a tab in
    // its colour at the start.
    void DrawLanes() {
        for (const auto& b : fGit.Branches) {
            const std::size_t lane = fLaneOf.at(b.Name);
            const double across = fAcrossStart + static_cast<double>(lane) * fLaneGap;
            const bool bottomUp = fGit.Direction == TGit::TDirection::gdBottomTop;
            const double labelStart = bottomUp ? fLength - fLabelExtent + 1 : 0;
            const double lineFrom = bottomUp ? 0 : fLabelExtent;
            const double lineTo = bottomUp ? fLength - fLabelExtent : fLength;
            if (fVertical)
                fCanvas.Line({fOrigin.X + across, fOrigin.Y + lineFrom},
                             {fOrigin.X + across, fOrigin.Y + lineTo},
                             {.Fill = std::nullopt, .Stroke = kLaneColor, .Dashed = true});
            else
                fCanvas.Line({fOrigin.X + lineFrom, fOrigin.Y + across},
                             {fOrigin.X + lineTo, fOrigin.Y + across},
                             {.Fill = std::nullopt, .Stroke = kLaneColor, .Dashed = true});
            if (!fGit.ShowBranches) continue;
            const TChartTextStyle style{.Bold = true, .Color = kOpaqueWhite};
            const TLayoutSize size = fCanvas.Measure(b.Name, style);
            const TLayoutBox tab =
                fVertical ? TLayoutBox{fOrigin.X + across - size.Width / 2 - 1.5, fOrigin.Y + labelStart,
                                       size.Width + 3, fLabelExtent - 1, true}
                          : TLayoutBox{fOrigin.X + labelStart, fOrigin.Y + across - size.Height / 2 - 1,
                                       fLabelExtent - 1, size.Height + 2, true};
            fCanvas.Rect(tab, {.Fill = BranchColor(lane), .Stroke = BranchColor(lane)}, 1.0);
            fCanvas.Text({tab.X + tab.Width / 2, tab.Y + tab.Height / 2}, b.Name,
                         {.Bold = true,
                          .Color = kOpaqueWhite,
                          .Horizontal = TChartAlign::caCenter,
                          .Vertical = TChartAlign::caCenter});
        }
    }

    TORXBaseFlow* DrawCommit(const TGit::TCommit& c, TLayoutPoint at) {
        const auto lane = fLaneOf.count(c.Branch) != 0 ? fLaneOf.at(c.Branch) : 0;
        const TAlphaColor color = BranchColor(lane);
        const TLayoutBox box{at.X - kDotMM / 2, at.Y - kDotMM / 2, kDotMM, kDotMM, true};
        TORXBaseFlow* dot = nullptr;
        switch (c.DrawnType) {
            case TGit::TCommitType::ctHighlight:
                dot = fCanvas.Box(box, TQVLFlowType::ftProcess, "", {.Fill = color, .Stroke = kOpaqueBlack},
                                  c.Id);
                break;
            case TGit::TCommitType::ctMerge:
                // A ring: what joins two lines rather than adds work.
                dot = fCanvas.Box(box, TQVLFlowType::ftEllipse, "",
                                  {.Fill = kOpaqueWhite, .Stroke = color, .PenMM = 0.8f}, c.Id);
                break;
            case TGit::TCommitType::ctReverse: {
                dot = fCanvas.Box(box, TQVLFlowType::ftEllipse, "", {.Fill = color, .Stroke = color}, c.Id);
                const double r = kDotMM * 0.3;
                fCanvas.Line({at.X - r, at.Y - r}, {at.X + r, at.Y + r},
                             {.Fill = std::nullopt, .Stroke = kOpaqueBlack, .PenMM = 0.5f});
                fCanvas.Line({at.X - r, at.Y + r}, {at.X + r, at.Y - r},
                             {.Fill = std::nullopt, .Stroke = kOpaqueBlack, .PenMM = 0.5f});
                break;
            }
            case TGit::TCommitType::ctCherryPick:
                dot = fCanvas.Box(box, TQVLFlowType::ftEllipse, "", {.Fill = color, .Stroke = kOpaqueBlack},
                                  c.Id);
                fCanvas.Circle(at, kDotMM * 0.2, {.Fill = kOpaqueWhite, .Stroke = kOpaqueWhite});
                break;
            case TGit::TCommitType::ctNormal:
                dot = fCanvas.Box(box, TQVLFlowType::ftEllipse, "", {.Fill = color, .Stroke = color}, c.Id);
                break;
        }
        return dot;
    }

    // The id beneath the dot (left of it when the lanes are columns) on a pale ground, drawn after the lines
    // so that a line passing under it does not cross the text.
    void DrawId(const TGit::TCommit& c, TLayoutPoint at) {
        if (!fGit.ShowCommitLabels) return;
        const TChartTextStyle style{.Height = kIdHeight};
        const TLayoutSize size = fCanvas.Measure(c.Id, style);
        const TLayoutBox box =
            fVertical ? TLayoutBox{at.X - kDotMM / 2 - 2 - size.Width, at.Y - size.Height / 2 - 0.3,
                                   size.Width + 1, size.Height + 0.6, true}
                      : TLayoutBox{at.X - size.Width / 2 - 0.5, at.Y + kDotMM / 2 + 0.8, size.Width + 1,
                                   size.Height + 0.6, true};
        fCanvas.Rect(box, {.Fill = kIdGround, .Stroke = kIdGround});
        fCanvas.Text({box.X + 0.5, box.Y + 0.3}, c.Id, style);
    }

    // Tags stack above the dot (to its right when the lanes are columns) on pale labels.
    void DrawTags(const TGit::TCommit& c, TLayoutPoint at) {
        const TChartTextStyle style{
            .Height = kTagHeight, .Horizontal = TChartAlign::caCenter, .Vertical = TChartAlign::caCenter};
        double offset = kDotMM / 2 + 1;
        for (const std::string& tag : c.Tags) {
            const TLayoutSize size = fCanvas.Measure(tag, style);
            const double w = size.Width + 2;
            const double h = size.Height + 1;
            const TLayoutBox box = fVertical ? TLayoutBox{at.X + offset, at.Y - h / 2, w, h, true}
                                             : TLayoutBox{at.X - w / 2, at.Y - offset - h, w, h, true};
            fCanvas.Rect(box, {.Fill = kTagFill, .Stroke = 0xFF8C7A00u}, 0.8);
            fCanvas.Text({box.X + w / 2, box.Y + h / 2}, tag, style);
            offset += (fVertical ? w : h) + 0.8;
        }
    }

    // A commit's line to each parent: in the commit's branch colour to its first parent (turning at the
    // parent when the commit opens a branch), in the merged branch's colour to a merged head (turning at
    // the merge), dashed to a cherry-picked commit.
    // True when a line of the branch's own runs somewhere after step aFrom and before step aTo: a commit of
    // the branch past aFrom whose first parent, on the same branch, comes before aTo.
    bool LaneBusy(const std::string& branch, std::size_t from, std::size_t to) const {
        for (std::size_t i = 0; i < fGit.Commits.size(); ++i) {
            const auto& c = fGit.Commits[i];
            if (c.Branch != branch || fSteps[i] <= from || c.Parents.empty()) continue;
            const auto parent = fIndexOf.find(c.Parents.front());
            if (parent != fIndexOf.end() && fGit.Commits[parent->second].Branch == branch &&
                fSteps[parent->second] < to)
                return true;
        }
        return false;
    }

    void DrawParentLines(std::size_t i, const std::vector<TORXBaseFlow*>& dots) {
        const auto& c = fGit.Commits[i];
        for (std::size_t k = 0; k < c.Parents.size(); ++k) {
            const auto it = fIndexOf.find(c.Parents[k]);
            if (it == fIndexOf.end() || dots[it->second] == nullptr || dots[i] == nullptr) continue;
            const auto& parent = fGit.Commits[it->second];
            const bool second = k > 0;
            const bool picked = second && c.Type == TGit::TCommitType::ctCherryPick;
            const std::string& colourBranch = second ? parent.Branch : c.Branch;
            const auto lane = fLaneOf.count(colourBranch) != 0 ? fLaneOf.at(colourBranch) : 0;
            TORXBaseLink* link = fCanvas.Link(*dots[it->second], *dots[i],
                                              {.Fill = std::nullopt,
                                               .Stroke = BranchColor(lane),
                                               .PenMM = picked ? 0.5f : kBranchPenMM,
                                               .Dashed = picked},
                                              false);
            if (link == nullptr || parent.Branch == c.Branch) continue;
            // Opening a branch leaves the parent across the lanes first, along the new branch's still empty
            // lane. A merged or picked commit runs along its own lane and turns at the commit it joins,
            // unless its branch goes on there; then it crosses first and runs along the joining lane.
            const bool acrossFirst = !second || LaneBusy(parent.Branch, fSteps[it->second], fSteps[i]);
            if (fVertical == acrossFirst)
                link->SetLinkType(TQVLinkType::ltLeftRightTopBottom);
            else
                link->SetLinkType(TQVLinkType::ltTopBottomLeftRight);
        }
    }

    TChartCanvas& fCanvas;
    const TGit& fGit;
    TLayoutPoint fOrigin;
    bool fVertical;
    std::map<std::string, std::size_t> fLaneOf;
    std::size_t fLanes = 0;
    double fPitch = kMinCommitGapMM;
    std::vector<std::size_t> fSteps;              // each commit's step along the lanes
    std::map<std::string, std::size_t> fIndexOf;  // commit id -> its index (the first commit of an id)
    double fAcrossStart = kDotMM;                 // from the chart's edge to the first lane
    double fLaneGap = kLaneGapMM;
    double fLabelExtent = 0;
    double fLength = 0;
};

}  // namespace

TLayoutSize DrawGitGraph(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    return TGitDrawer(aCanvas, static_cast<const TGit&>(aChart), aOrigin).Draw();
}

}  // namespace Orvex
