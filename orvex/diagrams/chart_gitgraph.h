// Git graph data: branches in order of creation and commits in the order they were made, each on its
// branch with its parents, as `commit`, `branch`, `checkout`, `merge` and `cherry-pick` build them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLGitGraph final : TQVLChart {
    enum class TCommitType : std::uint8_t { ctNormal, ctReverse, ctHighlight, ctMerge, ctCherryPick };
    enum class TDirection : std::uint8_t { gdLeftRight, gdTopBottom, gdBottomTop };

    struct TBranch {
        std::string Name;
        double Order = 0;  // lanes are drawn by ascending order; ties keep creation order
    };
    struct TCommit {
        std::string Id;
        std::string Branch;
        TCommitType Type = TCommitType::ctNormal;
        // A merge drawn as another type (`merge x type: REVERSE`); the record's type stays ctMerge.
        TCommitType DrawnType = TCommitType::ctNormal;
        std::vector<std::string> Tags;
        std::vector<std::string> Parents;  // the first parent on the same branch, a merged head second
        std::string Message;
    };

    TDirection Direction = TDirection::gdLeftRight;
    bool ShowBranches = true;
    bool ShowCommitLabels = true;
    bool ParallelCommits = false;   // commits placed by their depth rather than one column each
    std::vector<TBranch> Branches;  // creation order, the main branch first
    std::vector<TCommit> Commits;

    std::string_view Type() const override { return "gitgraph"; }
    // "branches": [names], "commits": [{"id", "branch", "type", "tag", "parents"}].
    void WriteJson(TJSON& aOut) const override;

    // The branches in the order their lanes are drawn.
    std::vector<std::size_t> LaneOrder() const;
};

// "NORMAL", "REVERSE", "HIGHLIGHT", "MERGE", "CHERRY_PICK".
std::string_view QVLGitCommitTypeName(TQVLGitGraph::TCommitType aType);

}  // namespace Orvex
