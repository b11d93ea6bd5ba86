"""`qtdriver mcp` on programs that nobody here wrote, by the client of the official SDK: small answers, and a test at the end."""

import os
import re
import shutil
import statistics
from pathlib import Path

import pytest

from mcpclient import BUILD, ROOT
from sdkclient import SdkClient, require_sdk

require_sdk()
QT = int(os.environ.get("QTDRIVER_QT", "5"))
DESIGNER = "/usr/lib/qt6/bin/designer"
ROW = re.compile(r"^\| (\w+) \| \d+ \| \d+ \| (\d+) \| \d+ \| (\d+) \|$", re.MULTILINE)
LIMITS = {
    name: (int(median), int(most))
    for name, median, most in ROW.findall((ROOT / "docs" / "agents.md").read_text())
}
"""The limits of each story, as the document has them: tokens of the median answer, and of the longest one."""


@pytest.fixture
def client(tmp_path):
    environment = {"LC_ALL": "C.UTF-8", "QT_XCB_GL_INTEGRATION": "none", "QT_QPA_PLATFORMTHEME": ""}
    environment["USER"] = f"tester-{os.getpid()}"  # KeePassXC runs once for each user, whatever the desktop
    with SdkClient(tmp_path, "2026-07-28", "--build", BUILD / "agents", environment=environment) as running:
        running.folder = tmp_path / "work"
        yield running


def require(qt, program):
    if QT != qt:
        pytest.skip(f"{program} is an application of Qt {qt}")
    if not shutil.which(program):
        pytest.skip(f"{program} is not installed")


def ref(text, pattern):
    """The number of the first widget in an answer whose line goes on like this."""
    return int(re.search(rf"\[(\d+)\] {pattern}", text, re.MULTILINE)[1])


def save(client, name):
    """Saves the test, which has to pass, and compares the answers so far with their limits."""
    client.call("close")
    assert "run once on a fresh start it passed: 1 passed" in client.call("save_test", path=f"test_{name}.py")
    tokens = client.tokens()
    print(
        f"{name}: {len(tokens)} answers, median {statistics.median(tokens):.0f}, most {tokens[-1]:.0f} tokens"
    )
    median, most = LIMITS[name]
    assert statistics.median(tokens) <= median and tokens[-1] <= most, tokens
    return Path(client.folder, f"test_{name}.py").read_text()


def test_featherpad(client):
    require(5, "featherpad")
    client.call("launch", program="featherpad", arguments=["--standalone"])
    client.call("type", text="Milk 1 €\nBread 2 €")
    client.call("press", keys=["Ctrl+R"])
    client.call("type", target="Find:", text="€")
    client.call("type", target="Replace with:", text="euros")
    client.call("click", target="toolButtonAll")
    edit = client.call("find", text="Milk", role="edit")
    client.call(
        "wait", target=ref(edit, "edit = "), property="plainText", equals="Milk 1 euros\nBread 2 euros"
    )
    assert "Milk 1 euros" in save(client, "featherpad")


def test_keepassxc(client):
    require(5, "keepassxc")
    client.call("launch", program="keepassxc")
    client.call("click", target="Create new database")
    client.call("type", target="Database Name:", text="Family")
    client.call("click", target="Continue")
    client.call("wait", text="Encryption Settings")
    client.call("click", target="Continue")
    client.call("wait", text="Database Credentials")
    page = client.call("snapshot")
    for field in re.findall(r"\[(\d+)\] edit", page)[:2]:
        assert "Mellon" not in client.call("type", target=int(field), text="Mellon 1954 dwarves")
    client.call("click", target=ref(page, r'button "Cancel"$'))
    client.call("wait", window="Create", state="closed")
    code = save(client, "keepassxc")
    assert "Mellon" not in code and 'os.environ["TEST_SECRET_1"]' in code


def test_designer(client):
    require(6, DESIGNER)
    client.call("launch", program=DESIGNER)
    client.call("click", target="Create")
    dock = ref(client.call("find", text="Property Editor", role="dock"), "dock")
    properties = client.call("snapshot", target=dock, depth=2)
    client.call("type", target=ref(properties, 'edit "Filter"'), text="windowTitle")
    tree = ref(client.call("snapshot", target=dock), "tree")
    client.call("click", target=tree, item="QWidget/windowTitle")
    client.call("press", target=tree, keys=["Return"])
    client.call("press", keys=["Ctrl+A"])
    client.call("type", text="Orders\n")
    form = ref(client.call("find", text="Orders", role="subwindow"), "subwindow")
    client.call("wait", target=form, property="windowTitle", contains="Orders")
    assert "Orders" in save(client, "designer")
