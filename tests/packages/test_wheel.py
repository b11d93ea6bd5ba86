"""The wheel: installed offline into an environment of its own, far from the checkout."""

import json
import re
import zipfile

import pytest

from making import ROOT, run


@pytest.fixture(scope="module")
def wheel(made):
    (found,) = made.glob("*.whl")
    return found


@pytest.fixture(scope="module")
def environment(wheel, tmp_path_factory):
    """An environment with the wheel, and with the system's Python packages for what it needs."""
    folder = tmp_path_factory.mktemp("wheel") / "venv"
    run("/usr/bin/python3", "-m", "venv", "--system-site-packages", folder)
    run(folder / "bin" / "pip", "install", "--no-index", wheel)
    return folder


def test_the_tag_tells_the_oldest_c_library_that_the_agents_run_with(wheel, tmp_path):
    major, minor = map(int, re.search(r"-py3-none-manylinux_(\d+)_(\d+)_x86_64\.whl$", wheel.name).groups())
    with zipfile.ZipFile(wheel) as archive:
        archive.extractall(tmp_path)
    libraries = sorted(tmp_path.glob("qtdriver/agents/qt?/lib/*.so"))
    assert len(libraries) == 6
    asked = set()
    for library in libraries:
        asked |= set(re.findall(r"@GLIBC_(\d+)\.(\d+)", run("nm", "--dynamic", library)))
    assert max((int(first), int(second)) for first, second in asked) == (major, minor)


def test_its_agents_are_found(environment):
    lines = run(environment / "bin" / "qtdriver", "--version").splitlines()
    assert [line.partition(":")[0] for line in lines[1:]] == ["agent for Qt 5", "agent for Qt 6"]
    assert all(str(environment) in line for line in lines[1:])


def test_the_first_test_passes_with_it(environment, tmp_path):
    section = (ROOT / "docs" / "runner.md").read_text().partition("\n## A first test\n")[2]
    (tmp_path / "test_calculator.py").write_text(re.search("```python\n(.*?)```", section, re.DOTALL)[1])
    output = run(environment / "bin" / "python", "-m", "pytest", "-p", "no:cacheprovider", cwd=tmp_path)
    assert "1 passed" in output


def test_it_has_the_documents_for_language_models(environment):
    requests = (
        {"id": 1, "method": "initialize", "params": {"protocolVersion": "2025-11-25", "capabilities": {}}},
        {"id": 2, "method": "resources/list"},
    )
    lines = "".join(json.dumps({"jsonrpc": "2.0", **request}) + "\n" for request in requests)
    answers = run(environment / "bin" / "qtdriver", "mcp", input=lines).splitlines()
    listed = {resource["name"] for resource in json.loads(answers[-1])["result"]["resources"]}
    assert listed == {page.stem for page in (ROOT / "docs" / "widgets").glob("*.md")}
