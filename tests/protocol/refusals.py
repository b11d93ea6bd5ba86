"""A refused request leaves nothing behind in the application."""

from contextlib import contextmanager


@contextmanager
def nothing_happens(app, *, but=()):
    """Checks, by the application's own account, that it notices nothing of what is requested within.

    No mouse button, key, or wheel reaches any of its widgets, wherever that is, and nothing gets into its journal: no
    signal, no change of a value, a selection or the focus that it keeps account of. The mouse may move. `but` are words
    that lines of the journal may begin with.
    """
    app.forget()
    before = app.get("application", "input")
    yield
    happened = [line for line in app.events() if line.split(" ")[0] not in ("move", *but)]
    assert not happened, f"this happened: {happened}"
    after = app.get("application", "input")
    assert after == before, f"{int(after) - int(before)} input events reached the application"
