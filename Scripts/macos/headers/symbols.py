#!/usr/bin/env python3
"""Prints every symbol that the objects use, but that neither they nor a linked library define.
Usage: symbols.py PACKAGE DECLARATIONS CMAKELISTS OBJECTS SOURCE..."""
import glob
import re
import subprocess
import sys

import typescript as dts

package, declarations, cmake, objects, *sources = sys.argv[1:]

# Linking a framework also links those that it re-exports.
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
    """Returns the framework that defines each function, constant or class, by symbol."""
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


# Symbols of Apple's C library and of the C, Objective-C, blocks and dispatch runtimes.
RUNTIME = re.compile(r"^_+(objc_|OBJC_(METACLASS|CLASS)_\$_NS(Object|Proxy)$|OBJC_EHTYPE_|dispatch_|NSConcrete|Block_|CFConstantStringClass|stack_chk"
                     r"|dso_handle|tlv_|cxa_|dynamic_cast$|gxx_personality|Unwind|objc_personality|proc_|sysctlbyname$|pthread_set_qos_"
                     r"|bzero$|error$|isPlatform)")
# Symbols of libc++ and the C++ runtime: names in std, type information, operators new and delete.
CXX = re.compile(r"^__Z(NK?(10__cxxabi|S[taosi]|[^A-Z]*St)|T[IVS](N10__cxxabi|S|N?St|[a-zPK]*$)|S|St|n[wa]|d[la]|.*NSt3__1)")
# Symbols of the libraries that CMakeLists.txt links on every platform.
LIBRARY = re.compile(r"^_(curl_|XML_|sodium_|crypto_|plist_|u_|uloc_|utext_)|3fmt|6icu_|nlohmann")

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
    ours = re.search(r"Orvel[A-Z][a-z]+", symbol)
    # Checked before the frameworks, because the package lists C library functions in frameworks.
    if symbol.removeprefix("_") in library or RUNTIME.search(symbol):
        continue
    if symbol in owner:
        if owner[symbol] not in frameworks:
            print(f"{source}: {symbol[1:]} is of {owner[symbol]}, which is not linked")
            bad = 1
        continue
    if not ours and (LIBRARY.search(symbol) or CXX.search(symbol)):
        continue
    name = subprocess.run(["llvm-cxxfilt-19", symbol], capture_output=True, text=True).stdout.strip()
    print(f"{source}: nothing defines {name}")
    bad = 1
sys.exit(bad)
