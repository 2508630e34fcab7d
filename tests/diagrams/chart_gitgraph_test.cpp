// Git graphs read into branches and commits: the replay of commit, branch, checkout, merge and cherry-pick,
// the settings that change the main branch and the lane order, and the statements git would refuse.
#include <gtest/gtest.h>

#include <string>

#include "orvex/core/regex.h"
#include "orvex/diagrams/chart_gitgraph.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using TType = TQVLGitGraph::TCommitType;

struct TRead {
    std::unique_ptr<TORXDiagramModel> Model;
    const TQVLGitGraph* Git = nullptr;
};

TRead Read(const std::string& text) {
    TRead r{QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid)};
    r.Git = dynamic_cast<const TQVLGitGraph*>(r.Model->Chart());
    return r;
}

std::vector<std::string> Codes(const TORXDiagramModel& model) {
    std::vector<std::string> codes;
    for (const auto& d : model.Diagnostics()) codes.push_back(d.Code + "@" + std::to_string(d.Line));
    return codes;
}

const TQVLGitGraph::TCommit& CommitById(const TQVLGitGraph& git, const std::string& id) {
    for (const auto& c : git.Commits)
        if (c.Id == id) return c;
    throw std::runtime_error("no commit " + id);
}

TEST(GitGraphChart, ReplaysBranchesCommitsAndMergesWithTheirParents) {
    const auto r = Read(
        "gitGraph\n"
        "  commit id: \"a\"\n"
        "  branch develop\n"
        "  commit id: \"b\" tag: \"v0\" type: HIGHLIGHT msg: \"start\"\n"
        "  checkout main\n"
        "  commit id: \"c\" type: REVERSE\n"
        "  merge develop id: \"m\" tag: \"v1\" type: REVERSE\n"
        "  switch develop\n"
        "  commit id: \"d\"\n");
    ASSERT_NE(r.Git, nullptr);
    EXPECT_EQ(r.Model->Kind(), TQVLDiagramKind::dkChart);
    EXPECT_TRUE(r.Model->Diagnostics().empty()) << ::testing::PrintToString(Codes(*r.Model));
    ASSERT_EQ(r.Git->Branches.size(), 2u);
    EXPECT_EQ(r.Git->Branches[0].Name, "main");
    EXPECT_EQ(r.Git->Branches[1].Name, "develop");
    ASSERT_EQ(r.Git->Commits.size(), 5u);
    EXPECT_EQ(CommitById(*r.Git, "b").Branch, "develop");
    EXPECT_EQ(CommitById(*r.Git, "b").Parents, std::vector<std::string>{"a"});
    EXPECT_EQ(CommitById(*r.Git, "b").Type, TType::ctHighlight);
    EXPECT_EQ(CommitById(*r.Git, "c").Type, TType::ctReverse);
    const auto& merge = CommitById(*r.Git, "m");
    EXPECT_EQ(merge.Branch, "main");
    EXPECT_EQ(merge.Type, TType::ctMerge);  // drawn reversed, still a merge
    EXPECT_EQ(merge.DrawnType, TType::ctReverse);
    EXPECT_EQ(merge.Parents, (std::vector<std::string>{"c", "b"}));
    // After the merge, develop still continues from its own head.
    EXPECT_EQ(CommitById(*r.Git, "d").Parents, std::vector<std::string>{"b"});

    TJSON json;
    r.Git->WriteJson(json);
    EXPECT_EQ(json["branches"], TJSON::parse(R"(["main","develop"])"));
    EXPECT_EQ(json["commits"][3].dump(),
              R"({"id":"m","branch":"main","type":"MERGE","tag":"v1","parents":["c","b"]})");
}

TEST(GitGraphChart, AutomaticIdsAreStableAndCountTheCommits) {
    const std::string text = "gitGraph\n  commit\n  branch x\n  commit\n  commit\n";
    const auto first = Read(text);
    const auto second = Read(text);
    ASSERT_EQ(first.Git->Commits.size(), 3u);
    const Qvl::Types::TRegex shape(R"(^[0-9]+-[0-9a-f]{7}$)");
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string& id = first.Git->Commits[i].Id;
        EXPECT_TRUE(shape.Match(id)) << id;
        EXPECT_EQ(id.substr(0, id.find('-')), std::to_string(i));
        EXPECT_EQ(id, second.Git->Commits[i].Id);
    }
    EXPECT_NE(first.Git->Commits[1].Id.substr(2), first.Git->Commits[2].Id.substr(2));
}

