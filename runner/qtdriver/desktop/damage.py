"""The X server's own word that something on a display has changed, so that nobody has to look."""

from __future__ import annotations

from typing import Any, Optional


class Damage:
    """Changes on a display, by its extension DAMAGE. Nothing here waits for the X server."""

    def __init__(self, display: Any, root_damage: int) -> None:
        self._display = display
        self._damage = root_damage

    def fileno(self) -> int:
        """The descriptor that is readable when something has changed."""
        return int(self._display.fileno())

    def has_changed(self) -> bool:
        """Whether something has changed since the last call. Raises OSError when the display has ended."""
        from Xlib.error import ConnectionClosedError  # type: ignore[import]

        try:
            changed = False
            while self._display.pending_events():
                self._display.next_event()
                changed = True
                self._display.damage_subtract(self._damage)  # the server tells of the next change only then
                self._display.flush()
        except ConnectionClosedError as error:
            raise OSError(f"the display has ended: {error}") from error
        return changed

    def close(self) -> None:
        """Ends the connection."""
        try:
            self._display.close()
        except Exception:  # python-xlib raises several kinds when the server has ended before
            pass


def open_damage(name: str) -> Optional[Damage]:
    """Begins to watch a display; None where python-xlib is missing, or the display cannot tell of changes."""
    try:
        from Xlib.display import Display  # type: ignore[import]
        from Xlib.error import DisplayError, XError
        from Xlib.ext import damage  # type: ignore[import]
    except ImportError:
        return None
    try:
        display = Display(name)
    except (DisplayError, OSError):
        return None
    if not display.has_extension("DAMAGE"):
        display.close()
        return None
    try:
        display.damage_query_version()
        watched = display.screen().root.damage_create(damage.DamageReportNonEmpty)
        display.sync()
    except XError:
        display.close()
        return None
    return Damage(display, watched)
