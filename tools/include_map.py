"""The map of includes in tools/arrows, whose beginning explains how it is written."""

import fnmatch
import itertools
import pathlib
import re
import sys

import sources

MAP = "tools/arrows"
LIBRARY = "Utils_Statics/"
# These sources at the top of the library have the name of no header.
ROOMS = {"ZipArchive": "archive", "StatusProbeSensor": "status", "kwxerrimpl": "windows",
         "Utils_Statics": "environment", "StaticObjects": "environment",
         "CUtils_StaticsApp": "environment"}


def spread(path):
    """The paths that the {x,y} in a path stand for."""
    parts = [part.split(",") for part in re.split(r"\{([^}]*)\}", path)]
    parts[::2] = [[",".join(part)] for part in parts[::2]]  # the others stood in braces
    return ["".join(chosen) for chosen in itertools.product(*parts)]


def covers(pattern, path):
    """Whether the path is what the pattern names or lies below it."""
    wanted, given = pattern.split("/"), path.split("/")
    return len(given) >= len(wanted) and all(map(fnmatch.fnmatchcase, given, wanted))


def weight(pattern):
    return pattern.count("/"), len(pattern.replace("*", ""))


class Section:
    """One [folder] of the map: its places, and for each the patterns that it may include."""

    def __init__(self, folder):
        self.prefix = "" if folder == "." else folder + "/"
        self.paths = {}  # place -> patterns
        self.targets = {}  # place -> patterns that it may include

    def patterns(self, names):
        return [path for name in names for path in self.paths.get(name) or spread(name)]

    def read(self, line):
        if "=" in line:
            name, paths = line.split("=")
            self.paths[name.strip()] = self.patterns(paths.split())
            return
        links = [link.split() for link in line.split("->")]
        if len(links) < 2:
            raise ValueError("neither '=' nor '->'")
        for number, link in enumerate(links if len(links) > 2 else links[:1]):
            allowed = self.patterns(itertools.chain(*links[number + 1:]))
            for name in link:
                self.paths.setdefault(name, spread(name))
                self.targets.setdefault(name, []).extend(allowed)

    def inside(self, file):
        """The file's path from the section's folder; None outside it."""
        return file[len(self.prefix):] if file.startswith(self.prefix) else None

    def place(self, path):
        matching = [(weight(pattern), name) for name in self.targets
                    for pattern in self.paths[name] if covers(pattern, path)]
        return max(matching)[1] if matching else None

    def allows(self, place, path):
        own = self.paths[place] + self.targets[place]
        return any(covers(pattern, path) for pattern in own)


def read_map():
    sections = []
    text = re.sub(r"\s*#.*", "", sources.read(MAP))
    for line in re.sub(r"\n[ \t]+", " ", text).splitlines():
        if line.startswith("["):
            sections.append(Section(line.strip("[] ")))
        elif line.strip():
            try:
                sections[-1].read(line)
            except (ValueError, IndexError) as error:
                sys.exit(f"{MAP}: '{line}' is no line of a map: {error}")
    return sections


def room_namer():
    """A function that names the room of a file of the library, which is its header's for a source
    at the top."""
    section = next(each for each in read_map() if each.prefix == LIBRARY)

    def room(file):
        path = pathlib.PurePosixPath(section.inside(file))
        if len(path.parts) > 1:
            return section.place(str(path))
        return ROOMS.get(path.stem) or section.place(f"include/Utils_Statics/{path.stem}.h")

    return room
