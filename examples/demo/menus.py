"""Menus: a path three levels deep, an item that is switched on, a context menu."""

WINDOW = "Widget:showcase"
POPUP = "Widget:ActivePopupWidget"
TABS = "pages/qt_tabwidget_tabbar"


def play(stage):
    stage.title("Menus")
    items = stage.read("menuBar", "itemList")
    stage.check("the deep item is listed", "Roast/Beans/Arabica/Washed" in (items or ()), True)
    stage.activate("Choose an item three menus deep.", "menuBar", "s:Roast/Beans/Arabica/Washed")
    stage.expect_event("triggered: washedAction")
    stage.activate("Switch the lamp on.", "menuBar", "s:Roast/Heat lamp", "b:true")
    stage.expect_event("toggled: lampAction on")
    stage.activate("Switch it on once more: nothing to do.", "menuBar", "s:Roast/Heat lamp", "b:true")
    stage.expect("menuBar", "pathDisabled", True, "s:Order/Export (closed)")

    stage.title("A context menu")
    stage.activate("Turn to the page with the list.", TABS, "s:Lists")
    stage.expect("extrasList", "visible", True)
    stage.mouse("Ask for the list's context menu.", "extrasList", "MouseClick:RightButton:::")
    stage.expect_window(POPUP)
    stage.activate("Choose from it.", "ActivePopupWidget", "s:Check all", window=POPUP)
    stage.expect("extrasList", "itemIsChecked", True, "s:Cocoa")
    stage.picture("menus")
