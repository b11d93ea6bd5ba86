"""Menus: a path three levels deep, an item that is switched on, a context menu."""

WINDOW = "Widget:showcase"
POPUP = "Widget:ActivePopupWidget"
TABS = "pages/qt_tabwidget_tabbar"


def run(demo):
    demo.title("Menus")
    items = demo.read("menuBar", "itemList")
    demo.check("the deep item is listed", "Roast/Beans/Arabica/Washed" in (items or ()), True)
    demo.activate("Choose an item three menus deep.", "menuBar", "s:Roast/Beans/Arabica/Washed")
    demo.expect_event("triggered: washedAction")
    demo.activate("Switch the lamp on.", "menuBar", "s:Roast/Heat lamp", "b:true")
    demo.expect_event("toggled: lampAction on")
    demo.activate("Switch it on once more: nothing to do.", "menuBar", "s:Roast/Heat lamp", "b:true")
    demo.expect("menuBar", "pathDisabled", True, "s:Order/Export (closed)")

    demo.title("A context menu")
    demo.activate("Turn to the page with the list.", TABS, "s:Lists")
    demo.expect("extrasList", "visible", True)
    demo.mouse("Ask for the list's context menu.", "extrasList", "MouseClick:RightButton:::")
    demo.expect_window(POPUP)
    demo.activate("Choose from it.", "ActivePopupWidget", "s:Check all", window=POPUP)
    demo.expect("extrasList", "itemIsChecked", True, "s:Cocoa")
    demo.picture("menus")
