#!/usr/bin/env python3
"""Rules about the sources and the built library that no compiler checks.

    policy.py [--nm NM --objdump OBJDUMP --library FILE --objects A.o:B.o:... --services C.o:...]

Prints a line for each breach and exits with 1 if there is one. Without --library only the sources are looked at.
"""
import argparse
import pathlib
import re
import struct
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
LIBRARY_BYTES = 2_000_000
SOURCE_LINES, HEADER_LINES, TEST_LINES, FUNCTION_LINES = 600, 400, 800, 80
PLATFORM = re.compile(r"^\s*#\s*(el)?if.*\b(_WIN\d+|WIN32|__linux__|__unix__|__MINGW\w*|__GNUC__|_MSC_VER)\b")
PROCESSOR = re.compile(r"\w*mmintrin|arm_neon|__builtin_cpu_|vector_size|gnu::target|__(SSE|AVX|i386|x86_64|aarch64|ARM)")
# The rooms of the services by their floors; those that aren't named stand on top. Files of a floor may
# include each other.
ROOM_FLOORS = [{"Errors"}, {"Base"}, {"Text"}, {"Files", "Locale", "Memory", "Process"}]
# Types, words and numbers that all rooms stand on.
GROUND = {"winapi/Base/Types.h", "winapi/Base/Words.h", "winapi/Base/Constants.h"}
LARGE_LIBRARIES = re.compile(r"#include <(unicode/|sqlite3|fontconfig/|ft2build|freetype)")
RUNTIMES = re.compile(r"(libstdc\+\+|libgcc_s|libm|libc|libpthread|libdl|libatomic|ld-linux[\w-]*)\.so\.\d+$")
# What the services may take from the C library directly: memory and texts. Calls of the system go through Posix.h.
PLAIN_CALLS = re.compile(r"_Z|__|_Unwind|_GLOBAL_|(mem|str|pthread_mutex_)\w+$|(malloc|calloc|realloc|free|abort|bcmp|snprintf|"
                         r"vsnprintf|pthread_atfork|DllMain|winapi_(Test|Program)\w+)$")
GENERATED = re.compile(r"// (Made|Generated) by ")
breaches = []


def breach(path, line, text):
    breaches.append(f"{path.relative_to(TOP)}:{line}: {text}")


def files(folder, *patterns):
    return sorted(path for pattern in patterns for path in (TOP / folder).rglob(pattern))


def stripped(text):
    """The text without comments and literals, line for line."""
    pattern = r'//[^\n]*|/\*.*?\*/|R"\((?:.|\n)*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\''
    return re.sub(pattern, lambda m: "\n" * m.group(0).count("\n"), text, flags=re.S)


def functions(text):
    """(first line, lines) of each function body: a brace block whose head ends in a parenthesis or a qualifier."""
    depth, stack, head = 0, [], ""
    number = 1
    for c in stripped(text):
        if c == "\n":
            number += 1
        if c == "{":
            body = re.search(r"\)\s*(const|noexcept|override|final|->\s*[\w:<>*& ]+|:.*)*\s*$", head, re.S)
            stack.append((number, bool(body) and not any(inside for _, inside in stack)))
            head = ""
        elif c == "}":
            if stack:
                start, body = stack.pop()
                if body:
                    yield start, number - start + 1
            head = ""
        elif c == ";":
            head = ""
        else:
            head += c


def check_lengths():
    for folder, source_limit in (("src", SOURCE_LINES), ("winapi", SOURCE_LINES), ("tests", TEST_LINES),
                                 ("examples", SOURCE_LINES), ("tools", SOURCE_LINES),
                                 ("benchmarks", SOURCE_LINES), ("fuzz", SOURCE_LINES)):
        for path in files(folder, "*.cpp", "*.h"):
            text = path.read_text("utf-8")
            if GENERATED.match(text):
                continue
            limit = HEADER_LINES if path.suffix == ".h" else source_limit
            if "tests" in path.parts:
                limit = TEST_LINES
            lines = text.count("\n")
            if lines > limit:
                breach(path, lines, f"{lines} lines, {limit} are allowed")
            for number, line in enumerate(text.splitlines(), 1):
                if len(line) > 100 and folder == "src":
                    breach(path, number, "longer than 100 columns")
            if folder in ("src", "winapi") and "tests" not in path.parts:
                for start, length in functions(text):
                    if length > FUNCTION_LINES:
                        breach(path, start, f"function of {length} lines, {FUNCTION_LINES} are allowed")


