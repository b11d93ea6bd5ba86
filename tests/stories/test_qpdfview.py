"""qpdfview: a document is opened and its pages turned."""

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
