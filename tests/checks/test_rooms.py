"""The structure of the sources: who imports whom in the runner, and how many files a folder has."""

import ast
import subprocess
import sys
from collections import defaultdict
from graphlib import TopologicalSorter

import pytest

from test_sources import ROOT, tracked

RUNNER = ROOT / "runner" / "qtdriver"
MAXIMUM_FILES = 20

# The packages of the runner, and which ones each stands on. It may import those, and what they stand on in turn.
STANDS_ON = {
    "errors": (),
    "callers": (),
    "protocol": ("errors", "callers"),
    "lookup": ("protocol",),
    "crashes": ("errors",),
    "launch": ("protocol", "crashes"),
    "surroundings": ("launch",),
    "desktop": ("errors",),
    "attaching": ("launch",),
    "api": ("lookup", "surroundings", "desktop", "attaching"),
    "expect": ("api",),
    "trace": ("api",),
    "report": ("trace",),
    "shell": (),
    "project": ("launch",),
    "recording": ("lookup",),
    "tools": ("expect", "project", "recording"),
    "mcp": ("tools",),
    "inspector": ("report", "expect", "recording"),
    "pausing": ("inspector",),
    "commandline": ("shell", "project", "mcp", "inspector"),
    "plugin": ("report", "expect", "pausing"),
}

TOP = ""
"""The package `qtdriver` itself: its modules import what users import, and nobody imports them."""


def may_import(package):
    """All packages below this one."""
    below = STANDS_ON[package]
    return set(below).union(*map(may_import, below))


def imported_packages(module, text):
    """The packages of the runner that a module imports, wherever in its text and for whatever purpose.

    `module` is its name as a tuple: ("api", "app"); that of a package ends in "__init__".
    """
    for node in ast.walk(ast.parse(text)):
        if isinstance(node, ast.Import):
            names = [tuple(alias.name.split(".")) for alias in node.names]
        elif isinstance(node, ast.ImportFrom):
            base = tuple(node.module.split(".")) if node.module else ()
            if node.level:
                base = ("qtdriver", *module)[: len(module) + 1 - node.level] + base
            names = [(*base, alias.name) for alias in node.names]
        else:
            continue
        for name in names:
            if name[0] == "qtdriver":
                yield name[1] if name[1:] and name[1] in STANDS_ON else TOP


def imports_between_packages():
    """Rows of the file, its package, and another package that it imports."""
    for source in tracked("runner/qtdriver/*.py"):
        module = source.relative_to(RUNNER).with_suffix("").parts
        package = module[0] if len(module) > 1 else TOP
        for imported in imported_packages(module, source.read_text()):
            if imported != package:
                yield source.relative_to(ROOT), package, imported


def test_every_package_of_the_runner_has_its_rule():
    packages = {source.relative_to(RUNNER).parts[0] for source in tracked("runner/qtdriver/*/*.py")}
    assert packages == set(STANDS_ON)


def test_modules_of_the_runner_are_in_packages():
    assert {source.name for source in RUNNER.glob("*.py")} == {"__init__.py", "__main__.py"}


@pytest.mark.parametrize("package", STANDS_ON)
def test_a_package_of_the_runner_imports_only_what_is_below_it(package):
    violations = [
        f"{source} imports {imported or 'qtdriver'}"
        for source, importing, imported in imports_between_packages()
        if importing == package and imported not in may_import(package)
    ]
    assert violations == []


def test_packages_of_the_runner_do_not_import_each_other_in_circles():
    graph = defaultdict(set)
    for _, importing, imported in imports_between_packages():
        graph[importing].add(imported)
    assert set(STANDS_ON) <= set(TopologicalSorter(graph).static_order())


def test_imports_within_functions_and_for_types_only_count():
    text = (
        "from typing import TYPE_CHECKING\n"
        "if TYPE_CHECKING:\n    from ..api.app import App\n"
        "def late():\n    from ..report import page\n    import qtdriver.launch.elf\n"
        "from .. import plugin\n"
        "from . import tree\n"
        "from .. import Driver\n"
    )
    assert sorted(imported_packages(("lookup", "explain"), text)) == [
        TOP, "api", "launch", "lookup", "plugin", "report",
    ]  # fmt: skip


def sources_of_folders(top):
    """The folders below `top` with their sources; header and source of a class are one."""
    folders = defaultdict(set)
    for source in tracked(top):
        if source.suffix in (".py", ".cpp", ".h"):
            folders[source.parent.relative_to(ROOT)].add(source.stem)
    return folders


@pytest.mark.parametrize(
    "slow", ["aiohttp", "asyncio", "xml", "email", "qtdriver.mcp.server", "qtdriver.inspector.server"]
)
def test_a_command_line_does_not_wait_for_what_a_single_command_needs(slow):
    code = "import sys; import qtdriver.commandline.cli; sys.exit(sys.argv[1] in sys.modules)"
    assert subprocess.run([sys.executable, "-c", code, slow], cwd=RUNNER.parent).returncode == 0


@pytest.mark.parametrize("top", ["runner", "src"])
def test_a_folder_has_no_more_sources_than_a_person_can_survey(top):
    folders = sources_of_folders(top)
    assert folders
    assert {str(folder): len(names) for folder, names in folders.items() if len(names) > MAXIMUM_FILES} == {}
