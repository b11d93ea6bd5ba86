"""Lists, trees and tables: items by their texts, paths and cells."""

from qtdriver import cell, eventually, tree_path


def test_every_extra_is_checked_by_the_context_menu(showcase, roastery, open_page):
    open_page("Lists")
    extras = roastery.widget("extrasList")
    extras.click("right", at=(0.5, 0.9))
    showcase.popup().menu("Check all").activate()
    for extra in extras.items():
        eventually(extras).has_property("itemIsChecked", True, extra)


def test_a_blend_is_found_in_its_tree(roastery, open_page):
    open_page("Lists")
    blends = roastery.widget("blendTree")
    inner = next(path for path in blends.items() if "/" in path)
    blends.select(inner)
    eventually(blends).has(currentPath=inner)
    assert blends.read("itemIsOpen", tree_path(inner.split("/")[0])) is True


def test_a_price_is_changed_in_its_cell(roastery, open_page):
    open_page("Tables")
    prices = roastery.widget("priceTable")
    prices.select(cell("Espresso", "Medium"))
    prices.enter("1.80")
    eventually(prices).has_property("itemText", "1.80", cell("Espresso", "Medium"))
