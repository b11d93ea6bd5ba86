"""The outline of an ordinary dialog is short: a person takes it in at a glance, and so does a program that is paid by tokens."""

import re

import pytest

from qtdriver import eventually

from showcase import QT
from showcase import PROGRAM as SHOWCASE

MOST_TOKENS = 400

PROGRAM = """
import sys
from PyQt5.QtWidgets import *

application = QApplication(sys.argv)
form = QDialog()
form.setWindowTitle("Contact")
rows = QFormLayout(form)
for number, text in enumerate(("First name", "Last name", "Street", "City", "Postal code", "Country", "Phone", "E-mail")):
    rows.addRow("&" + text + ":", QLineEdit("what is known of it", objectName="edit%d" % number))
kind = QComboBox()
kind.addItems(["Private", "Business"])
rows.addRow("Kind:", kind)
rows.addRow("Age:", QSpinBox())
rows.addRow(QCheckBox("Send me the news"))
rows.addRow(QDialogButtonBox(QDialogButtonBox.Ok | QDialogButtonBox.Cancel))
changed = QMessageBox(QMessageBox.Warning, "Unsaved changes", "The document has been changed.",
    QMessageBox.Save | QMessageBox.Discard | QMessageBox.Cancel)
changed.setInformativeText("Do you want to save your changes before you close it?")
files = QFileDialog(None, "Open a picture", sys.argv[1])
files.setOption(QFileDialog.DontUseNativeDialog)
files.setViewMode(QFileDialog.Detail)
files.setNameFilters(["Images (*.png *.jpg)", "All files (*)"])
fonts = QFontDialog()
fonts.setWindowTitle("A font")
fonts.setOption(QFontDialog.DontUseNativeDialog)
for dialog in (form, changed, files, fonts):
    dialog.setModal(False)
    dialog.show()
sys.exit(application.exec_())
"""


def tokens(text):
    """How many tokens the text has at most: six letters of a word, three digits, a line break with its indentation, and every
    other character are one each. Tokenizers make fewer of them, as most words are one."""
    return len(re.findall(r"[A-Za-z]{1,6}|\d{1,3}|\n *|[^\sA-Za-z\d]", text))


@pytest.fixture(scope="module")
def app(agents_driver, tmp_path_factory):
    if QT != 5:
        pytest.skip("PyQt5 is of Qt 5")
    folder = tmp_path_factory.mktemp("pictures")
    for number in range(30):
        (folder / f"picture {number}.png").write_text("no picture")
    program = tmp_path_factory.mktemp("dialogs") / "dialogs.py"
    program.write_text(PROGRAM)
    # Qt keeps the columns and the order of file dialogs in the user's settings.
    settings = {"XDG_CONFIG_HOME": str(tmp_path_factory.mktemp("settings"))}
    with agents_driver.launch(
        "/usr/bin/python3", str(program), str(folder), qt=5, environment=settings
    ) as launched:
        yield launched


@pytest.mark.parametrize("title, told", [
    ("Contact", 'edit "Postal code:" #edit4 = \'what is known of it\''),
    ("Unsaved changes", 'button "Discard"'),
    ("Open a picture", "- picture 0.png | 10 bytes | png File | ..."),
    ("A font", 'checkbox "Underline"'),
])  # fmt: skip
def test_a_dialog_takes_few_tokens(app, title, told):
    window = app.window(title)
    eventually(lambda: str(window.snapshot())).satisfies(lambda outline: told in outline)
    outline = str(window.snapshot())
    assert tokens(outline) < MOST_TOKENS, outline


def test_what_only_holds_others_takes_no_tokens(app):
    outline = str(app.window("Open a picture").snapshot())
    assert "splitter handle" not in outline and "#frame" not in outline and "#page_2" not in outline
    assert "#treeView" in outline and re.search(r"- \.\.\. \d+ more", outline)


@pytest.mark.parametrize("button, name", [
    ("newOrderButton", "orderDialog"),
    ("emptyRoasterButton", ""),
    ("priceListButton", ""),
    ("nameBlendButton", "blendDialog"),
])  # fmt: skip
def test_a_dialog_of_the_showcase_takes_few_tokens(agents_driver, button, name):
    with agents_driver.launch(SHOWCASE, qt=QT) as app:
        window = app.window(name="showcase")
        window.tab("Dialogs").click()
        window.widget(button).click()
        dialog = app.modal()
        eventually(dialog).is_open()
        outline = str(dialog.snapshot())
        assert 'button "Cancel"' in outline or 'button "No"' in outline
        assert not name or f"#{name}" in outline
        assert tokens(outline) < MOST_TOKENS, outline
