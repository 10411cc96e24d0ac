"""Loads the package's description of the frameworks, and derives Objective-C types from it. The
program's arguments are those of headers.py."""
import glob
import os
import re
import sys
import typescript as dts
from metadata import Reader

package, hand, out = sys.argv[1:4]
sources = sys.argv[4:]

# Frameworks that are generated completely, each after those that it depends on.
WHOLE = ["CoreFoundation", "Foundation", "CoreGraphics", "QuartzCore", "UniformTypeIdentifiers", "AppKit",
         "LocalAuthentication", "LocalAuthenticationEmbeddedUI", "OpenDirectory", "Collaboration", "ServiceManagement"]
NAMED = ["CoreServices", "IOKit", "Carbon", "ApplicationServices", "Security", "Runtime"]
# The headers that an umbrella header includes.
BRINGS = {"Foundation": ["CoreFoundation", "_runtime"], "CoreGraphics": ["CoreFoundation", "IOKit"],
          "QuartzCore": ["Foundation", "CoreGraphics"], "UniformTypeIdentifiers": ["Foundation"],
          "AppKit": ["Foundation", "CoreGraphics", "QuartzCore", "ApplicationServices"],
          "LocalAuthentication": ["Foundation"], "LocalAuthenticationEmbeddedUI": ["AppKit", "LocalAuthentication"], "OpenDirectory": ["Foundation"],
          "Collaboration": ["AppKit"], "ServiceManagement": ["Foundation"], "CoreServices": ["CoreFoundation", "_runtime"],
          "IOKit": ["CoreFoundation"], "Carbon": ["CoreServices", "ApplicationServices"],
          "ApplicationServices": ["CoreServices", "CoreGraphics"], "Security": ["CoreFoundation"],
          "Runtime": []}

binary = [p for p in glob.glob(f"{package}/build/**/NativeScript", recursive=True) if "dSYM" not in p][0]
meta = Reader(binary)
classes, protocols = meta.all_classes(), meta.all_protocols()
functions, constants, structs = meta.all_functions(), meta.all_constants(), meta.all_structs()
frameworks = {n: dts.Framework(n, f"{package}/types/{n}.d.ts") for n in WHOLE + NAMED}

for c, p in [l.split() for l in open(f"{hand}/conforms.txt") if l.strip() and l[0] != "#"]:
    classes[c]["protocols"].append(p)  # The package lacks the protocols that categories add.

named = set()
for s in sources:
    named |= set(re.findall(r"\w+", open(s).read()))


def rows(name):
    path = f"{hand}/{name}"
    if not os.path.exists(path):
        return []
    return [l.split() for l in open(path) if l.strip() and not l.startswith("#")]


# For each enumeration: prefix and suffix of its members, underlying type; "-" is the default.
enum_rows = {r[0]: (r + ["-"] * 4)[1:4] for r in rows("enumerations.txt")}
# For each class and property or selector: the Core Foundation type that the metadata calls an
# object.
type_rows = {(r[0], r[1]): " ".join(r[2:]) for r in rows("types.txt")}
handwritten = {}
for n in frameworks:
    p = f"{hand}/{n}.h"
    handwritten[n] = open(p).read() if os.path.exists(p) else ""
prelude = open(f"{hand}/Prelude.h").read()
hand_names = set(re.findall(r"\w+", " ".join(handwritten.values()) + prelude))
prelude_names = set(re.findall(r"\w+", prelude))

owner_of_class, enum_values = {}, {}
ts_class, ts_protocol, generics = {}, {}, {}
for n, f in frameworks.items():
    for c in f.classes:
        ts_class.setdefault(c, f.classes[c])
        owner_of_class.setdefault(c, n)
    for p in f.protocols:
        ts_protocol.setdefault(p, f.protocols[p])
    for e in f.enums:
        enum_values.setdefault(e, (n, f.enums[e]))
    generics.update(f.generics)
whole_classes = {c for n in WHOLE for c in frameworks[n].classes if c in classes}
whole_protocols = {p for n in WHOLE for p in frameworks[n].protocols if p in protocols}
for base in ("NSObject", "NSProxy"):
    whole_classes.add(base)
whole_protocols.add("NSObjectProtocol")

STRUCT_NAMES = {"_NSRange": "NSRange", "_NSZone": "NSZone"}
OPTIONS = re.compile(r"(Options|Mask|Flags|MaskOptions|CollectionBehavior|StyleMask|Option)$")
SIMPLE = {"Char": "signed char", "SInt": "int", "SShort": "short", "SLong": "long", "SInt64": "NSInteger",
          "UChar": "unsigned char", "UInt": "unsigned int", "UShort": "unsigned short",
          "ULong": "unsigned long", "UInt64": "NSUInteger", "Float": "float", "Double": "double",
          "UInt8": "unsigned char", "Void": "void", "String": "const char *", "InstanceObject": "instancetype",
          "NSStringObject": "NSString *", "NSMutableStringObject": "NSMutableString *", "Class": "Class",
          "Selector": "SEL", "OpaquePointer": "void *", "Bool": "BOOL", "LongDouble": "long double",
          "UInt128": "unsigned __int128"}

