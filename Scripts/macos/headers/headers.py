#!/usr/bin/env python3
"""Generates Objective-C++ headers of the macOS frameworks, with which a machine without an SDK can
check syntax and types. Usage: headers.py PACKAGE DECLARATIONS OUT [SOURCE...]

The class frameworks are generated completely, the C frameworks only as far as the sources use them.
A framework's hand-written declarations follow the generated ones and replace those of the same
names."""
import os
import re

import typescript as dts
from frameworks import (BRINGS, CF_REFS, NAMED, OPTIONS, STRUCT_NAMES, WHOLE, Unknown, argument, classes, constants,
                        ctype, declarator, enum_rows, enum_values, frameworks, from_ts, functions, generics,
                        hand_names, handwritten, named, out, owner_of_class, prelude, prelude_names, protocol_name,
                        protocols, structs, ts_class, ts_protocol, type_rows, used_classes, used_enums,
                        used_protocols, used_structs, whole_classes, whole_protocols)

skipped = []


def members(name, entry, side, generic, audited):
    out_lines = []
    accessors = set()
    lines_by_optional = {False: [], True: []}
    for m in entry["members"]:
        if m["kind"] != "property":
            continue
        accessors |= {(m["static"], m["getter"]), (m["static"], m.get("setter"))}
        ts = (side.get((m["name"], m["static"], None)) or {})
        try:
            t = type_rows.get((name, m["name"])) or ctype(m["type"], ts.get("type"), generic)
        except Unknown as e:
            skipped.append(f"{name}.{m['name']}: {e}")
            continue
        attrs = ["nonatomic"] + (["class"] if m["static"] else []) + (["readonly"] if m["readonly"] else [])
        if m["getter"] != m["name"]:
            attrs.append("getter=" + m["getter"])
        if not m["readonly"] and m["setter"] != "set" + m["name"][:1].upper() + m["name"][1:] + ":":
            attrs.append("setter=" + m["setter"])
        pname = m["name"].removesuffix("$")
        if t.startswith("instancetype"):
            t = name + " *"
        line = "@property (%s) %s;" % (", ".join(attrs), declarator(t, pname))
        if pname in ("template", "operator", "export", "delete", "new", "class", "private", "public", "default"):
            line = "- (%s)%s;" % (t, m["getter"]) + ("" if m["readonly"] else "\n- (void)%s(%s)value;" % (m["setter"], t))
        # A property already declares its accessors, so the methods of the same names are skipped.
        lines_by_optional[bool(ts.get("optional"))].append(line)
    for m in entry["members"]:
        if m["kind"] != "method" or (m["static"], m["selector"]) in accessors:
            continue
        if m["selector"] in ("retain", "release", "autorelease", "retainCount", "dealloc", "finalize", "zone", "load", "initialize"):
            if m["selector"] != "dealloc":
                continue
        parts = m["selector"].split(":")
        argc = m["selector"].count(":")
        ts = side.get((dts.js_selector(m["selector"]), m["static"], argc)) or {}
        params = ts.get("params") or [("a%d" % i, None) for i in range(argc)]
        try:
            override = type_rows.get((name, m["selector"]))
            if override:
                out_lines = [t.strip() for t in override.split(";")]
                result, types = out_lines[0], out_lines[1:]
            elif m["variadic"]:
                result = ctype(m["result"], ts.get("result"), generic)
                types = [from_ts(t) for _, t in params]
            else:
                result = ctype(m["result"], ts.get("result"), generic)
                types = [argument(a, t, generic) for a, (_, t) in zip(m["args"], params)]
                if m["selector"] in ("arrayWithObjects:count:", "initWithObjects:count:", "setWithObjects:count:"):
                    types[0] = "const id *"
                if m["selector"] in ("dictionaryWithObjects:forKeys:count:", "initWithObjects:forKeys:count:"):
                    types[0] = types[1] = "const id *"
                if len(types) != argc:
                    raise Unknown("arguments")
        except Unknown as e:
            skipped.append(f"{name} {m['selector']}: {e}")
            continue
        text = ("+ " if m["static"] else "- ") + "(%s)" % result
        if not argc:
            text += m["selector"]
        else:
            for i in range(argc):
                null = ""
                object_ = types[i] == "id" or re.match(r"^id<[^*]*>$", types[i]) or (
                    re.match(r"^\w+(<[^*]*>)? \*$", types[i]) and re.match(r"\w+", types[i]).group() in classes)
                if audited and object_ and i < len(params) and params[i][1]:
                    null = "nullable " if "| null" in params[i][1] else "nonnull "
                text += "%s%s:(%s%s)%s" % (" " if i else "", parts[i], null, types[i], "a%d" % i)
        if m["variadic"]:
            text += ", ..."
        if m["owned"] and not re.match(r"_*(alloc|new|copy|mutableCopy)([^a-z]|$)", m["selector"]):
            text += " __attribute__((ns_returns_retained))"
        elif not m["owned"] and re.match(r"_*(alloc|new|copy|mutableCopy)([^a-z]|$)", m["selector"]) and "*" in result:
            pass
        lines_by_optional[bool(ts.get("optional"))].append(text + ";")
    return lines_by_optional


