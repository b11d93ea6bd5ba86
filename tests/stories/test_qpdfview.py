"""qpdfview: a document is opened and its pages turned, and its settings are looked at."""

import re

from PIL import Image
from qtdriver import eventually


def test_a_document_is_opened_and_its_pages_are_turned(start, tmp_path):
    book = tmp_path / "book.pdf"
    cover, *pages = (Image.new("RGB", (300, 400), color) for color in ("white", "red", "blue"))
    cover.save(book, save_all=True, append_images=pages)

    app = start("qpdfview")
    app.window("qpdfview").menu("File/Open...").click()
    app.modal("Open").file(book)
    window = app.window("book")
    page = window.find("QSpinBox")
    eventually(page).has(text="1 / 3")
    window.find("QToolButton", text="Next page").click()
    eventually(page).has(text="2 / 3")
    window.press("End")
    eventually(page).has(text="3 / 3")


def test_the_outline_of_the_settings_is_short(start):
    app = start("qpdfview")
    app.window("qpdfview").menu("Edit/Settings...").click()
    dialog = app.modal("Settings")
    eventually(dialog).is_open()
    outline = str(dialog.snapshot())
    assert 'checkbox "Restore tabs:"' in outline and 'button "Cancel"' in outline
    # as many tokens as no tokenizer makes: tests/e2e/test_outline_sizes.py
    assert len(re.findall(r"[A-Za-z]{1,6}|\d{1,3}|\n *|[^\sA-Za-z\d]", outline)) < 400, outline
