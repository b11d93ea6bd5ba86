"""Linguist: a text is translated and saved."""

import re

from qtdriver import eventually

CATALOGUE = """<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Window</name>
    <message><source>Open</source><translation type="unfinished"></translation></message>
    <message><source>Close</source><translation type="unfinished"></translation></message>
</context>
</TS>
"""
PROGRAM = "/usr/lib/qt6/bin/linguist"


def test_a_text_is_translated_and_saved(start, tmp_path):
    file = tmp_path / "app_de.ts"
    file.write_text(CATALOGUE, encoding="utf-8")
    window = start(PROGRAM, file).window(name="MainWindow")
    editor = window.find(name="scroll area").find("QTextEdit").last()
    for translation in ("Öffnen", "Schließen"):
        editor.type(translation)
        window.press("Ctrl+Return")
    window.press("Ctrl+S")
    eventually(lambda: translations(file)).equals(["Öffnen", "Schließen"])


def translations(file):
    return re.findall("<translation>(.*)</translation>", file.read_text(encoding="utf-8"))
