// Mermaid git graphs: `gitGraph` (optionally `gitGraph:`, `gitGraph LR:`, `TB:`, `BT:`), then `commit`,
// `branch`, `checkout`/`switch`, `merge` and `cherry-pick` statements replayed like the git commands they
// name. A statement git would refuse (checking out a branch that does not exist, merging a branch into
// itself, ...) is an error on its line, and the graph goes on without it.
#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_config.h"
#include "orvex/diagrams/chart_gitgraph.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_reading.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TCommitType = TQVLGitGraph::TCommitType;
using TSeverity = TQVLDiagramDiagnosticSeverity;

// The options after a statement's keyword: `key: value` pairs and bare words or strings, in order.
struct TOption {
    std::string Key;  // "" for a bare value
    std::string Value;
};

// False when something between the options is neither a `key:` nor a value (an unclosed quote).
bool ReadOptions(std::string_view text, std::vector<TOption>& options) {
    static const TRegex kOption(R"re(\s*(?:(\w+)\s*:\s*)?(?:"([^"]*)"|'([^']*)'|([^\s"']+)))re");
    std::size_t at = 0;
    TRegexMatch m;
    while (at < text.size() && !Trim(text.substr(at)).empty()) {
        if (!kOption.MatchAt(text, at, m)) return false;
        TOption option{std::string(m.Group(1)), {}};
        if (m.Matched(2))
            option.Value = std::string(m.Group(2));
        else if (m.Matched(3))
            option.Value = std::string(m.Group(3));
        else
            option.Value = std::string(m.Group(4));
        options.push_back(std::move(option));
        at += m.Group(0).size();
    }
    return true;
}

std::optional<TCommitType> CommitTypeOf(std::string_view word) {
    if (word == "NORMAL") return TCommitType::ctNormal;
    if (word == "REVERSE") return TCommitType::ctReverse;
    if (word == "HIGHLIGHT") return TCommitType::ctHighlight;
    return std::nullopt;
}

// Ids git graphs make up for commits written without one: the commit's sequence number, a dash and seven
// hex digits hashed from the branch and that number, so the same text always gives the same ids.
std::string AutoId(std::size_t seq, std::string_view branch) {
    std::uint32_t hash = 2166136261u;  // FNV-1a
    const std::string key = std::string(branch) + "/" + std::to_string(seq);
    for (const char c : key) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    char hex[16];
    std::snprintf(hex, sizeof hex, "%07x", hash & 0xFFFFFFFu);
    return std::to_string(seq) + "-" + hex;
}

class TGitGraphReader {
  public:
    TGitGraphReader(TORXDiagramModel& model, TQVLGitGraph& graph, std::string mainBranch, double mainOrder)
        : fModel(model), fGraph(graph), fCurrent(mainBranch) {
        fGraph.Branches.push_back({mainBranch, mainOrder});
        fHeads[mainBranch] = std::nullopt;
    }

    void Statement(const TUmlLine& line) {
        fLine = &line;
        std::string_view text = line.Text;
        while (!text.empty() && text.back() == ';') text = Trim(text.substr(0, text.size() - 1));
        std::size_t end = 0;
        while (end < text.size() && text[end] != ' ' && text[end] != '\t') ++end;
        const std::string_view word = text.substr(0, end);
        std::vector<TOption> options;
        if (!ReadOptions(text.substr(end), options)) {
            Report(TSeverity::dsError, "GITGRAPH_UNRECOGNIZED_LINE", "A quoted value is not closed.");
            return;
        }
        if (word == "commit")
            Commit(options);
        else if (word == "branch")
            Branch(options);
        else if (word == "checkout" || word == "switch")
            Checkout(options);
        else if (word == "merge")
            Merge(options);
        else if (word == "cherry-pick")
            CherryPick(options);
        else
            Report(TSeverity::dsWarning, "GITGRAPH_UNRECOGNIZED_LINE",
                   "A git graph line is commit, branch, checkout, switch, merge or cherry-pick.");
    }

  private:
    void Report(TSeverity severity, const char* code, const std::string& message) {
        fModel.AddDiagnostic(severity, fLine->No, code, message, std::string(fLine->Text));
    }

    // An option the statement does not take is named, and the statement is still made without it.
    void Unexpected(const TOption& option, std::string_view statement) {
        Report(TSeverity::dsWarning, "GITGRAPH_UNKNOWN_OPTION",
               "\"" + (option.Key.empty() ? option.Value : option.Key + ":") + "\" is not an option of " +
                   std::string(statement) + "; it was ignored.");
    }

