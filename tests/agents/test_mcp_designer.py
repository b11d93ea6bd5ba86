"""`qtdriver mcp` on Designer, by the client of the official SDK: a form gets a title."""

from sdkclient import needs_sdk
from storykit import ref, require, save

pytestmark = needs_sdk
DESIGNER = "/usr/lib/qt6/bin/designer"


def test_designer(model):
    require(DESIGNER)
    model.call("launch", program=DESIGNER)
    model.call("click", target="Create")
    dock = ref(model.call("find", text="Property Editor", role="dock"), "dock")
    properties = model.call("snapshot", target=dock, depth=2)
    model.call("type", target=ref(properties, 'edit "Filter"'), text="windowTitle")
    tree = ref(model.call("snapshot", target=dock), "tree")
    model.call("click", target=tree, item="QWidget/windowTitle")
    model.call("press", target=tree, keys=["Return"])
    model.call("press", keys=["Ctrl+A"])
    model.call("type", text="Orders\n")
    form = ref(model.call("find", text="Orders", role="subwindow"), "subwindow")
    model.call("wait", target=form, property="windowTitle", contains="Orders")
    assert "Orders" in save(model, "designer")
