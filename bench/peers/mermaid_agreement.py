"""Compares mermaid's diagram databases (one JSON line per file, from mermaid_agreement.mjs) with
`orvex parse` (file, tab, JSON per line) and prints the agreement per aspect and per file."""
import collections
import json
import os
import re
import sys

ASPECTS = ("nodes", "links", "containers", "styles", "members")


def region_aware(groups, parent_of):
    """Container names that survive the two parsers' different naming of concurrent regions: a region
    (mermaid "divider-id-N" or "id-...", ours "State#N") is named by its composite state."""
    names = {}
    for g in groups:
        names[g["id"]] = g["id"]
    for g in groups:
        if is_region(g["id"]):
            names[g["id"]] = "region@" + names.get(parent_of.get(g["id"], ""), "")
    return names


def is_region(name):
    return bool(re.match(r"^(divider-id-\d+|id-[a-z0-9]+-\d+)$", name)) or "#" in name


def pseudo(name, parent):
    """Start and end markers of state diagrams, named by where they stand: "*start@Parent"."""
    if name.endswith("[*]start") or name in ("root_start",) or name.endswith("_start"):
        return "*start@" + parent
    if name.endswith("[*]end") or name in ("root_end",) or name.endswith("_end"):
        return "*end@" + parent
    return None


def theirs_view(t):
    groups = t.get("groups", [])
    parent_of = {g["id"]: g.get("parent", "") for g in groups}
    names = region_aware(groups, parent_of)
    node_parent = {n["id"]: names.get(n.get("parent", ""), n.get("parent", "")) for n in t["nodes"]}
    state = t["kind"].startswith("state")

    def node_name(n):
        if state:
            p = pseudo(n, node_parent.get(n, ""))
            if p:
                return p
        return n

    return {
        "nodes": collections.Counter(node_name(n["id"]) for n in t["nodes"]),
        "links": collections.Counter((node_name(a), node_name(b)) for a, b in t["links"]),
        "containers": collections.Counter(names[g["id"]] for g in groups),
        "styles": {node_name(n["id"]) for n in t["nodes"] if n.get("styled")}
        | {names[g["id"]] for g in groups if g.get("styled")},
        "members": {k: v for k, v in t.get("members", {}).items() if v},
    }


def ours_view(o, kind):
    groups = o.get("groups", [])
    parent_of = {g["id"]: g.get("parent", "") for g in groups}
    names = region_aware(groups, parent_of)
    state = kind.startswith("state")
    nodes = [n for n in o["nodes"] if n.get("role") != "note"]
    notes = {n["id"] for n in o["nodes"] if n.get("role") == "note"}
    node_parent = {n["id"]: names.get(n.get("group", ""), n.get("group", "")) for n in nodes}

    def node_name(n):
        if state and n in node_parent:
            p = pseudo(n, node_parent[n]) if "[*]" in n else None
            if p:
                return p
        return n

    members = {}
    # Class members and entity attributes; a state's description lines are no members.
    for n in nodes if kind.startswith(("class", "er")) else []:
        count = sum(len(c) for c in n.get("compartments", []))
        if count:
            members[n["id"]] = count
    return {
        "nodes": collections.Counter(node_name(n["id"]) for n in nodes),
        "links": collections.Counter(
            (node_name(e["from"]), node_name(e["to"]))
            for e in o["edges"]
            if e["from"] not in notes and e["to"] not in notes
        ),
        "containers": collections.Counter(names[g["id"]] for g in groups),
        "styles": {node_name(n["id"]) for n in nodes if n.get("style")}
        | {names[g["id"]] for g in groups if g.get("style")},
        "members": members,
    }


def main():
    theirs_path, ours_path, root = sys.argv[1:4]
    verbose = os.environ.get("AGREEMENT_VERBOSE") == "1"
    ours = {}
    for line in open(ours_path, encoding="utf-8"):
        name, _, text = line.rstrip("\n").partition("\t")
        ours[name] = json.loads(text) if text.strip() else None
    compared = agreed = 0
    per_aspect = collections.Counter()
    skipped = collections.Counter()
    for line in open(theirs_path, encoding="utf-8"):
        t = json.loads(line)
        if "skip" in t:
            skipped[t["skip"].split(":")[0]] += 1
            continue
        compared += 1
        o = ours.get(t["file"])
        shown = os.path.relpath(t["file"], root) if t["file"].startswith(root) else os.path.basename(t["file"])
        if o is None:
            print(f"  {shown}: orvex refused it")
            continue
        a, b = theirs_view(t), ours_view(o, t["kind"])
        differ = [x for x in ASPECTS if a[x] != b[x]]
        for x in ASPECTS:
            if x not in differ:
                per_aspect[x] += 1
        if not differ:
            agreed += 1
        else:
            print(f"  {shown} ({t['kind']}): differs in {', '.join(differ)}")
            if verbose:
                for x in differ:
                    print(f"      {x}: mermaid {dict(a[x]) if isinstance(a[x], dict) else sorted(a[x])}")
                    print(f"      {x}: orvex   {dict(b[x]) if isinstance(b[x], dict) else sorted(b[x])}")
    print(f"graph-like diagrams compared: {compared}; not compared: "
          + ", ".join(f"{n} {why}" for why, n in sorted(skipped.items())))
    if compared:
        print(f"files in full agreement: {agreed} of {compared} ({100 * agreed / compared:.1f}%)")
        for x in ASPECTS:
            print(f"  {x:<10} {per_aspect[x]} of {compared} ({100 * per_aspect[x] / compared:.1f}%)")


main()