TEST(GitGraphChart, HeaderFormsAndSettings) {
    for (const char* header : {"gitGraph:", "gitGraph LR:", "gitGraph TB:", "gitGraph BT:", "gitGraph"}) {
        const auto r = Read(std::string(header) + "\n  commit\n");
        ASSERT_NE(r.Git, nullptr) << header;
        EXPECT_TRUE(r.Model->Diagnostics().empty()) << header;
    }
    EXPECT_EQ(Read("gitGraph TB:\n commit\n").Git->Direction, TQVLGitGraph::TDirection::gdTopBottom);
    EXPECT_EQ(Read("gitGraph BT:\n commit\n").Git->Direction, TQVLGitGraph::TDirection::gdBottomTop);
    EXPECT_EQ(Codes(*Read("gitGraph sideways\n commit\n").Model),
              std::vector<std::string>{"GITGRAPH_HEADER@1"});

    const auto front = Read(
        "---\nconfig:\n  gitGraph:\n    mainBranchName: 'trunk'\n    showBranches: false\n---\n"
        "gitGraph\n  commit\n  checkout trunk\n  commit\n");
    EXPECT_TRUE(front.Model->Diagnostics().empty()) << ::testing::PrintToString(Codes(*front.Model));
    EXPECT_EQ(front.Git->Branches[0].Name, "trunk");
    EXPECT_FALSE(front.Git->ShowBranches);
    const auto init = Read(
        "%%{init: { 'gitGraph': {'mainBranchName': 'master', 'mainBranchOrder': 2, 'parallelCommits': true}} "
        "}%%\n"
        "gitGraph\n  commit\n  branch a\n  branch b order: 1\n  branch c order: 3\n");
    EXPECT_EQ(init.Git->Branches[0].Name, "master");
    EXPECT_TRUE(init.Git->ParallelCommits);
    // Unordered branches come first in creation order, then by order: b (1), master (2), c (3).
    std::vector<std::string> lanes;
    for (const std::size_t i : init.Git->LaneOrder()) lanes.push_back(init.Git->Branches[i].Name);
    EXPECT_EQ(lanes, (std::vector<std::string>{"a", "b", "master", "c"}));
}

TEST(GitGraphChart, CherryPicksCopyACommitOntoTheCurrentBranch) {
    const auto r = Read(
        "gitGraph\n commit id: \"A\"\n branch dev\n commit id: \"B\"\n checkout main\n commit id: \"C\"\n"
        " cherry-pick id: \"B\"\n merge dev id: \"M\"\n checkout dev\n commit id: \"D\"\n"
        " cherry-pick id: \"M\" parent: \"B\" tag: \"\"\n");
    EXPECT_TRUE(r.Model->Diagnostics().empty()) << ::testing::PrintToString(Codes(*r.Model));
    ASSERT_EQ(r.Git->Commits.size(), 7u);
    const auto& pick = r.Git->Commits[3];
    EXPECT_EQ(pick.Type, TType::ctCherryPick);
    EXPECT_EQ(pick.Branch, "main");
    EXPECT_EQ(pick.Parents, (std::vector<std::string>{"C", "B"}));
    EXPECT_EQ(pick.Tags, std::vector<std::string>{"cherry-pick:B"});
    const auto& mergePick = r.Git->Commits[6];
    EXPECT_EQ(mergePick.Branch, "dev");
    EXPECT_TRUE(mergePick.Tags.empty());  // tag: "" asks for none
}

TEST(GitGraphChart, StatementsGitWouldRefuseAreErrorsAndAreLeftOut) {
    struct TCase {
        const char* Body;
        const char* Code;
        std::size_t Commits;
    };
    const TCase cases[] = {
        {" commit\n checkout nowhere\n commit\n", "GITGRAPH_UNKNOWN_BRANCH@3", 2},
        {" commit\n merge main\n", "GITGRAPH_MERGE_ITSELF@3", 1},
        {" branch a\n merge main\n", "GITGRAPH_MERGE_EMPTY_BRANCH@3", 0},
        {" commit\n merge ghost\n", "GITGRAPH_UNKNOWN_BRANCH@3", 1},
        {" commit\n branch a\n checkout main\n merge a\n", "GITGRAPH_MERGE_NOTHING_NEW@5", 1},
        {" commit id: \"x\"\n branch a\n commit\n checkout main\n merge a id: \"x\"\n",
         "GITGRAPH_DUPLICATE_ID@6", 2},
        {" commit\n cherry-pick id: \"nope\"\n", "GITGRAPH_CHERRY_PICK_SOURCE@3", 1},
        {" commit id: \"x\"\n cherry-pick id: \"x\"\n", "GITGRAPH_CHERRY_PICK_SAME_BRANCH@3", 1},
        {" commit id: \"x\"\n branch a\n commit id: \"y\"\n checkout main\n commit\n cherry-pick id: \"y\" "
         "parent: \"q\"\n",
         "GITGRAPH_CHERRY_PICK_PARENT@7", 3},
        {" commit\n branch a\n commit\n checkout main\n commit\n merge a id: \"m\"\n checkout a\n commit\n"
         " cherry-pick id: \"m\"\n",
         "GITGRAPH_CHERRY_PICK_PARENT@10", 5},
        {" commit type: BIG\n", "GITGRAPH_COMMIT_TYPE@2", 1},
        {" commit\n rebase main\n", "GITGRAPH_UNRECOGNIZED_LINE@3", 1},
        {" commit id: \"a\" colour: red\n", "GITGRAPH_UNKNOWN_OPTION@2", 1},
        {" commit id: \"a\n", "GITGRAPH_UNRECOGNIZED_LINE@2", 0},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Body);
        const auto r = Read(std::string("gitGraph\n") + c.Body);
        ASSERT_NE(r.Git, nullptr);
        EXPECT_EQ(Codes(*r.Model), std::vector<std::string>{c.Code});
        EXPECT_EQ(r.Git->Commits.size(), c.Commits);
    }
    // A branch that exists is an error; the graph goes on on that branch, as the text meant.
    const auto again = Read("gitGraph\n commit\n branch a\n checkout main\n branch a\n commit id: \"z\"\n");
    EXPECT_EQ(Codes(*again.Model), std::vector<std::string>{"GITGRAPH_BRANCH_EXISTS@5"});
    EXPECT_EQ(CommitById(*again.Git, "z").Branch, "a");
}

}  // namespace
}  // namespace Orvex