def check_sources():
    everything = (TOP / "src/Ostra/Ostra.h").read_text("utf-8")
    public = {TOP / "src" / header for header in re.findall(r"#include <(.*)>", everything)}
    for path in files("src", "*.cpp", "*.h"):
        text = path.read_text("utf-8")
        for number, line in enumerate(text.splitlines(), 1):
            if PLATFORM.match(line) and path.name != "Platform.h":
                breach(path, number, "a platform conditional in the library")
            if PROCESSOR.search(line) and path.name not in ("Vector.h", "VectorPacks.h"):
                breach(path, number, "names a processor's means, which Vector.h and VectorPacks.h alone do")
            if path in public and re.match(r"\s*#\s*include <(winapi/|windows\.h)", line):
                breach(path, number, "a public header brings names of the services; Platform.h declares those it needs")
            if re.search(r"\b(throw|dynamic_cast|typeid)\b", stripped(line)):
                breach(path, number, "the library throws nothing and asks no language run-time types")
        own = path.with_suffix(".h").relative_to(TOP / "src").as_posix()
        includes = re.findall(r"^#include [^\n]*\n\n?", text, re.M)
        if path.suffix == ".cpp" and path.with_suffix(".h").is_file():
            if not includes or not re.fullmatch(rf"#include <{own}>\n(\n|$)", includes[0]):
                breach(path, 1, "its own header is included first, in a block of its own")
        if path.suffix == ".h" and "#pragma once" not in text:
            breach(path, 1, "no #pragma once")
        first = text.split("\n", 1)[0]
        if GENERATED.match(first):
            continue
        if path.suffix == ".h" and not re.match(r"// [\w/]+\.h: .", first):
            breach(path, 1, "the first line tells path and purpose")
        if re.match(r"// ([\w/]+\.(h|cpp))", first) and not first.startswith(f"// {path.relative_to(TOP / 'src').as_posix()}"):
            breach(path, 1, "the first line tells another path")


# The floors of the library: a folder includes from its own floor and from those below.
FLOORS = [["Ostra/Frame"], ["Ostra/Buffer"], ["System/OS"], ["System/String"], ["Ostra/String"],
          ["Ostra/Unicode", "Ostra/ARRAY"], ["Ostra/SortedArray", "Ostra/LIST", "Ostra/HashTable"],
          ["Ostra/Containers", "Ostra/Maps", "Ostra/CompList", "Ostra/Pattern"], ["Ostra/WordList"],
          ["Ostra/File"], ["Ostra/Input", "Ostra/Output"], ["Ostra/TestOut"], ["Database/RecordManager"],
          ["System/LocaleInfo"], ["System/Time"],
          ["System/DDE", "System/FontManager", "System/Forum", "System/IniFile", "System/ModuleVersion",
           "System/Registry", "System/Timer"], ["Ostra"]]
# What includes from above, and why.
UPWARD = {
    # All static objects of the library stand in one source, in the order of their construction.
    "Ostra/Frame/StartUp.cpp": ["Ostra/Buffer", "Ostra/String", "System/OS", "System/Forum",
                                 "System/LocaleInfo", "System/FontManager"],
    # Errors are told in texts, and the manager keeps the formatters of threads in an array: these
    # stand above it and report through it.
    "Ostra/Frame/ErrorManager.h": ["Ostra/ARRAY"],
    "Ostra/Frame/ErrorManager.cpp": ["Ostra/String"],
    "Ostra/Frame/ErrorManagerSystem.cpp": ["System/OS"],
    "Ostra/Frame/ErrorManagerWindow.cpp": ["Ostra/String", "System/OS"],
    # The module's name is a text; the font manager takes its handle, the version record has its product's version.
    "Ostra/Frame/OstraDLLMain.cpp": ["Ostra/String", "System/FontManager", "System/ModuleVersion"],
    # The forms that take string objects; those of raw text stand below the strings.
    "System/String/StringConvertString.cpp": ["Ostra/String"],
    "System/String/StandardUTF8.cpp": ["Ostra/String"],
    # What the coders share with the strings are operations on raw text.
    "System/String/StringConvert.cpp": ["Ostra/String"],
    "System/String/UTF.cpp": ["Ostra/String"],
}


