"""KeePassXC: a database is made, gets an entry, and finds it."""

from qtdriver import eventually

PASSWORD = "Mellon 1954 dwarves"


def test_a_database_is_made_and_an_entry_is_found_in_it(start, tmp_path):
    app = start("keepassxc")
    app.window("KeePassXC").button("Create new database").click()
    make_database(app, tmp_path / "family.kdbx")

    window = app.window("Family")
    eventually(window.find("QToolButton", text="New Entry…")).is_enabled()
    window.press("Ctrl+N")
    window.find(label="Title:").fill("Bank")
    window.find(label="Username:").find("QLineEdit").fill("Ada")
    window.button("OK").click()
    eventually(lambda: titles(window)).equals(["Bank"])

    window.find(placeholder="Search (Ctrl+F)…").fill("shop")
    eventually(lambda: titles(window)).equals([])
    window.find(placeholder="Search (Ctrl+F)…").fill("bank")
    eventually(lambda: titles(window)).equals(["Bank"])


def make_database(app, file):
    wizard = app.modal("Create")
    wizard.find(label="Database Name:").fill("Family")
    wizard.button("Continue").click()
    eventually(wizard.find("QLabel", text="Encryption Settings")).is_visible()
    wizard.button("Continue").click()
    for label in ("Enter password:", "Confirm password:"):
        wizard.find(label=label).find("QLineEdit").fill(PASSWORD)
    wizard.button("Done").click()
    app.modal("Save").file(file)
    eventually(file.exists).is_true()


def titles(window):
    return list(window.widget("entryView").snapshot().root.column("Title"))