    // The commit type of a `type:` option; a word that is none is reported and reads as NORMAL.
    TCommitType TypeOption(const TOption& option) {
        if (const auto type = CommitTypeOf(option.Value)) return *type;
        Report(TSeverity::dsError, "GITGRAPH_COMMIT_TYPE",
               "A commit type is NORMAL, REVERSE or HIGHLIGHT, not \"" + option.Value + "\".");
        return TCommitType::ctNormal;
    }

    bool IdTaken(const std::string& id) const { return fIndexOf.contains(id); }

    // The first commit of that id.
    const TQVLGitGraph::TCommit* Find(const std::string& id) const {
        const auto it = fIndexOf.find(id);
        return it == fIndexOf.end() ? nullptr : &fGraph.Commits[it->second];
    }

    // Appends a commit on the current branch, after its head, and makes it the head.
    TQVLGitGraph::TCommit& Add(TQVLGitGraph::TCommit commit, const std::string& id) {
        commit.Id = id.empty() ? AutoId(fGraph.Commits.size(), fCurrent) : id;
        commit.Branch = fCurrent;
        if (const auto& head = fHeads[fCurrent]) commit.Parents.insert(commit.Parents.begin(), *head);
        fHeads[fCurrent] = commit.Id;
        fIndexOf.emplace(commit.Id, fGraph.Commits.size());
        fGraph.Commits.push_back(std::move(commit));
        return fGraph.Commits.back();
    }

    void Commit(const std::vector<TOption>& options) {
        TQVLGitGraph::TCommit commit;
        std::string id;
        for (const TOption& o : options) {
            if (o.Key == "id")
                id = o.Value;
            else if (o.Key == "msg" || o.Key.empty())
                commit.Message = o.Value;
            else if (o.Key == "tag")
                commit.Tags.push_back(o.Value);
            else if (o.Key == "type")
                commit.Type = commit.DrawnType = TypeOption(o);
            else
                Unexpected(o, "commit");
        }
        if (!id.empty() && IdTaken(id))
            Report(TSeverity::dsWarning, "GITGRAPH_DUPLICATE_ID",
                   "Commit id \"" + id + "\" is used already; references to it find the first.");
        Add(std::move(commit), id);
    }

    void Branch(const std::vector<TOption>& options) {
        if (options.empty() || !options[0].Key.empty()) {
            Report(TSeverity::dsError, "GITGRAPH_BRANCH_NAME", "\"branch\" needs the new branch's name.");
            return;
        }
        const std::string& name = options[0].Value;
        std::optional<double> order;
        for (std::size_t i = 1; i < options.size(); ++i) {
            double value = 0;
            if (options[i].Key == "order" && QVLChartNumber(options[i].Value, value))
                order = value;
            else
                Unexpected(options[i], "branch");
        }
        if (fHeads.contains(name)) {
            Report(TSeverity::dsError, "GITGRAPH_BRANCH_EXISTS",
                   "Branch \"" + name + "\" exists already (use \"checkout " + name +
                       "\" to switch to it); switched to it.");
            fCurrent = name;
            return;
        }
        // Branches without an order sit after the main branch in creation order, before those
        // ordered 1 and up; the fraction is the branch's creation index written after "0.".
        double unordered = 0;
        QVLChartNumber("0." + std::to_string(fGraph.Branches.size()), unordered);
        fGraph.Branches.push_back({name, order.value_or(unordered)});
        fHeads[name] = fHeads[fCurrent];
        fCurrent = name;
    }

    void Checkout(const std::vector<TOption>& options) {
        if (options.size() != 1 || !options[0].Key.empty()) {
            Report(TSeverity::dsError, "GITGRAPH_BRANCH_NAME", "\"checkout\" takes one branch name.");
            return;
        }
        const std::string& name = options[0].Value;
        if (!fHeads.contains(name)) {
            Report(TSeverity::dsError, "GITGRAPH_UNKNOWN_BRANCH",
                   "Branch \"" + name + "\" does not exist yet (create it with \"branch " + name + "\").");
            return;
        }
        fCurrent = name;
    }