def check_floors():
    floor = {folder: number for number, folders in enumerate(FLOORS) for folder in folders}
    for path in files("src", "*.cpp", "*.h"):
        name = path.relative_to(TOP / "src")
        folder = name.parent.as_posix()
        if folder not in floor:
            breach(path, 1, f"{folder} has no floor")
            continue
        for number, line in enumerate(path.read_text("utf-8").splitlines(), 1):
            found = re.match(r"#include <((?:Ostra|System|Database)[\w/]*)/\w+\.h>", line)
            if found and floor.get(found.group(1), 99) > floor[folder]:
                if found.group(1) not in UPWARD.get(name.as_posix(), []):
                    breach(path, number, f"{folder} includes from {found.group(1)}, which stands above it")
    for name in UPWARD:
        if not (TOP / "src" / name).is_file():
            breaches.append(f"policy.py: {name} isn't there, yet may include upwards")


def check_places():
    """What reports name as their place: the paths of public headers, each said once, in the folder of the class."""
    public = set(re.findall(r"#include <(.*)\.h>", (TOP / "src/Ostra/Ostra.h").read_text("utf-8")))
    said = {}
    for path in files("src", "*.cpp", "*.h"):
        folder = path.parent.relative_to(TOP / "src").as_posix()
        for number, line in enumerate(path.read_text("utf-8").splitlines(), 1):
            if re.match(r"\s*//", line):
                continue
            for place in re.findall(r'"((?:Ostra|System|Database)/[\w/]+)"', line):
                if place not in public:
                    breach(path, number, f'reports "{place}", which is no public header')
                if place.rpartition("/")[0] != folder:
                    breach(path, number, f'reports "{place}" from another folder')
                if place in said:
                    breach(path, number, f'says "{place}", as {said[place].relative_to(TOP)} does')
                said[place] = path


# Names as docs/names.md has them: the prefix tells what something is and of what type. One letter does for a counter
# or a character, upper case is for constants.
PREFIX = (r"(?=[a-z]+[\d_])s?v?[ap]*(?:q|qc|pc)?"
          r"(?:(?:v|b|n[1248]?|i[48]?|l|c|us?|h|e[co]?|co|so|o|f|t)z?)?_")
NAME = re.compile(rf"{PREFIX}\w|[a-z]$|[A-Z][A-Z0-9_]*$")
STATIC_NAME = re.compile(rf"s(?!o_){PREFIX}\w|[A-Z][A-Z0-9_]*$")
# A declaration's type, and the name behind it.
TYPE = (r"(?:unsigned|signed|int|char|short|long|void|bool|double|float|auto|char16_t|va_list|"
        r"[A-Z]\w*|(?:CT|st|_st|et|t|T)_\w+|std::\w+|tm)"
        r"(?:<[^<>;(){}]*>)?(?:::\w+)?(?:\s+(?:const|unsigned|int|char|short|long)\b)*")
DECLARED = re.compile(rf"(?<![\w:]){TYPE}(?:(?:\s*(?:[*&]+|const\b|\(&))+\s*|\s+)(?:\w+::)*(\w+)\s*(?=[,);=\[{{(:])")
# Conventions of the language and of the platform.
OTHER_NAMES = {"operator", "sizeof", "args", "arguments", "copy", "__attribute__", "DllMain", "ostra_version"}
# Of the interface, which is older than the rule that a static member has an s.
TOLD_STATICS = {"n4_Search", "pso_FindBranch", "n_GetIndex", "n_GetOffset", "n_GetThread", "n_GetNextPrim", "n_GetDST"}


