"""Entry fields: what a user types, and what the application makes of it."""

import re

import pytest

from qtdriver import CommandError, eventually


@pytest.fixture(autouse=True)
def entry_fields(open_page):
    open_page("Entry fields")


def test_a_customer_is_entered_with_return(roastery):
    roastery.widget("customerEdit").enter("Ada\n")
    eventually(roastery.widget("lastEvent")).has(text="entered: customerEdit Ada")


def test_a_bean_is_chosen_from_the_box(roastery):
    beans = roastery.widget("beanCombo")
    last = beans.items()[-1]
    beans.select(last)
    eventually(beans).has(currentText=last)


def test_a_postcode_takes_digits_only(roastery):
    with pytest.raises(CommandError, match="validate error"):
        roastery.widget("postcodeEdit").enter("Vienna")


def test_the_summary_follows_the_number_of_cups(roastery):
    roastery.widget("cupSpin").activate(3)
    eventually(roastery.widget("cupSpin")).has(value=3)
    eventually(roastery.widget("orderSummary")).has(text=re.compile(r"\b3\b"))