    void Merge(const std::vector<TOption>& options) {
        if (options.empty() || !options[0].Key.empty()) {
            Report(TSeverity::dsError, "GITGRAPH_BRANCH_NAME", "\"merge\" needs the branch to merge.");
            return;
        }
        const std::string& other = options[0].Value;
        TQVLGitGraph::TCommit merge;
        merge.Type = TCommitType::ctMerge;
        merge.DrawnType = TCommitType::ctMerge;
        std::string id;
        for (std::size_t i = 1; i < options.size(); ++i) {
            const TOption& o = options[i];
            if (o.Key == "id")
                id = o.Value;
            else if (o.Key == "tag")
                merge.Tags.push_back(o.Value);
            else if (o.Key == "type")
                merge.DrawnType = TypeOption(o);
            else
                Unexpected(o, "merge");
        }
        const char* refusal = nullptr;
        std::string why;
        if (other == fCurrent) {
            refusal = "GITGRAPH_MERGE_ITSELF";
            why = "A branch cannot be merged into itself.";
        } else if (!fHeads[fCurrent]) {
            refusal = "GITGRAPH_MERGE_EMPTY_BRANCH";
            why = "The current branch \"" + fCurrent + "\" has no commits to merge into.";
        } else if (!fHeads.contains(other)) {
            refusal = "GITGRAPH_UNKNOWN_BRANCH";
            why = "Branch \"" + other + "\" does not exist, so it cannot be merged.";
        } else if (!fHeads[other]) {
            refusal = "GITGRAPH_MERGE_EMPTY_BRANCH";
            why = "Branch \"" + other + "\" has no commits to merge.";
        } else if (fHeads[other] == fHeads[fCurrent]) {
            refusal = "GITGRAPH_MERGE_NOTHING_NEW";
            why = "Branches \"" + fCurrent + "\" and \"" + other + "\" have the same head: nothing to merge.";
        } else if (!id.empty() && IdTaken(id)) {
            refusal = "GITGRAPH_DUPLICATE_ID";
            why = "Commit id \"" + id + "\" is used already; a merge needs a new one.";
        }
        if (refusal != nullptr) {
            Report(TSeverity::dsError, refusal, why);
            return;
        }
        merge.Message = "merged branch " + other + " into " + fCurrent;
        merge.Parents.push_back(*fHeads[other]);
        Add(std::move(merge), id);
    }

    void CherryPick(const std::vector<TOption>& options) {
        std::string source;
        std::string parent;
        std::optional<std::vector<std::string>> tags;
        for (const TOption& o : options) {
            if (o.Key == "id")
                source = o.Value;
            else if (o.Key == "parent")
                parent = o.Value;
            else if (o.Key == "tag") {
                if (!tags) tags.emplace();
                if (!o.Value.empty()) tags->push_back(o.Value);  // `tag: ""` asks for no tag at all
            } else
                Unexpected(o, "cherry-pick");
        }
        const TQVLGitGraph::TCommit* picked = Find(source);
        const char* refusal = nullptr;
        std::string why;
        if (picked == nullptr) {
            refusal = "GITGRAPH_CHERRY_PICK_SOURCE";
            why = source.empty() ? std::string("\"cherry-pick\" needs the id of the commit to pick.")
                                 : "There is no commit \"" + source + "\" to pick.";
        } else if (!parent.empty() && std::find(picked->Parents.begin(), picked->Parents.end(), parent) ==
                                          picked->Parents.end()) {
            refusal = "GITGRAPH_CHERRY_PICK_PARENT";
            why = "\"" + parent + "\" is not an immediate parent of \"" + source + "\".";
        } else if (picked->Type == TCommitType::ctMerge && parent.empty()) {
            refusal = "GITGRAPH_CHERRY_PICK_PARENT";
            why = "Picking merge commit \"" + source + "\" needs the parent to follow (parent: \"id\").";
        } else if (picked->Branch == fCurrent) {
            refusal = "GITGRAPH_CHERRY_PICK_SAME_BRANCH";
            why = "Commit \"" + source + "\" is on the current branch already.";
        } else if (!fHeads[fCurrent]) {
            refusal = "GITGRAPH_CHERRY_PICK_EMPTY_BRANCH";
            why = "The current branch \"" + fCurrent + "\" has no commits to pick onto.";
        }
        if (refusal != nullptr) {
            Report(TSeverity::dsError, refusal, why);
            return;
        }
        TQVLGitGraph::TCommit pick;
        pick.Type = pick.DrawnType = TCommitType::ctCherryPick;
        pick.Message = "cherry-picked " + picked->Message + " into " + fCurrent;
        pick.Tags = tags.value_or(std::vector<std::string>{
            "cherry-pick:" + source + (picked->Type == TCommitType::ctMerge ? "|parent:" + parent : "")});
        pick.Parents.push_back(source);
        Add(std::move(pick), {});
    }

