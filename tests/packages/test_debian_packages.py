"""The Debian packages: what they are made of, and one life of theirs in a Debian without compiler and checkout."""

import re
import shutil
import subprocess
import time
from pathlib import Path

import pytest
import yaml

import cleanroot
from cleanroot import fields
from making import ROOT, run

EARLIER = "0.0.1"
MEGABYTE = 1_000_000
AGENTS = ("qtdriver-agent-qt5", "qtdriver-agent-qt6")
NAMES = ("qtdriver", *AGENTS, "libqtdriver-dev")
CI_FILES = (".github/workflows/gui-tests.yml", ".gitlab-ci.yml")


@pytest.fixture(scope="module")
def packages(made):
    """The packages by their names."""
    found = {fields(path, "Package")[0]: path for path in made.glob("*.deb")}
    assert set(NAMES) <= set(found)
    return found


@pytest.fixture(scope="module")
def unpacked(packages, tmp_path_factory):
    """The files of all packages in one folder."""
    folder = tmp_path_factory.mktemp("unpacked")
    for name in NAMES:
        run("dpkg-deb", "--extract", packages[name], folder)
    return folder


def test_a_package_takes_less_than_a_megabyte_and_its_debug_symbols_are_apart(packages, unpacked):
    for name in NAMES:
        assert packages[name].stat().st_size < MEGABYTE, name
    libraries = list(unpacked.glob("usr/lib/*/qtdriver/qt?/lib/*.so"))
    assert len(libraries) == 6
    for library in libraries:
        assert library.stat().st_size < MEGABYTE, library
        assert ".debug_info" not in run("readelf", "--sections", "--wide", library)
    assert {f"{name}-dbgsym" for name in AGENTS} <= set(packages)


def test_the_libraries_are_hardened(unpacked):
    libraries = list(unpacked.glob("usr/lib/*/qtdriver/qt?/lib/*.so"))
    assert len(libraries) == 6
    for library in libraries:
        segments = run("readelf", "--program-headers", "--wide", library)
        assert "GNU_RELRO" in segments, library
        assert re.search(r"GNU_STACK .* RW +0x", segments), f"the stack of {library} is executable"
        dynamic = run("readelf", "--dynamic", "--wide", library)
        assert "BIND_NOW" in dynamic and "TEXTREL" not in dynamic and "PATH" not in dynamic, library
        needed = set(re.findall(r" U (\w+)", run("nm", "--dynamic", library)))
        assert "__stack_chk_fail" in needed, f"{library} has no stack protector"
        # The agent itself calls none of the functions that have a checked form.
        if library.name != "libqtdriver.so":
            assert {"__realpath_chk", "__fprintf_chk"} <= needed, f"{library} is not fortified"
            assert not {"realpath", "fprintf"} & needed, f"{library} is fortified in part"


def test_lintian_has_nothing_to_say(packages):
    paths = [str(packages[name]) for name in [*NAMES, *(f"{name}-dbgsym" for name in AGENTS)]]
    ended = subprocess.run(["lintian", "--no-cfg", "--allow-root", *paths], capture_output=True, text=True)
    assert (ended.returncode, ended.stdout) == (0, "")


def test_the_documents_that_the_readme_names_are_there(unpacked):
    folder = unpacked / "usr/share/doc/qtdriver"
    named = set(re.findall(r"\((docs/[\w/-]+\.md)\)", (folder / "README.md").read_text()))
    assert len(named) > 10 and [name for name in named if not (folder / name).is_file()] == []


@pytest.mark.parametrize("major", [5, 6])
def test_a_project_finds_the_agent_of_its_qt(unpacked, tmp_path, major):
    (tmp_path / "CMakeLists.txt").write_text(
        "cmake_minimum_required(VERSION 3.21)\nproject(finding CXX)\n"
        f"find_package(Qt{major} REQUIRED COMPONENTS Core)\nfind_package(qtdriver REQUIRED)\n"
        "get_target_property(library qtdriver::agent LOCATION)\n"
        'message(STATUS "agent ${library}, Qt ${qtdriver_QT}")\n'
    )
    output = run("cmake", "-S", tmp_path, "-B", tmp_path / "build", f"-DCMAKE_PREFIX_PATH={unpacked}/usr")
    assert re.search(rf"agent /.*/qtdriver/qt{major}/lib/libqtdriver.so, Qt {major}\n", output)


@pytest.fixture(scope="module")
def upgraded(packages, tmp_path_factory):
    """A clean Debian in which an earlier version was installed, and then this one. Answers it, and its files before."""
    root = cleanroot.make(tmp_path_factory, [packages[name] for name in NAMES])
    folder = tmp_path_factory.mktemp("earlier")
    earlier = [cleanroot.with_version(packages[name], EARLIER, folder) for name in NAMES]
    before = root.files()
    root.install(*earlier)
    assert EARLIER in root.run("dpkg-query", "--show", *NAMES)
    root.install(*(packages[name] for name in NAMES))
    yield root, before
    shutil.rmtree(root.folder)  # half a gigabyte, which pytest would keep for days


