#!/usr/bin/env python3
"""Names every symbol that the objects use and that neither they nor what the program links define.
Usage: symbols.py PACKAGE DECLARATIONS CMAKELISTS OBJECTS SOURCE..."""
import glob
import re
import subprocess
import sys

import typescript as dts

package, declarations, cmake, objects, *sources = sys.argv[1:]

# A framework that is linked brings along those that it exports again.
EXPORTS = {"AppKit": ["CoreGraphics"], "Foundation": ["CoreFoundation"], "Carbon": ["ApplicationServices"],
           "CoreServices": []}
LIBRARIES = ["libc.so.6", "libm.so.6"]


def linked():
    names = re.search(r"set\(KARVO_FRAMEWORKS([^)]*)\)", open(cmake).read())
    out = set(names.group(1).split()) if names else set()
    for name in list(out):
        out.update(EXPORTS.get(name, []))
    return out


def owners():
    """Which framework defines a function, constant or class."""
    out = {}
    for path in sorted(glob.glob(f"{package}/types/*.d.ts")):
        name = path.split("/")[-1].removesuffix(".d.ts")
        if name == "Runtime":
            continue
        framework = dts.Framework(name, path)
        for symbol in list(framework.functions) + list(framework.consts):
            out.setdefault("_" + symbol, name)
        for symbol in framework.classes:
            out.setdefault("_OBJC_CLASS_$_" + symbol, name)
            out.setdefault("_OBJC_METACLASS_$_" + symbol, name)
    for path in glob.glob(f"{declarations}/*.h"):
        name = path.split("/")[-1].removesuffix(".h")
        for symbol in re.findall(r"\b(\w+)\s*\([^;{}]*\)\s*(?:__attribute__\(\(.*?\)\)\s*)?;", open(path).read()):
            out["_" + symbol] = name
    # The frameworks that build on no other one share these with the library of the runtime.
    for symbol in ("NSObject", "NSProxy"):
        for kind in ("CLASS", "METACLASS"):
            out.pop(f"_OBJC_{kind}_$_{symbol}", None)
    return out


def nm(*arguments):
    run = subprocess.run(["llvm-nm-19", *arguments], capture_output=True, text=True, check=True)
    return run.stdout.splitlines()


def c_library():
    folder = subprocess.run(["gcc", "-print-file-name=libc.so.6"], capture_output=True, text=True,
                            check=True).stdout.strip().rsplit("/", 1)[0]
    out = set()
    for library in LIBRARIES:
        out.update(l.split()[-1].split("@")[0] for l in nm("-D", "--defined-only", f"{folder}/{library}"))
    return out


# Symbols of Apple's C library and runtimes that are not those of this machine.
SYSTEM = re.compile(r"^_(objc_|_objc_|OBJC_EHTYPE_id|dispatch_|_dispatch|_NSConcrete|_Block_|__stack_chk|_CFConstant"
                    r"|_?dso_handle|_tlv_|_cxa_|__cxa|_gxx_personality|_Unwind|___objc_personality|_bzero$|__chkstk"
                    r"|proc_|sysctlbyname|memset_pattern|_cxx_|_error$|__error|_assert|__DefaultRune|_tolower|_toupper"
                    r"|swift_|__isPlatform|__ZTI|clonefile|arc4random)")
# Of the libraries that CMakeLists.txt links on every platform.
THIRD_PARTY = re.compile(r"^_(curl_|XML_|sodium_|crypto_|plist_|u[a-z]+_|__ZN3fmt|__ZNK3fmt)|_ZN.?3fmt|_ZNK?.*icu_\d|_ZN.*icu|nlohmann|^__ZT[IVS].*icu")
CXX = re.compile(r"^__Z(N|T|S|n|d|G|N?K?)(.*St|[wda]|[LPF]|.*NSt)")

defined, used = set(), {}
for source in sources:
    path = source if source.endswith(".o") else f"{objects}/{source.replace('/', '_')}.o"
    for line in nm(path):
        symbol = line.split()[-1]
        kind = line.split()[-2]
        if kind == "U":
            used.setdefault(symbol, source)
        else:
            defined.add(symbol)

frameworks, owner, library = linked(), owners(), c_library()
bad = 0
for symbol, source in sorted(used.items()):
    if symbol in defined:
        continue
    if symbol in owner:
        if owner[symbol] not in frameworks:
            print(f"{source}: {symbol[1:]} is of {owner[symbol]}, which is not linked")
            bad = 1
        continue
    ours = re.search(r"Orvel[A-Z]\w+", symbol)
    if not ours and (SYSTEM.search(symbol) or THIRD_PARTY.search(symbol) or CXX.search(symbol)
                     or symbol.removeprefix("_") in library or symbol.startswith("_OBJC_CLASS_$_NSObject")
                     or symbol.startswith("_OBJC_METACLASS_$_NSObject")):
        continue
    name = subprocess.run(["llvm-cxxfilt-19", symbol], capture_output=True, text=True).stdout.strip()
    print(f"{source}: nothing defines {name}")
    bad = 1
sys.exit(bad)
