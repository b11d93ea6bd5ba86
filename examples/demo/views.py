"""Lists, trees, tables, and plain views over the application's own models."""

TABS = "pages/qt_tabwidget_tabbar"


def run(demo):
    demo.title("Lists")
    demo.activate("Turn to their page.", TABS, "s:Lists")
    demo.expect("extrasList", "visible", True)
    demo.activate("Go to an item.", "extrasList", "s:Honey")
    demo.enter("Check it.", "extrasList", "b:true")
    demo.expect("extrasList", "itemIsChecked", True, "s:Honey")
    demo.expect_event("changed: extrasList Honey on")

    demo.title("Trees")
    demo.check("all paths", "House/Filter/Huila" in _names(demo.read("blendTree", "pathList")), True)
    demo.activate("Go to an item; its parents are expanded.", "blendTree", "s:Season/Winter/Antigua")
    demo.expect("blendTree", "itemIsOpen", True, "s:Season/Winter")
    demo.enter("Edit it in place.", "blendTree", "s:0:Boquete")
    demo.expect("blendTree", "itemIsEnabled", True, "s:Season/Winter/Boquete")
    demo.activate("Select in a plain view over a model.", "originView", "s:Kenya")
    demo.expect("originView", "itemIsSelected", True, "s:Kenya")
    demo.picture("lists")

    demo.title("Tables")
    demo.activate("Turn to their page.", TABS, "s:Tables")
    demo.expect("priceTable", "visible", True)
    demo.activate("Go to a cell by its headers.", "priceTable", "s:Cortado:Medium")
    demo.enter("Enter a price.", "priceTable", "s:3.40")
    demo.expect("priceTable", "itemText", "3.40", "s:Cortado:Medium")
    demo.picture("tables")


def _names(paths):
    """The paths with the first column of each row only."""
    return ["/".join(segment.split(":")[0] for segment in path.split("/")) for path in paths or ()]
