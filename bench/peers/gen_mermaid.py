#!/usr/bin/env python3
"""Writes a Mermaid flowchart of N nodes: every node shape and link operator, labelled and unlabelled
links, comments. The same text as MermaidFlowchart in bench/diagrams_bench.cpp."""
import sys

SHAPES = [("[", "]"), ("(", ")"), ("((", "))"), ("{", "}"), ("{{", "}}"), ("[(", ")]"), ("[[", "]]"),
          (">", "]"), ("[/", "/]"), ("([", "])")]
LINKS = ["-->", "---", "-.->", "==>", "===", "--o", "--x", "--->", "-..->", "----"]
TEXT_LINKS = [("--", "-->"), ("-.", ".->"), ("==", "==>")]


def flowchart(nodes):
    out = ["flowchart TD\n"]
    for i in range(nodes):
        node = f"n{i}"
        opening, closing = SHAPES[i % 10]
        if i % 25 == 0:
            out.append(f"%% block {i // 25}\n")
        out.append(f"{node}{opening}Node {i}{closing}\n")
        if i == 0:
            continue
        source = f"n{i // 2}"
        link = LINKS[i % 10]
        if i % 3 == 0:
            out.append(f"{source} {link}|edge {i}| {node}\n")
        elif i % 6 == 1:
            opening, closing = TEXT_LINKS[(i // 6) % 3]
            out.append(f"{source} {opening} edge {i} {closing} {node}\n")
        else:
            out.append(f"{source} {link} {node}\n")
    return "".join(out)


if __name__ == "__main__":
    sys.stdout.write(flowchart(int(sys.argv[1])))
