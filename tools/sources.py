"""The project's own files, who includes whom among the C++ ones, and a tool's arguments. Shared by
the tools in Python."""

import pathlib
import posixpath
import re
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^">]+)[">]', re.M)
# Includes of private headers are written from these folders.
ROOTS = ["Utils_Statics", "core", "exam", "product", "simulation"]


def arguments(usage, fewest=0, most=0, options=()):
    """The tool's arguments: one of the options, or as many others as it takes. --help prints the
    usage, and what is wrong ends the tool with status 2."""
    given = sys.argv[1:]
    if given in (["--help"], ["-h"]):
        print(usage.strip())
        sys.exit()
    if len(given) == 1 and given[0] in options:
        return given
    unknown = [word for word in given if word.startswith("-")] or given[most:]
    if unknown or len(given) < fewest:
        what = f"unknown argument '{unknown[0]}'" if unknown else "an argument is missing"
        print(f"{pathlib.Path(sys.argv[0]).name}: {what}; see --help", file=sys.stderr)
        sys.exit(2)
    return given


def own_files(*patterns):
    """The files of the checkout that match, new ones too; paths from the top."""
    listed = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", *patterns],
        cwd=TOP, check=True, capture_output=True, text=True)
    names = sorted(set(listed.stdout.splitlines()))
    return [name for name in names if (TOP / name).is_file()]


def read(name):
    return (TOP / name).read_text(encoding="utf-8")


def search_folders(files):
    """The folders that the build puts on the include path: those of public headers, and roots."""
    parents = {parent for name in files for parent in pathlib.PurePosixPath(name).parents}
    public = [str(folder) for folder in parents if folder.name in ("include", "host")]
    return sorted(public) + ROOTS


def include_graph():
    """(graph, lost): each file's includes of own files, and (file, name) for each include in quotes
    that is found nowhere."""
    files = own_files("*.h", "*.cpp")
    known, folders = set(files), search_folders(files)
    graph, lost = {}, []
    for file in files:
        graph[file] = []
        for mark, name in INCLUDE.findall(read(file)):
            beside = str(pathlib.PurePosixPath(file).parent)
            places = ([beside] if mark == '"' else []) + folders
            candidates = [posixpath.normpath(f"{place}/{name}") for place in places]
            found = [candidate for candidate in candidates if candidate in known]
            if found:
                graph[file].append(found[0])
            elif mark == '"':
                lost.append((file, name))
    return graph, lost


def circles(graph):
    """Every circle that a walk along the arrows meets, each as the list of its stations."""
    found, done = [], set()

    def visit(station, path):
        if station in path:
            found.append(path[path.index(station):] + [station])
        elif station not in done:
            for target in graph.get(station, ()):
                visit(target, path + [station])
            done.add(station)

    for station in graph:
        visit(station, [])
    return found


def closure(graph, starts):
    """The files themselves and all that they include, directly or not."""
    seen, waiting = set(), list(starts)
    while waiting:
        file = waiting.pop()
        if file not in seen:
            seen.add(file)
            waiting.extend(graph.get(file, ()))
    return seen