def enum_text(name):
    n, values = enum_values[name]
    prefix, suffix, under = enum_rows.get(name, ["-", "-", "-"])
    full = [m for m, _ in values if len(values) > 1 and m.startswith(name[:4]) and name.startswith(m[:3])]
    if prefix == "-":
        prefix = name
        if len(full) == 1 and full[0].startswith(name):
            prefix = full[0]
        elif name.endswith(("Flags", "Options", "Types")) and name not in enum_rows:
            prefix = name[:-1]
    elif prefix == "=":
        prefix = ""
    suffix = "" if suffix == "-" else suffix
    if under == "-":
        under = "uint32_t" if name.startswith("CG") else "NSInteger" if any(v < 0 for _, v in values) and not OPTIONS.search(name) else "NSUInteger"
    bits = 32 if "32" in under else 64
    signed = not under.startswith("u") and under != "NSUInteger"
    lines = []
    seen = set()
    for m, v in values:
        fn = m if m in full or m.startswith(prefix or "\0") else prefix + m + suffix
        if fn in seen or not re.match(r"^[A-Za-z_]\w*$", fn):
            continue
        seen.add(fn)
        if fn in hand_names or fn in emitted_enumerators:
            continue
        emitted_enumerators.add(fn)
        # A row in enumerations.txt confirms the spelling.
        doubt = "" if name in enum_rows else ' [[deprecated("spelling not confirmed by a row in enumerations.txt")]]'
        if not signed:
            v &= (1 << bits) - 1
            lines.append(f"  {fn}{doubt} = {v}u{'ll' if v >> 31 else ''},")
        else:
            lines.append(f"  {fn}{doubt} = {v},")
    text = f"enum {name} : {under} {{\n" + "\n".join(lines) + "\n};\n"
    if OPTIONS.search(name):
        text += f"KARVO_OPTIONS({name})\n"
    return text


emitted_enumerators = set()


def class_order(names):
    done, order = set(), []

    def visit(c):
        if c in done or c not in classes:
            return
        done.add(c)
        if classes[c]["superclass"]:
            visit(classes[c]["superclass"])
        order.append(c)
    for c in sorted(names):
        visit(c)
    return order


os.makedirs(out, exist_ok=True)
body = {n: [] for n in WHOLE + NAMED}
all_names = class_order(whole_classes)
framework_of = {}
for c in all_names:
    framework_of[c] = owner_of_class.get(c) if owner_of_class.get(c) in WHOLE else "Foundation"
audit = {n: f.nullable > 40 for n, f in frameworks.items()}
audit["LocalAuthentication"] = True

protocol_text = {}
for p in sorted(whole_protocols):
    owner = next((n for n in WHOLE if p in frameworks[n].protocols), "Foundation")
    lines = members(p, protocols[p], ts_protocol.get(p, {}), (), audit.get(owner, False))
    parents = [protocol_name(q) for q in protocols[p]["protocols"] if q in whole_protocols]
    text = "@protocol %s%s\n" % (protocol_name(p), "<%s>" % ", ".join(parents) if parents else "")
    text += "\n".join(lines[False])
    if lines[True]:
        text += "\n@optional\n" + "\n".join(lines[True])
    protocol_text[p] = (owner, text + "\n@end\n")


def emit_protocol(p, done, where):
    if p in done or p not in whole_protocols:
        return
    done.add(p)
    for q in protocols[p]["protocols"]:
        emit_protocol(q, done, where)
    body[protocol_text[p][0]].append(protocol_text[p][1])


done = set()
for n in WHOLE:
    for p in sorted(whole_protocols):
        if protocol_text[p][0] == n:
            emit_protocol(p, done, n)

for c in all_names:
    n = framework_of[c]
    g = generics.get(c, ())
    lines = members(c, classes[c], ts_class.get(c, {}), g, audit.get(n, False))
    sup = classes[c]["superclass"]
    conform = [protocol_name(p) for p in classes[c]["protocols"] if p in whole_protocols]
    text = "@interface %s%s%s%s\n" % (c, "<%s>" % ", ".join("__covariant " + x for x in g) if g else "",
                                      " : " + sup if sup else "", " <%s>" % ", ".join(conform) if conform else "")
    if not sup:
        text = "__attribute__((objc_root_class))\n" + text
    text += "\n".join(lines[False] + lines[True]) + "\n@end\n"
    body[n].append(text)

