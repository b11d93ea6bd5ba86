"""Buttons: pressing them, and waiting for what comes of it."""

from qtdriver import eventually


def test_brewing_counts_the_cups(roastery):
    brew = roastery.widget("brewButton")
    brew.activate()
    brew.activate()
    # A click is on its way when activate() returns. What comes of it is for a condition to await.
    eventually(roastery.widget("clickCount")).has(text="2")


def test_milk_can_be_ordered_and_cancelled(roastery):
    milk = roastery.widget("milkCheck")
    milk.check()
    eventually(milk).is_checked()
    milk.check()  # is checked already: nothing happens
    milk.check(False)
    eventually(milk).is_checked(False)


def test_one_roast_excludes_the_other(roastery):
    roastery.widget("darkRadio").activate()
    eventually(roastery.widget("darkRadio")).is_checked()
    eventually(roastery.widget("mediumRadio")).is_checked(False)


def test_what_is_sold_out_cannot_be_chosen(roastery):
    assert not roastery.widget("italianRadio").is_enabled()


def test_delivery_opens_what_belongs_to_it(roastery):
    eventually(roastery.widget("expressCheck")).is_disabled()
    roastery.widget("deliveryBox").check()
    eventually(roastery.widget("expressCheck")).is_enabled()


def test_a_long_job_is_awaited_as_long_as_it_takes(roastery):
    roastery.widget("roastLink").activate()
    eventually(roastery.widget("lastEvent"), timeout=20).has(text=lambda text: text.startswith("finished"))
