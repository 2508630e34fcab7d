// Generated diagram texts shared by the benchmarks.
#pragma once

#include <string>

namespace OrvexBench {

// A Mermaid flowchart of the given number of nodes: every node shape and every link operator, labelled
// and not, with comments, as real charts mix them; the nodes form a binary tree. bench/peers/gen_mermaid.py
// writes the same text for the comparisons with other programs.
std::string MermaidFlowchart(int nodes);

}  // namespace OrvexBench
