"""Designer: a form is made, gets a title, and is saved."""

from qtdriver import containing, eventually

PROGRAM = "/usr/lib/qt6/bin/designer"


def test_a_form_gets_a_title_and_is_saved(start, tmp_path):
    app = start(PROGRAM)
    app.modal("New Form").button("Create").click()
    window = app.window("Qt Designer")
    properties = window.find("QDockWidget", title="Property Editor")
    properties.find("QLineEdit", placeholder="Filter").fill("windowTitle")
    tree = properties.find("QTreeView")
    tree.item("QWidget/windowTitle").click()
    tree.press("Return")
    eventually(lambda: "focused" in tree.snapshot().root.states).equals(False)  # its editor has the focus
    window.press("Ctrl+A")
    window.type("Orders\n")
    eventually(window.find("QMdiSubWindow")).has(windowTitle=containing("Orders"))

    form = tmp_path / "orders.ui"
    window.press("Ctrl+S")
    app.modal("Save Form").file(form)
    eventually(form.exists).is_true()
    eventually(lambda: "<string>Orders</string>" in form.read_text(encoding="utf-8")).is_true()