    TORXDiagramModel& fModel;
    TQVLGitGraph& fGraph;
    std::string fCurrent;
    std::map<std::string, std::optional<std::string>> fHeads;  // branch -> its head commit, if any
    std::map<std::string, std::size_t> fIndexOf;               // commit id -> the first commit of that id
    const TUmlLine* fLine = nullptr;
};

}  // namespace

std::string_view QVLGitCommitTypeName(TQVLGitGraph::TCommitType aType) {
    switch (aType) {
        case TCommitType::ctNormal:
            return "NORMAL";
        case TCommitType::ctReverse:
            return "REVERSE";
        case TCommitType::ctHighlight:
            return "HIGHLIGHT";
        case TCommitType::ctMerge:
            return "MERGE";
        case TCommitType::ctCherryPick:
            return "CHERRY_PICK";
    }
    return "NORMAL";
}

void TQVLGitGraph::WriteJson(TJSON& aOut) const {
    TJSON branches = TJSON::array();
    for (const TBranch& b : Branches) branches.push_back(b.Name);
    aOut["branches"] = std::move(branches);
    TJSON commits = TJSON::array();
    for (const TCommit& c : Commits) {
        std::string tag;
        for (const std::string& t : c.Tags) tag += (tag.empty() ? "" : ", ") + t;
        commits.push_back(TJSON{{"id", c.Id},
                                {"branch", c.Branch},
                                {"type", QVLGitCommitTypeName(c.Type)},
                                {"tag", tag},
                                {"parents", c.Parents}});
    }
    aOut["commits"] = std::move(commits);
}

std::vector<std::size_t> TQVLGitGraph::LaneOrder() const {
    std::vector<std::size_t> order(Branches.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [this](std::size_t a, std::size_t b) { return Branches[a].Order < Branches[b].Order; });
    return order;
}

bool QVLReadGitGraph(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    std::size_t headerLine = 0;
    if (QVLMermaidHeaderWord(aText, &headerLine) != "gitgraph") return false;

    static const TRegex kHeader(R"(^gitGraph\s*(?:(LR|TB|BT)\s*)?:?\s*$)", {TRegexFlag::rfCaseless});
    static const TRegex kTitle(R"(^title\s+(.*)$)");
    auto graph = std::make_shared<TQVLGitGraph>();
    aModel.fTitle = QVLFrontMatterValue(aText, "title");
    graph->ShowBranches = QVLChartConfigFlag(aText, "showBranches", true);
    graph->ShowCommitLabels = QVLChartConfigFlag(aText, "showCommitLabel", true);
    graph->ParallelCommits = QVLChartConfigFlag(aText, "parallelCommits", false);
    std::string mainBranch = QVLChartConfigValue(aText, "mainBranchName").value_or("main");
    if (mainBranch.empty()) mainBranch = "main";
    double mainOrder = 0;
    if (const auto order = QVLChartConfigValue(aText, "mainBranchOrder"))
        if (!QVLChartNumber(*order, mainOrder)) mainOrder = 0;
    TGitGraphReader reader(aModel, *graph, mainBranch, mainOrder);

    const TQVLChartLines lines = QVLChartLines(aText, headerLine);
    TRegexMatch m;
    if (!kHeader.MatchAt(lines.Header.Text, 0, m)) {
        aModel.AddDiagnostic(TSeverity::dsWarning, lines.Header.No, "GITGRAPH_HEADER",
                             "A git graph starts with gitGraph, gitGraph:, or gitGraph LR:/TB:/BT:.",
                             std::string(lines.Header.Text));
    } else {
        const std::string dir = Qvl::Utils::ToLowerAscii(m.Group(1));
        if (dir == "tb") graph->Direction = TQVLGitGraph::TDirection::gdTopBottom;
        if (dir == "bt") graph->Direction = TQVLGitGraph::TDirection::gdBottomTop;
    }
    for (const TUmlLine& line : lines.Body) {
        if (kTitle.MatchAt(line.Text, 0, m))
            aModel.fTitle = std::string(Trim(m.Group(1)));
        else
            reader.Statement(line);
    }
    aModel.SetChart(std::move(graph));
    return true;
}

}  // namespace Orvex