used_enums, used_structs, used_classes, used_protocols = set(), set(), set(), set()


class Unknown(Exception):
    pass


def protocol_name(p):
    return p[:-8] if p.endswith("Protocol") and p[:-8] in classes else p


def ctype(t, ts, generic=(), function=False):
    """Returns the Objective-C type of a decoded type; `ts` is its TypeScript type, or None."""
    enum = dts.enum_of(ts)
    if enum and enum in enum_values:
        used_enums.add(enum)
        return enum
    kind = t[0]
    if kind == "UInt8" and ts == "boolean":
        return "BOOL"
    if kind in SIMPLE:
        return SIMPLE[kind]
    if kind == "AnyObject":
        if function:
            return "CFTypeRef"
        bare = (ts or "").removesuffix("| null").strip()
        return bare if bare in generic else "id"
    if kind == "ProtocolObject":
        used_protocols.update(t[1])
        return "id<%s>" % ", ".join(map(protocol_name, t[1]))
    if kind == "ClassObject":
        used_classes.add(t[1])
        used_protocols.update(t[2])
        args = ""
        m = re.match(r"%s<([\w.]+)(?:, ([\w.]+))?>" % re.escape(t[1]), ts or "")
        if m and t[1] in generics and all(a in generic for a in m.groups() if a):
            args = "<%s>" % ", ".join(a for a in m.groups() if a)
        return "%s%s *" % (t[1], args or ("<%s>" % ", ".join(map(protocol_name, t[2])) if t[2] else ""))
    if kind == "Struct":
        name = t[1]
        if not name or "unnamed" in name or name.startswith("union "):
            raise Unknown(name)
        used_structs.add(name)
        return STRUCT_NAMES.get(name, name)
    if kind == "Pointer":
        inner = ctype(t[1], None, generic)
        if t[1][0] == "Struct" and t[1][1] in CF_REFS:
            return CF_REFS[t[1][1]]
        return inner + ("*" if inner.endswith("*") else " *")
    if kind in ("Block", "FunctionPointer"):
        result, args, variadic = meta.signature(t[1])
        side = dts.function_type(ts)
        if side and len(side[0]) != len(args):
            if kind == "Block":
                raise Unknown("block")
            return "void *"  # The package merges function pointers of different types.
        ats = side[0] if side else [None] * len(args)
        inner = ", ".join(ctype(a, s, generic) for a, s in zip(args, ats)) or "void"
        rt = ctype(result, side[1] if side else None, generic)
        if "(^)" in rt or "(*)" in rt:
            rt = "__typeof__(%s)" % rt
        return "%s (%s)(%s)" % (rt, "^" if kind == "Block" else "*", inner)
    if kind == "Array":
        raise Unknown("array")
    raise Unknown(kind)


CF_REFS = {"__CF" + n: f"CF{n}Ref" for n in "String Array Dictionary Data Number Boolean Date URL Set Error "
           "UUID Locale TimeZone Allocator RunLoop RunLoopSource RunLoopTimer Bundle MachPort "
           "Notification Attributed MutableArray MutableDictionary".split()}
for n in structs:
    if re.match(r"^CG[A-Z]\w+$", n) and not structs[n][1]:
        CF_REFS[n] = n + "Ref"
    m = re.match(r"^Opaque(\w+Ref)$", n)
    if m:
        CF_REFS[n] = m.group(1)


def argument(t, ts, generic=(), function=False):
    """Returns the type of an argument. Pointers become const, because the package lacks const."""
    text = ctype(t, ts, generic, function)
    inner = t[1][0] if t[0] == "Pointer" else None
    if t[0] == "OpaquePointer" or (inner in SIMPLE and inner not in OBJECTS) or (
            inner == "Struct" and not text.endswith("Ref") and text.endswith("*")):
        return "const " + text if not text.startswith("const ") else text
    return text


OBJECTS = {"InstanceObject", "NSStringObject", "NSMutableStringObject", "Class", "Selector", "String", "OpaquePointer"}


def declarator(t, name):
    """Returns a declaration of `name` with this type, which may be a function pointer."""
    m = re.match(r"^(.*?\()([\^*])(\)\(.*)$", t, re.S)
    if m and not t.startswith("id<"):
        return m.group(1) + m.group(2) + name + m.group(3)
    return t + ("" if t.endswith("*") else " ") + name


def from_ts(ts):
    """Returns a type from its TypeScript type only, for variadic methods."""
    bare = (ts or "").removesuffix("| null").strip()
    enum = dts.enum_of(bare)
    if enum and enum in enum_values:
        used_enums.add(enum)
        return enum
    if bare in classes:
        used_classes.add(bare)
        return bare + " *"
    head = bare.split("<")[0].split("|")[0].strip()
    if head in classes:
        used_classes.add(head)
        return head + " *"
    return {"string": "NSString *", "number": "NSInteger", "boolean": "BOOL"}.get(bare, "id")
