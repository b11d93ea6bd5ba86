"""`qtdriver mcp` on FeatherPad and KeePassXC, by the client of the official SDK: small answers, and a test at the end."""

import re

from sdkclient import needs_sdk
from storykit import ref, require, save

pytestmark = needs_sdk


def test_featherpad(model):
    require("featherpad")
    model.call("launch", program="featherpad", arguments=["--standalone"])
    model.call("type", text="Milk 1 €\nBread 2 €")
    model.call("press", keys=["Ctrl+R"])
    model.call("type", target="Find:", text="€")
    model.call("type", target="Replace with:", text="euros")
    model.call("click", target="toolButtonAll")
    edit = model.call("find", text="Milk", role="edit")
    model.call(
        "wait", target=ref(edit, "edit = "), property="plainText", equals="Milk 1 euros\nBread 2 euros"
    )
    assert "Milk 1 euros" in save(model, "featherpad")


def test_keepassxc(model):
    require("keepassxc")
    model.call("launch", program="keepassxc")
    model.call("click", target="Create new database")
    model.call("type", target="Database Name:", text="Family")
    model.call("click", target="Continue")
    model.call("wait", text="Encryption Settings")
    model.call("click", target="Continue")
    model.call("wait", text="Database Credentials")
    page = model.call("snapshot")
    for field in re.findall(r"\[(\d+)\] edit", page)[:2]:
        assert "Mellon" not in model.call("type", target=int(field), text="Mellon 1954 dwarves")
    model.call("click", target=ref(page, r'button "Cancel"$'))
    model.call("wait", window="Create", state="closed")
    code = save(model, "keepassxc")
    assert "Mellon" not in code and 'os.environ["TEST_SECRET_1"]' in code