def test_an_upgrade_replaces_the_earlier_version(upgraded):
    root, _ = upgraded
    assert EARLIER not in root.run("dpkg-query", "--show", *NAMES)
    assert not any(name.endswith("only-in-the-earlier-version") for name in root.files())


def lines_of_the_readme(title):
    """The commands of one of its chapters."""
    chapter = (ROOT / "README.md").read_text().partition(f"\n## {title}\n")[2].partition("\n## ")[0]
    return re.findall("^    (.+)$", chapter, re.MULTILINE)


def test_there_is_neither_compiler_nor_checkout(upgraded):
    root, _ = upgraded
    for tool in ("g++", "cmake", "git", "qmake"):
        assert not (root.folder / "usr/bin" / tool).exists()


def test_both_agents_are_there_side_by_side(upgraded):
    root, _ = upgraded
    lines = root.run("qtdriver", "--version").splitlines()
    assert re.fullmatch(r"qtdriver \d+\.\d+\.\d+", lines[0])
    assert [line.partition(":")[0] for line in lines[1:]] == ["agent for Qt 5", "agent for Qt 6"]
    for line in lines[1:]:
        agent = Path(line.partition(": ")[2]).with_name("libqtdriver.so")
        # Bound at once: every symbol is there in the Qt of this Debian.
        root.run("python3", "-c", f"import ctypes, os; ctypes.CDLL('{agent}', os.RTLD_NOW)")


def test_the_doctor_finds_no_problem(upgraded):
    root, _ = upgraded
    assert "\n0 problems\n" in root.run("qtdriver", "doctor", "--", "speedcrunch")


def test_the_manual_page_and_the_completions_are_where_they_belong(upgraded):
    root, _ = upgraded
    files = root.files()
    for name in (
        "usr/share/man/man1/qtdriver.1.gz",
        "usr/share/bash-completion/completions/qtdriver",
        "usr/share/zsh/vendor-completions/_qtdriver",
    ):
        assert name in files


def test_the_first_test_passes(upgraded, record_property):
    root, _ = upgraded
    section = (ROOT / "docs" / "runner.md").read_text().partition("\n## A first test\n")[2]
    folder = root.folder / "tmp" / "first"
    folder.mkdir()
    (folder / "test_calculator.py").write_text(re.search("```python\n(.*?)```", section, re.DOTALL)[1])
    began = time.monotonic()
    assert "1 passed" in root.run("sh", "-c", "cd /tmp/first && python3 -m pytest -p no:cacheprovider")
    record_property("seconds", time.monotonic() - began)


def test_the_two_lines_of_the_readme_end_with_a_driven_application(upgraded):
    root, _ = upgraded
    first, second = lines_of_the_readme("Two lines to a driven application")
    assert first.startswith("sudo apt install")
    run_headless = second.replace("run -- ", "run --headless -- ")  # nobody looks at a screen here
    output = root.run("sh", "-ec", f"echo 'tree SpeedCrunch' | {run_headless}")
    assert run_headless != second and "\n> tree SpeedCrunch\n" in f"\n{output}" and "Editor" in output


def test_the_three_lines_of_the_readme_end_with_a_passing_test(upgraded):
    root, _ = upgraded
    first, *others = lines_of_the_readme("Three lines to a passing test")
    assert first.startswith("sudo apt install") and len(others) == 2
    (root.folder / "tmp" / "lines").mkdir()
    output = root.run("sh", "-ec", "\n".join(["cd /tmp/lines", *others]))
    assert output.count("1 passed") == 2


def test_removal_leaves_nothing(upgraded):
    root, before = upgraded
    root.run("apt-get", "-y", "-q", "purge", *NAMES)
    left = sorted(name for name in root.files() - before if "qtdriver" in name)
    assert left == []
    assert "qtdriver" not in root.run("dpkg", "--list")


def commands_of_ci(text):
    """The commands of a file for GitHub or GitLab, in their order, and the folder that it keeps."""
    job = yaml.safe_load(text)
    if "jobs" not in job:
        return job["gui-tests"]["script"], job["gui-tests"]["artifacts"]["paths"]
    steps = job["jobs"]["gui-tests"]["steps"]
    return [step["run"] for step in steps if "run" in step], [steps[-1]["with"]["path"]]


def test_the_commands_of_ci_install_the_packages_again_and_keep_the_report(packages, upgraded):
    root, _ = upgraded
    folder = root.folder / "tmp" / "ci"
    run(ROOT / "scripts" / "qtdriver", "init", "--no-run", folder, "--", "speedcrunch")
    (folder / "packages").mkdir()
    for name in NAMES:
        shutil.copy(packages[name], folder / "packages")
    # There is no network: packages that others recommend were not downloaded.
    (root.folder / "etc/apt/apt.conf.d/recommends").write_text('APT::Install-Recommends "false";')
    told = [commands_of_ci((folder / name).read_text()) for name in CI_FILES]
    assert told[0] == told[1]
    commands, kept = told[0]
    output = root.run("sh", "-ec", "\n".join(["cd /tmp/ci", *commands]))
    assert "1 passed" in output and kept == ["test-results"]
    assert {"report.html", "junit.xml"} <= {path.name for path in (folder / "test-results").iterdir()}