def check_declared(path, number, line):
    names = [name for name in DECLARED.findall(line) if not name[0].isdigit()]
    for name in names:
        if not NAME.match(name) and name not in OTHER_NAMES and not re.fullmatch(TYPE, name):
            breach(path, number, f"{name}: docs/names.md tells which prefix it needs")
    member = re.match(r"\s+(?:\[\[[^\]]*\]\] |\w*FOR_\w+ |inline )*static\b", line)
    if member and names and path.suffix == ".h" and "operator" not in line and not STATIC_NAME.match(names[0]):
        if names[0] not in TOLD_STATICS | OTHER_NAMES:
            breach(path, number, f"{names[0]}: the name of a static member begins with s")


def check_enumerators(path, text):
    # The standard of the characters names its properties, blocks and kinds of information.
    for found in re.finditer(r"\benum\s+(?!et_(?:Unicode|LayoutProperty|PropertyClass))\w+[^{;()]*{([^}]*)}", text):
        for part in found.group(1).split(","):
            name = re.match(r"\s*(\w+)", part)
            if name and not re.match(r"[a-z]{1,2}_[A-Z0-9]\w*$|[A-Z][A-Z0-9_]*$", name.group(1)):
                number = text[:found.start(1)].count("\n") + 1
                breach(path, number, f"{name.group(1)}: an enumerator has two letters of its enumeration")


def check_names():
    """In headers of all that is declared; in sources of what is declared for the whole file."""
    for path in files("src", "*.h", "*.cpp"):
        text = path.read_text("utf-8")
        if GENERATED.match(text):
            continue
        text = stripped(text)
        check_enumerators(path, text)
        for number, line in enumerate(text.splitlines(), 1):
            if path.suffix == ".cpp" and line[:1] in ("", " ", "#", "}"):
                continue
            check_declared(path, number, line)
            found = re.match(r"\s*(class|struct|enum)\s+(?:class\s+)?(?:OSTRA_API\s+)?(\w+)\b(?!.*;\s*$)", line)
            if path.suffix != ".h" or not found:
                continue
            kind, name = found.groups()
            wanted = {"class": ("CT_",), "struct": ("st_", "_st_", "CT_", "_"), "enum": ("et_",)}[kind]
            if not name.startswith(wanted):
                breach(path, number, f"{kind} {name}: names of this kind begin with {wanted[0]}")


def floor(room):
    return next((number for number, rooms in enumerate(ROOM_FLOORS) if room in rooms), len(ROOM_FLOORS))


def check_rooms():
    """The services' files stand in rooms and include nothing of a higher floor."""
    inner = re.compile(r'#include "((?:winapi/)?(\w+)/\w+\.(?:h|inc))"')
    for path in files("winapi", "*.cpp", "*.h"):
        parts = path.relative_to(TOP / "winapi").parts
        if parts[0] == "tests":
            parts = parts[2:] if parts[1] in ("native", "loaded") else parts[1:]
        elif parts[0] == "include":
            parts = parts[2:]
            if len(parts) == 1:
                continue  # of the names that programs ask for
        if len(parts) != 2 or not parts[0][0].isupper():
            breach(path, 1, "stands in no room")
            continue
        if "tests" in path.parts:
            continue
        for number, line in enumerate(path.read_text("utf-8").splitlines(), 1):
            found = inner.match(line)
            if found and found.group(1) not in GROUND and floor(found.group(2)) > floor(parts[0]):
                breach(path, number, f"{parts[0]} stands below {found.group(2)}")
            if LARGE_LIBRARIES.match(line) and not path.name.endswith("Host.cpp"):
                breach(path, number, "only what is compiled into libostra-host.so may lean on this library")
            if line.startswith('#include "') and not found:
                breach(path, number, "an include names the room")


