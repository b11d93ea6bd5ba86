"""Rules for the sources as a whole: layers, conditionals, formatting, types, sizes."""

import ast
import re
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]

# Who may include whom. Everybody may include compat and what is in the same folder.
MAY_INCLUDE = {
    "compat": set(),
    "identify": set(),
    "proxy": set(),
    "proxies": {"proxy"},
    "bridge": {"identify"},
    "locate": {"identify"},
    "record": {"locate"},
    "agent": {"identify", "locate", "proxy", "bridge", "record"},
    "preload": {"agent/testclient.h"},
}


def tracked(*patterns):
    listing = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "--", *patterns],
        cwd=ROOT,
        check=True,
        capture_output=True,
        text=True,
    )
    return [ROOT / name for name in listing.stdout.splitlines() if (ROOT / name).exists()]


def cpp_sources():
    return tracked("*.cpp", "*.h")


@pytest.mark.parametrize("layer", sorted(MAY_INCLUDE))
def test_a_layer_includes_only_what_it_may(layer):
    violations = []
    for source in tracked(f"src/{layer}/*"):
        if source.suffix not in (".cpp", ".h"):
            continue
        for included in re.findall(r'^#include "([^"]+)"', source.read_text(), re.MULTILINE):
            folder = included.split("/")[0] if "/" in included else layer
            allowed = {layer, "compat"} | MAY_INCLUDE[layer]
            if folder not in allowed and included not in allowed:
                violations.append(f"{source.relative_to(ROOT)} includes {included}")
    assert violations == []


def test_a_family_of_proxies_includes_no_other_family():
    violations = []
    for source in tracked("src/proxies/*/*.cpp", "src/proxies/*/*.h"):
        for included in re.findall(r'^#include "proxies/(.+)"', source.read_text(), re.MULTILINE):
            if "/" in included and included.split("/")[0] != source.parent.name:
                violations.append(f"{source.relative_to(ROOT)} includes proxies/{included}")
    assert violations == []


def test_every_source_folder_has_its_rule():
    assert {folder.name for folder in (ROOT / "src").iterdir() if folder.is_dir()} <= set(MAY_INCLUDE)


def test_versions_and_platforms_are_told_apart_in_compat_only():
    conditional = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif).*(QT_VERSION|Q_OS_|_WIN32|Q_WS_)", re.MULTILINE)
    found = [
        str(source.relative_to(ROOT))
        for source in tracked("src")
        if "compat" not in source.parts and conditional.search(source.read_text())
    ]
    assert found == []


def test_only_one_file_names_the_targets_of_a_qt_major():
    target = re.compile(r"\bQt[456]::")
    found = [
        str(source.relative_to(ROOT))
        for source in tracked("*CMakeLists.txt", "*.cmake")
        if target.search(source.read_text())
    ]
    assert found == ["cmake/QtMajor.cmake"]


def test_no_file_is_over_400_lines():
    long = [
        f"{source.relative_to(ROOT)}: {length}"
        for source in tracked("src", "runner", "bench", "tests", "examples", "scripts")
        if source.suffix in (".cpp", ".h", ".py", ".sh")
        and (length := len(source.read_text().splitlines())) > 400
    ]
    assert long == []


def lines_of(function):
    """The number of lines of a function, its docstring not counted."""
    text = function.body[0] if ast.get_docstring(function) is not None else None
    return function.end_lineno - function.lineno + 1 - (text.end_lineno - text.lineno + 1 if text else 0)


def test_no_python_function_is_over_40_lines():
    functions = [
        (source, node)
        for source in tracked("*.py")
        for node in ast.walk(ast.parse(source.read_text()))
        if isinstance(node, (ast.FunctionDef, ast.AsyncFunctionDef))
    ]
    assert functions
    long = [f"{source}: {function.name}" for source, function in functions if lines_of(function) > 40]
    assert long == []


def test_comments_begin_with_their_subject():
    """One that begins with a relative clause ("What the reader has ...") is only understood at its end."""
    mark = r"(?://+|#|\"\"\")"
    relative_clause = re.compile(rf"^\s*{mark} ?(What|Of)\b")
    comment = re.compile(rf"^\s*{mark}")
    found = []
    for source in tracked("src", "runner", "bench", "tests", "examples", "scripts"):
        if source.suffix not in (".cpp", ".h", ".py", ".sh", ".txt"):
            continue
        lines = source.read_text().splitlines()
        for number, (before, line) in enumerate(zip(["", *lines], lines), start=1):
            if relative_clause.match(line) and not comment.match(before):
                found.append(f"{source.relative_to(ROOT)}:{number}: {line.strip()}")
    assert found == []


def test_cpp_sources_are_formatted():
    subprocess.run(["clang-format", "--dry-run", "-Werror", *map(str, cpp_sources())], check=True)


def test_python_sources_are_formatted():
    subprocess.run(
        ["/usr/bin/black", "-q", "--check", "-l", "110", "runner", "tests", "scripts", "examples", "bench"],
        cwd=ROOT,
        check=True,
    )


def test_the_runner_is_typed():
    command = ["/usr/bin/mypy", "--strict", "--cache-dir=/dev/null", "runner/qtdriver"]
    subprocess.run(command, cwd=ROOT, check=True)


def test_the_runner_is_typed_for_windows():
    """A name that Python has only on Linux is an error there, unless it is behind a question for the platform."""
    command = ["/usr/bin/mypy", "--strict", "--platform=win32", "--cache-dir=/dev/null", "runner/qtdriver"]
    subprocess.run(command, cwd=ROOT, check=True)


def test_the_windows_platform_layer_compiles(tmp_path):
    compiler = "x86_64-w64-mingw32-g++"
    source = ROOT / "src/compat/platform_windows.cpp"
    command = [compiler, "-std=c++14", "-Wall", "-Wextra", "-Werror", f"-I{ROOT / 'src'}", "-c", str(source)]
    subprocess.run([*command, "-o", str(tmp_path / "platform.o")], check=True)
