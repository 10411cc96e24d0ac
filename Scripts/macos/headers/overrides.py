#!/usr/bin/env python3
"""Prints every method of an @implementation that nothing declares (neither its @interface, nor a
superclass, nor a protocol) and that no source calls. Such a method is usually a misspelled
override, which no compiler reports. Usage: overrides.py PACKAGE DECLARATIONS SOURCE..."""
import glob
import re
import sys

from metadata import Reader
package, declarations, *sources = sys.argv[1:]
r = Reader([p for p in glob.glob(f"{package}/build/**/NativeScript", recursive=True) if "dSYM" not in p][0])
C, P = r.all_classes(), r.all_protocols()
for c, p in [l.split() for l in open(declarations + "/conforms.txt") if l.strip() and l[0] != "#"]:
    C[c]["protocols"].append(p)
text = "\n".join(open(s).read() for s in sources)
text = re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.S)


def selectors(block):
    out = set()
    for m in re.finditer(r"^\s*[-+]\s*\(.*?(?=[{;])", block, re.S | re.M):
        s = m.group(0)
        s = re.sub(r"^\s*[-+]\s*", "", s)
        while True:  # Remove nested parentheses, innermost first.
            t = re.sub(r"\([^()]*\)", "", s)
            if t == s:
                break
            s = t
        parts = re.findall(r"(\w+)\s*:", s)
        out.add("".join(p + ":" for p in parts) if parts else s.strip())
    for m in re.finditer(r"@property\s*(?:\([^)]*\))?[^;]*?(\w+)\s*;", block):
        n = m.group(1)
        out |= {n, "set" + n[0].upper() + n[1:] + ":"}
    return out


def known(members):
    out = set()
    for m in members:
        out |= {m["selector"]} if m["kind"] == "method" else {m["getter"], m.get("setter")}
    return out


def of_protocol(p):
    d = P.get(p) or P.get(p + "Protocol")
    if not d:
        return set()
    return known(d["members"]).union(*[of_protocol(q) for q in d["protocols"]], set())


def of_class(c):
    out = set()
    while c in C:
        out |= known(C[c]["members"]).union(*[of_protocol(p) for p in C[c]["protocols"]], set())
        c = C[c]["superclass"]
    return out


bases, declared = {}, {}
for m in re.finditer(r"@interface\s+(\w+)\s*(?::\s*(\w+))?\s*(?:\([^)]*\))?\s*(?:<([^>]*)>)?(.*?)@end", text, re.S):
    name, sup, protos, block = m.groups()
    if sup:
        bases[name] = sup
    declared.setdefault(name, set()).update(selectors(block))
    for p in (protos or "").split(","):
        declared[name] |= of_protocol(p.strip())
bad = 0
for m in re.finditer(r"@implementation\s+(\w+)\s*(.*?)@end", text, re.S):
    name, block = m.groups()
    ok, c = set(declared.get(name, ())), bases.get(name)
    while c:
        ok |= declared.get(c, set())
        if c in C:
            ok |= of_class(c)
            break
        c = bases.get(c)
    for s in sorted(selectors(block) - ok):
        # A private method is called somewhere besides its definition.
        if len(re.findall(rf"\b{re.escape(s.split(':')[0])}\b", text)) > 1:
            continue
        print(f"{name}: nothing declares {s}")
        bad = 1
sys.exit(bad)
