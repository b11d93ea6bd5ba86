"""Extensions on widgets that locators find."""

import json

from extensions import extension, hexadecimal


def found(app, window, locator):
    """The object name of the one widget that a locator finds; else the reply."""
    reply = app.request(extension("+7", window, locator, "", "objectName", ""))
    return bytes.fromhex(reply[4:]).decode("utf-8") if reply.startswith("0,u:") else reply


def refusal(app, window, locator):
    """The beginning of the reply that refuses a locator, without the locator, and the widgets in it."""
    reply = app.request(extension("+7", window, locator, "", "objectName", ""))
    written = f"Widget ({hexadecimal(locator)})"
    begin = reply.index("[")
    assert reply.isascii() and written in reply
    return reply[:begin].replace(written, "Widget").rstrip(","), json.loads(reply[begin:])


def names(widgets):
    return [widget.get("name", "") for widget in widgets]


def invalid(reason, at):
    """The reply to a text that is no locator."""
    return f"8,Exception : Invalid locator: {reason} at {at}"
