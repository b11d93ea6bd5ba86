"""Commands as extensions, with locators of every kind in place of paths."""

from __future__ import annotations

import random
from typing import Callable, Sequence

LOCATED = ("4", "5", "6", "7", "9")
HEXADECIMAL = {"5": (4, 5), "6": (4,), "9": (4,)}
"""The sections of a command that are hexadecimal already."""
FORCED_SECTION = {"5": 6, "6": 5, "9": 5}

TEXTS = ("Push", "Page 1", "Item 1", "&More", "File", "x", "")
CLASSES = (
    "QWidget",
    "QAbstractButton",
    "QPushButton",
    "QLineEdit",
    "QAbstractItemView",
    "QDialog",
    "PropertyTrap",
    "*",
)
TRAPS = (
    "deadly=1",
    "deadlyMood=1",
    "dialog=1",
    "loop=1",
    "windowless=1",
    "thrower=1",
    "text~=a",
    "enabled=true",
)

Chance = random.Random

_FORMS: Sequence[Callable[[Chance, str], str]] = (
    lambda chance, path: f"path={path}",
    lambda chance, path: f"path={path} visible=any",
    lambda chance, path: f"name~={path}",
    lambda chance, path: f"name*={path} first",
    lambda chance, path: f"ref={chance.randint(1, 300)}",
    lambda chance, path: f'{chance.choice(CLASSES)} text="{chance.choice(TEXTS)}"',
    lambda chance, path: f'label*="{chance.choice(TEXTS)}" last',
    lambda chance, path: f"{chance.choice(CLASSES)} nth={chance.randint(0, 5)}",
    lambda chance, path: f"{chance.choice(CLASSES)} >> {chance.choice(CLASSES)} last",
    lambda chance, path: f"{chance.choice(CLASSES)} .{chance.choice(TRAPS)} >> * first",
    lambda chance, path: f"{chance.choice(CLASSES)} .{chance.choice(TRAPS)} visible=any",
    lambda chance, path: chance.choice(("", "(", 'text="', "nth=x", "text~=(")),
)


def located(chance: Chance, request: str) -> str:
    """The request of one of the commands LOCATED as an extension: a path is most often still one."""
    number, window, path, *sections = request.split(",")
    taken = HEXADECIMAL.get(number, ())
    texts = [
        section if index in taken else section.encode("utf-8").hex()
        for index, section in enumerate(sections, start=3)
    ]
    forced = FORCED_SECTION.get(number)
    if forced and chance.random() < 0.3:
        texts[forced - 3 :] = [""] * (forced - 3 - len(texts)) + [b"force".hex()]
    quoted = '"' + path.replace("\\", "\\\\").replace('"', '\\"') + '"'
    locator = f"path={quoted}" if chance.random() < 0.6 else chance.choice(_FORMS)(chance, quoted)
    return ",".join(["+" + number, window.encode("utf-8").hex(), locator.encode("utf-8").hex(), *texts])