def check_rooms_told():
    """The services' README has a line for each public header, and none for what isn't there."""
    readme = TOP / "winapi/README.md"
    told = set(re.findall(r"`(\w+/\w+\.h)`", readme.read_text("utf-8")))
    headers = TOP / "winapi/include/winapi"
    there = {path.relative_to(headers).as_posix() for path in files(headers, "*.h")}
    for name in sorted(there ^ told):
        breach(readme, 1, f"{name} is " + ("not told" if name in there else "told and not there"))


def check_no_workplace():
    pattern = re.compile(r"\bParts? \d+\.\d+|spec\.md|\.\./shared|/w[o]rk/|/tmp/o[s]tra\b|[Tt]he specification\b")
    listed = subprocess.run(["git", "-C", TOP, "ls-files", "-z"], capture_output=True, text=True)
    for name in listed.stdout.split("\0") if listed.returncode == 0 else []:
        path = TOP / name
        if not name or not path.is_file() or path == pathlib.Path(__file__).resolve():
            continue
        if path.suffix == ".png" and path.parent == TOP / "docs":
            continue
        if path.is_relative_to(TOP / "fuzz/corpus"):
            continue  # inputs of any bytes
        try:
            text = path.read_text("utf-8")
        except UnicodeDecodeError:
            breach(path, 1, "not a UTF-8 text")
            continue
        for number, line in enumerate(text.splitlines(), 1):
            if pattern.search(line):
                breach(path, number, "names what doesn't belong into the project")


def headings(text):
    """The names by which links reach the headings of a page."""
    found = re.findall(r"^#+ (.*)", re.sub(r"^```.*?^```", "", text, flags=re.M | re.S), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in found}


def check_pages():
    """Links between the pages lead to what is there."""
    pages = [path for folder in ("docs", "winapi", "examples", "benchmarks") for path in files(folder, "*.md")]
    for path in pages + sorted(TOP.glob("*.md")):
        text = re.sub(r"^```.*?^```", lambda m: "\n" * m.group(0).count("\n"), path.read_text("utf-8"), flags=re.M | re.S)
        for number, line in enumerate(text.splitlines(), 1):
            for target in re.findall(r"\]\((?!https?:)([^)\s]+)\)", line):
                name, _, heading = target.partition("#")
                page = path.parent / name if name else path
                if not page.exists():
                    breach(path, number, f"{target} leads nowhere")
                elif heading and heading not in headings(page.read_text("utf-8")):
                    breach(path, number, f"{target}: the page has no such heading")


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def check_objects(nm, objdump, objects):
    forbidden = re.compile(r"\b(_?_Znwm|_?_Znam|_?_Znwj|_?_Znaj|_?__cxa_throw|_?_ZSt4cout|_?pthread_mutex_lock)\b")
    for name in objects:
        for line in output(nm, "-u", name).splitlines():
            if forbidden.search(line):
                breaches.append(f"{pathlib.Path(name).name}: uses {line.split()[-1]}")
        if pathlib.Path(name).name.startswith("StartUp."):
            continue
        if re.search(r"\.(init_array|ctors)", output(objdump, "-h", name)):
            breaches.append(f"{pathlib.Path(name).name}: has a static object with a constructor")


def check_version(objdump, library):
    """The DLL's resource has the headers' version; the name that programs ask for changes with the minor version."""
    header = (TOP / "src/Ostra/Frame/Version.h").read_text("utf-8")
    version = [re.search(rf"OSTRA_VERSION_{part} (\d+)", header).group(1) for part in ("MAJOR", "MINOR", "PATCH")]
    resource = (TOP / "resources/ostra.rc").read_text("utf-8")
    for line in (f"FILEVERSION {','.join(version)},0", f"PRODUCTVERSION {','.join(version)},0",
                 f'"FileVersion", "{".".join(version)}"', f'"ProductVersion", "{".".join(version)}"'):
        if line not in resource:
            breaches.append(f"resources/ostra.rc: no {line}")
    if library.suffix != ".dll":
        name = re.search(r"SONAME\s+(\S+)", output(objdump, "-p", str(library)))
        if not name or name.group(1) != f"libostra.so.{version[0]}.{version[1]}":
            breaches.append(f"the library is called {name and name.group(1)}")