missing_functions = []
for n in WHOLE + NAMED:
    f = frameworks[n]
    for name, (params, result_ts) in sorted(f.functions.items()):
        if name in hand_names or name not in functions or (n in NAMED and name not in named):
            continue
        if n == "Runtime" and not name.startswith(("dispatch_", "objc_", "xpc_")):
            continue  # This machine's own headers declare the C library.
        r, a, v = functions[name]
        try:
            if v:
                args = [from_ts(t) for _, t in params] + ["..."]
                result = ctype(r, result_ts, (), True)
            else:
                result = ctype(r, result_ts, (), True)
                args = [argument(x, t, (), True) for x, (_, t) in zip(a, params)]
            body[n].append('extern "C" %s;\n' % declarator(result, "%s(%s)" % (name, ", ".join(args) or "void")))
        except Unknown as e:
            skipped.append(f"{name}(): {e}")
    for name, ts in sorted(f.consts.items()):
        if name in hand_names or name not in constants or (n in NAMED and name not in named):
            continue
        how, v = constants[name]
        if how == "int":
            body[n].append(f"constexpr {'int' if -2**31 <= v < 2**31 else 'unsigned' if 0 <= v < 2**32 else 'long long'} {name} = {v if v > -2**63 else '(-9223372036854775807LL - 1)'};\n")
        elif how == "double":
            body[n].append(f"constexpr double {name} = {v!r};\n".replace("inf", "__builtin_inf()").replace("nan", '__builtin_nan("")'))
        elif how == "type":
            try:
                t = ctype(v, ts, (), True)
                body[n].append('extern "C" %s;\n' % declarator(t + (" const" if t.endswith("*") else ""), " " + name).replace("  ", " "))
            except Unknown as e:
                skipped.append(f"{name}: {e}")

# Enumerations that members use, and those that the sources name.
for e, (n, values) in enum_values.items():
    if e in named or n in WHOLE:
        used_enums.add(e)
enum_body = "".join(enum_text(e) for e in sorted(used_enums) if re.match(r"^\w+$", e) and e not in prelude_names)

struct_body, struct_done = [], set()
# Defined by this machine's C library.
C_STRUCTS = {"timespec", "timeval", "stat", "tm", "rlimit", "rusage", "flock"}


def emit_struct(name):
    if name in struct_done:
        return
    struct_done.add(name)
    if STRUCT_NAMES.get(name, name) in prelude_names or name in prelude_names or name in C_STRUCTS:
        return
    size, fields = structs.get(name, (0, []))
    if not re.match(r"^\w+$", name):
        return
    lines = []
    try:
        for fname, _, t in fields:
            inner = t
            while inner[0] in ("Array",):
                inner = inner[2]
            if inner[0] == "Struct" and inner[1]:
                emit_struct(inner[1])
            if t[0] == "Array":
                lines.append("  %s[%d];" % (declarator(ctype(t[2], None), fname), t[1]))
            else:
                ct = ctype(t, None)
                if "id" in ct.split("<")[0].split() or (t[0] in ("ClassObject", "AnyObject", "NSStringObject")):
                    raise Unknown("object")
                lines.append("  %s;" % declarator(ct, fname))
    except Unknown:
        lines = None
    struct_body.append(f"struct {name};\n" if not fields or lines is None else f"struct {name} {{\n" + "\n".join(lines) + "\n};\n")


used_structs.update({s for f in frameworks.values() for s in f.structs if s in structs and s in named | hand_names})
while used_structs - struct_done:
    for s in sorted(used_structs - struct_done):
        emit_struct(s)

forward = "".join(f"@class {c};\n" for c in sorted((used_classes | whole_classes)) if c not in generics)
forward += "".join("@class %s<%s>;\n" % (c, ", ".join("__covariant " + g for g in generics[c])) for c in sorted(used_classes | whole_classes) if c in generics)
forward += "".join(f"@protocol {protocol_name(p)};\n" for p in sorted(used_protocols | whole_protocols))
forward += "".join(f"struct {s};\n" for s in sorted(struct_done) if re.match(r"^\w+$", s) and s not in prelude_names and STRUCT_NAMES.get(s, s) not in prelude_names)
refs = "".join(f"typedef struct {s} *{r};\n" for s, r in sorted(CF_REFS.items()) if not s.startswith("__CF") and r not in prelude_names)
system = "#pragma once\n#pragma clang system_header\n"


def write(path, text):
    """Leaves a file that is up to date, so that nothing is compiled again because of it."""
    if os.path.exists(path) and open(path).read() == text:
        return
    with open(path, "w") as f:
        f.write(text)


write(f"{out}/_types.h", system + prelude + refs + enum_body + forward + "".join(struct_body))
for n in WHOLE + NAMED:
    folder = f"{out}/{n}"
    if n == "Runtime":
        folder = f"{out}/_runtime"
    os.makedirs(folder, exist_ok=True)
    write(f"{folder}/{n}.h", system + '#include "../_types.h"\n'
          + "".join(f"#include <{b}/{'Runtime' if b == '_runtime' else b}.h>\n" for b in BRINGS.get(n, []))
          + "".join(body[n]) + handwritten[n])
write(f"{out}/skipped.txt", "\n".join(skipped) + "\n")
print(f"{len(all_names)} classes, {len(done)} protocols, {len(used_enums)} enumerations, "
      f"{sum(len(b) for b in body.values())} declarations, {len(skipped)} skipped")
