// The generated diagram texts.
#include "bench/generated_charts.h"

namespace OrvexBench {

std::string MermaidFlowchart(int nodes) {
    static const char* const shapes[][2] = {{"[", "]"},   {"(", ")"},   {"((", "))"}, {"{", "}"},
                                            {"{{", "}}"}, {"[(", ")]"}, {"[[", "]]"}, {">", "]"},
                                            {"[/", "/]"}, {"([", "])"}};
    static const char* const links[] = {
        "-->", "---", "-.->", "==>", "===", "--o", "--x", "--->", "-..->", "----"};
    static const char* const textLinks[][2] = {{"--", "-->"}, {"-.", ".->"}, {"==", "==>"}};
    std::string text = "flowchart TD\n";
    for (int i = 0; i < nodes; ++i) {
        const std::string id = "n" + std::to_string(i);
        const auto* shape = shapes[i % 10];
        if (i % 25 == 0) text += "%% block " + std::to_string(i / 25) + "\n";
        text += id + shape[0] + "Node " + std::to_string(i) + shape[1] + "\n";
        if (i == 0) continue;
        const std::string from = "n" + std::to_string(i / 2);  // a binary tree
        const char* link = links[i % 10];
        if (i % 3 == 0) {
            text += from + " " + link + "|edge " + std::to_string(i) + "| " + id + "\n";
        } else if (i % 6 == 1) {
            const auto* textLink = textLinks[(i / 6) % 3];
            text +=
                from + " " + textLink[0] + " edge " + std::to_string(i) + " " + textLink[1] + " " + id + "\n";
        } else {
            text += from + " " + link + " " + id + "\n";
        }
    }
    return text;
}

}  // namespace OrvexBench
