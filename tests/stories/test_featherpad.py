"""FeatherPad: a text is written, changed, and saved."""

import re

from qtdriver import containing, eventually


def test_three_lines_are_typed_replaced_and_saved(start, tmp_path):
    file = tmp_path / "notes.txt"
    file.write_text("", encoding="utf-8")
    window = start("featherpad", "--standalone", file).window(name="FPwin")
    eventually(window).has_title(re.compile("notes.txt"))  # it reads files in a thread
    window.find("FeatherPad::TextEdit").type("Milk 1 €\nBread 2 €\nCheese 5 €")
    window.press("Ctrl+R")
    window.find("QLineEdit", label="Find:").fill("€")
    window.find("QLineEdit", label="Replace with:").fill("euros")
    window.find("QToolButton", tooltip=containing("Replace all")).click()
    window.press("Ctrl+S")
    eventually(lambda: file.read_text(encoding="utf-8").strip()).equals(
        "Milk 1 euros\nBread 2 euros\nCheese 5 euros"
    )
