"""Menus and dialogs: opening, answering, and what blocks what."""

import pytest

from qtdriver import WindowBlockedError, eventually


def test_an_order_is_placed_in_its_dialog(showcase, roastery):
    roastery.menu("Order/New order...").activate()
    dialog = showcase.modal("New order")
    dialog.widget("dialogCustomerEdit").enter("Grace")
    dialog.widget("acceptOrderButton").activate()
    eventually(dialog).is_closed()
    eventually(roastery.widget("lastEvent")).has(text=lambda text: "Grace" in text)


def test_an_open_dialog_blocks_the_window_behind_it(showcase, roastery):
    roastery.menu("Order/New order...").activate()
    eventually(showcase.modal("New order")).is_open()
    with pytest.raises(WindowBlockedError, match='the modal dialog "New order"'):
        roastery.widget("brewButton").activate(timeout=0.2)


def test_a_name_is_asked_for_in_a_dialog_of_qt(showcase, roastery, open_page):
    open_page("Dialogs")
    roastery.widget("nameBlendButton").activate()
    dialog = showcase.modal("Name a blend")
    dialog.widget("QLineEdit__widget__").enter("Night shift")
    dialog.button("OK").activate()
    eventually(roastery.widget("blendResult")).has(text="Night shift")


def test_a_price_list_is_chosen_as_a_file(showcase, roastery, open_page, tmp_path):
    prices = tmp_path / "prices.txt"
    prices.write_text("espresso 1.80\n")
    open_page("Dialogs")
    roastery.widget("priceListButton").activate()
    showcase.modal().file(prices)
    eventually(roastery.widget("fileResult")).has(text=lambda text: "prices.txt" in text)
