"""A copy of a build's objects and sources, and the library and test programs with single sources altered."""
import json
import os
import re
import shutil
import subprocess
from collections import defaultdict
from pathlib import Path

LINKED = ("inside_tests", "fault_tests")
SHARED = ("ostra_tests", "utf8_tests")
# An inner header that many sources include takes too long.
MOST_INCLUDERS = 8


class Build:
    """What is compiled and linked anew lies in a folder of its own: the checkout and its build stay as they are."""

    def __init__(self, project, preset, work):
        self.project, self.work = Path(project), Path(work)
        self.source_build = self.project / "build" / preset
        self.base, self.trial = self.work / "base", self.work / "trial"
        self.root = self.base / "build"
        self.commands = self._read_commands()
        self.includers = self._read_includers()
        self._copy()
        self.plain = {}

    # ---- What the build knows ---------------------------------------------------------------

    def _ninja(self, *words):
        return subprocess.run(["ninja", "-C", self.source_build, *words], check=True, capture_output=True, text=True).stdout

    def _read_commands(self):
        """The commands of compilers and linkers, by output."""
        return {edge["output"]: edge["command"] for edge in json.loads(self._ninja("-t", "compdb"))}

    def _read_includers(self):
        """The library's objects that a header of src/ goes into; without those that other programs include too."""
        users, output = defaultdict(set), None
        for line in self._ninja("-t", "deps").splitlines():
            if line and not line[0].isspace():
                output = line.split(":")[0]
            elif line.endswith(".h"):
                users[os.path.relpath(self.source_build / line.strip(), self.project)].add(output)
        users = {header: {name for name in names if "headers_alone" not in name} for header, names in users.items()}
        return {header: sorted(names) for header, names in users.items()
                if header.startswith("src/") and len(names) <= MOST_INCLUDERS and all("/ostra_objects.dir/" in name for name in names)}

    def objects_of(self, path):
        """The objects to be compiled anew when that source or header changes."""
        if path.endswith(".h"):
            return self.includers.get(path, [])
        return [f"src/CMakeFiles/ostra_objects.dir/{path.removeprefix('src/')}.o"]

    def link_of(self, name):
        """The output and the command that makes the library or a program."""
        pattern = r"lib/libostra\.so\.\d+\.\d+\.\d+" if name == "ostra" else rf"bin/{name}"
        return next((out, command) for out, command in self.commands.items() if re.fullmatch(pattern, out))

    # ---- The copy ---------------------------------------------------------------------------

    def _copy(self):
        shutil.rmtree(self.work, ignore_errors=True)
        for folder in ("src", "winapi/include", "cmake"):
            shutil.copytree(self.project / folder, self.base / folder)
        shutil.copytree(self.source_build / "include", self.root / "include")
        inputs = {f"bin/{name}" for name in SHARED}
        inputs |= {f"lib/{file.name}" for file in (self.source_build / "lib").glob("libostra-host.so*")}
        for name in ("ostra", *LINKED):
            inputs |= {word for word in self.link_of(name)[1].split() if word.endswith((".o", ".a"))}
        for name in inputs:
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(self.source_build / name, self.root / name)

    def _moved(self, command):
        """The command, with the copy's folders in place of the checkout's, and without what only warns."""
        command = command.replace(f"{self.source_build}/", f"{self.root}/")
        for folder in ("src", "winapi", "cmake"):
            command = re.sub(rf"{re.escape(str(self.project))}/{folder}(?=[/\s])", f"{self.base}/{folder}", command)
        return re.sub(r"\S*ccache |-Werror\b", "", command)

    def _shell(self, command):
        done = subprocess.run(command, shell=True, cwd=self.root, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              stdin=subprocess.DEVNULL, check=False, env=os.environ | {"CCACHE_DISABLE": "1"})
        return done.returncode == 0

    # ---- Compiling and linking --------------------------------------------------------------

    def _compile(self, path, text, output, name):
        """The object's bytes when one source or header reads so; None when it can't be compiled."""
        command = re.sub(r" -MD| -M[TF] \S+", "", self._moved(self.commands[name]))
        source = self.trial / "source" / path.removeprefix("src/")
        source.parent.mkdir(parents=True, exist_ok=True)
        source.write_text(text)
        original = f"{self.base}/src/{name.split('.dir/')[1].removesuffix('.o')}"
        if not path.endswith(".h"):
            command = command.replace(f"-c {original}", f"-c {source}")
        # An altered header is found before its original, and so is what lies beside an altered source.
        command = command.replace(" -I", f" -w -I{self.trial}/source -I", 1)
        command = re.sub(r" -o \S+", f" -o {output}", command)
        output.parent.mkdir(parents=True, exist_ok=True)
        output.unlink(missing_ok=True)
        done = self._shell(command)
        source.unlink()
        return output.read_bytes() if done else None

    def _plain(self, path, name):
        """What the object is without an alteration, compiled in the same manner."""
        if (path, name) not in self.plain:
            text = (self.base / path).read_text()
            self.plain[path, name] = self._compile(path, text, self.trial / "plain.o", name)
        return self.plain[path, name]

    def clear(self):
        """Forgets the alteration."""
        shutil.rmtree(self.trial, ignore_errors=True)

    def alter(self, path, text):
        """Compiles what the altered source goes into; whether it can be compiled."""
        self.clear()
        return all(self._compile(path, text, self.trial / name, name) for name in self.objects_of(path))

    def is_same(self, path):
        """Whether the alteration leaves the code as it is."""
        return all((self.trial / name).read_bytes() == self._plain(path, name) for name in self.objects_of(path))

    def link(self, name):
        """Links the library or a program with the altered objects; its path, or None if that fails."""
        out, command = self.link_of(name)
        target = self.trial / ("lib/" + re.search(r"-soname,(\S+)", command).group(1) if name == "ostra" else out)
        if target.exists():
            return target
        target.parent.mkdir(parents=True, exist_ok=True)
        words = []
        for word in self._moved(command).split():
            words.append(str(self.trial / word) if (self.trial / word).is_file() else word)
        command = " ".join(words).replace(f" -o {out}", f" -o {target}")
        if name == "ostra":
            for file in (self.root / "lib").glob("libostra-host.so*"):
                shutil.copy2(file, target.parent)
        return target if self._shell(command) else None

    def program(self, name):
        """The test program that works with the altered objects, and the folder of its library."""
        if name in LINKED:
            return self.link(name), None
        library = self.link("ostra")
        return (self.root / "bin" / name, library.parent) if library else (None, None)