def check_exports(nm, library):
    """The library exports what cmake/exports.txt lists: classes, and functions outside a class."""
    expected = set((TOP / "cmake/exports.txt").read_text("utf-8").split())
    if library.suffix == ".dll":
        return
    names = set()
    for line in output(nm, "-D", "-C", "--defined-only", str(library)).splitlines():
        _, kind, symbol = line.split(" ", 2)
        if kind == "u":
            breaches.append(f"exports {symbol} as unique in the process: the library could never be unloaded")
        symbol = re.sub(r"^(vtable|typeinfo|typeinfo name|guard variable|VTT) for ", "", symbol)
        symbol = re.sub(r"^(non-)?virtual thunk to ", "", symbol)
        # A template's instance is shown with its result type.
        owner = symbol.split("(")[0].split("::")[0].split(" ")[-1]
        if owner and owner != "std":
            names.add(owner)
    for name in sorted(names - expected):
        breaches.append(f"exports {name}, which cmake/exports.txt doesn't list")
    for name in sorted(expected - names):
        breaches.append(f"doesn't export {name}, which cmake/exports.txt lists")


def check_size(library):
    """What an optimized build of the library, a file of ELF for 64 bits, takes in memory without what it writes anew."""
    if library.suffix == ".dll":
        return
    content = library.read_bytes()
    table, = struct.unpack_from("<Q", content, 32)
    entry, count = struct.unpack_from("<HH", content, 54)
    heads = [struct.unpack_from("<IIQQQQ", content, table + n * entry) for n in range(count)]
    size = sum(head[5] for head in heads if head[0] == 1)
    if not 100_000 < size <= LIBRARY_BYTES:
        breaches.append(f"{library.name} has {size} bytes instead of {LIBRARY_BYTES} at most")


def check_tables(nm, objects):
    """The tables of code pages have no addresses: what the loader has to change is no longer shared by processes."""
    for name in objects:
        if not re.match(r"CodePage(Facts|Units)\.", pathlib.Path(name).name):
            continue
        for line in output(nm, "--defined-only", name).splitlines():
            kind, symbol = line.split()[-2:]
            if kind not in "rR":
                breaches.append(f"{pathlib.Path(name).name}: {symbol} can't be mapped as it is")


def check_services(nm, objects):
    for name in objects:
        if pathlib.Path(name).name.startswith("Posix."):
            continue
        for line in output(nm, "-u", name).splitlines():
            symbol = line.split()[-1]
            if not PLAIN_CALLS.match(symbol):
                breaches.append(f"{pathlib.Path(name).name}: {symbol} doesn't go through the table of the host's calls")


def check_needed(objdump, library):
    """The library needs the runtimes of C and C++ and nothing else."""
    if library.suffix == ".dll":
        return
    for name in re.findall(r"^\s*NEEDED\s+(\S+)", output(objdump, "-p", str(library)), re.M):
        if not RUNTIMES.match(name):
            breaches.append(f"{library.name} needs {name}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--nm")
    parser.add_argument("--objdump")
    parser.add_argument("--library", type=pathlib.Path)
    parser.add_argument("--objects", default="")
    parser.add_argument("--services", default="")
    arguments = parser.parse_args()
    check_lengths()
    check_sources()
    check_floors()
    check_places()
    check_names()
    check_rooms()
    check_rooms_told()
    check_pages()
    check_no_workplace()
    if arguments.library:
        check_objects(arguments.nm, arguments.objdump, [name for name in arguments.objects.split(":") if name])
        check_services(arguments.nm, [name for name in arguments.services.split(":") if name])
        check_tables(arguments.nm, [name for name in arguments.services.split(":") if name])
        if arguments.library.suffix != ".a":
            check_size(arguments.library)
            check_exports(arguments.nm, arguments.library)
            check_version(arguments.objdump, arguments.library)
            check_needed(arguments.objdump, arguments.library)
    print("\n".join(breaches + [f"policy: {len(breaches)} breaches"]))
    return 1 if breaches else 0


sys.exit(main())
