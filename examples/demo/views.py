"""Lists, trees, tables, and plain views over the application's own models."""

TABS = "pages/qt_tabwidget_tabbar"


def play(stage):
    stage.title("Lists")
    stage.activate("Turn to their page.", TABS, "s:Lists")
    stage.expect("extrasList", "visible", True)
    stage.activate("Go to an item.", "extrasList", "s:Honey")
    stage.enter("Check it.", "extrasList", "b:true")
    stage.expect("extrasList", "itemIsChecked", True, "s:Honey")
    stage.expect_event("changed: extrasList Honey on")

    stage.title("Trees")
    stage.check("all paths", "House/Filter/Huila" in _names(stage.read("blendTree", "pathList")), True)
    stage.activate("Go to an item; its parents are expanded.", "blendTree", "s:Season/Winter/Antigua")
    stage.expect("blendTree", "itemIsOpen", True, "s:Season/Winter")
    stage.enter("Edit it in place.", "blendTree", "s:0:Boquete")
    stage.expect("blendTree", "itemIsEnabled", True, "s:Season/Winter/Boquete")
    stage.activate("Select in a plain view over a model.", "originView", "s:Kenya")
    stage.expect("originView", "itemIsSelected", True, "s:Kenya")
    stage.picture("lists")

    stage.title("Tables")
    stage.activate("Turn to their page.", TABS, "s:Tables")
    stage.expect("priceTable", "visible", True)
    stage.activate("Go to a cell by its headers.", "priceTable", "s:Cortado:Medium")
    stage.enter("Enter a price.", "priceTable", "s:3.40")
    stage.expect("priceTable", "itemText", "3.40", "s:Cortado:Medium")
    stage.picture("tables")


def _names(paths):
    """The paths with the first column of each row only."""
    return ["/".join(segment.split(":")[0] for segment in path.split("/")) for path in paths or ()]
