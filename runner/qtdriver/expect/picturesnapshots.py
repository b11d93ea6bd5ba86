"""Picture snapshots: what a widget or a window shows, compared with a picture beside the test."""

from __future__ import annotations

import tempfile
import time
from pathlib import Path
from typing import TYPE_CHECKING, List, NamedTuple, Optional, Sequence, Tuple, Union

from ..api.widget import Widget
from ..api.window import Window
from ..desktop.screen_process import SCREENS, display_name
from ..errors.paths import shown_path
from ..protocol.transcript import Comparison
from ..protocol.wire import Rect
from .baselines import Baselines, current_baselines
from .comparison import Box, Difference, Limits, as_png, compare, masked, read_picture
from .fulfilment import wait_in
from .steady import Steady

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Masks = Union[Widget, Sequence[Widget]]
"""Widgets whose pixels do not count."""

DEFAULT_LIMITS = Limits(8, 0.0)

_SUFFIX = ".png"
_APART_SECONDS = 0.05
"""The time between two pictures that are compared with each other: some frames of an animation."""


class _Shown(NamedTuple):
    """The picture that is shown, and whether it was the same a moment before."""

    image: "Image"
    rests: bool


def wait_for_picture(
    window: Window,
    widget: Optional[Widget],
    name: str,
    masks: Masks,
    limits: Limits,
    timeout: Optional[float],
) -> None:
    """Waits until a window, or the widget in it, rests and looks like the picture snapshot of this name.

    Raises ConditionError with the difference, and where there is no such picture yet; PictureError where the screen shows
    no picture of it; TypeError and ValueError for arguments that nothing can fulfil.
    """
    camera = _Camera(window, widget, _checked_masks(masks))
    check = _Check(current_baselines(), name, list(window.app.look.names()), _checked_limits(limits))
    wait_in(
        window,
        widget,
        f'it to match the picture "{name}"',
        camera.shoot,
        check.accept,
        timeout,
        check.describe,
        check.give_up,
        lambda: check.comparison,
    )
    check.write()


class _Check:
    """Compares what is shown with the baseline of its name.

    Attributes:
        comparison: the pictures of the failure, once it has been described.
    """

    def __init__(self, baselines: Baselines, name: str, looks: Sequence[str], limits: Limits) -> None:
        self.comparison: Optional[Comparison] = None
        self._baselines = baselines
        self._name = name
        self._limits = limits
        suffixes = [f".{look}{_SUFFIX}" if look else _SUFFIX for look in looks]
        self._own = baselines.path(name, suffixes[0])
        self._path = baselines.find(name, suffixes)
        self._expected = self._path and read_picture(self._path.read_bytes(), str(self._path))
        self._steady = Steady()
        self._new: "Optional[Image]" = None

    def __repr__(self) -> str:
        return f"<check of {self._name}>"

    def accept(self, shown: _Shown) -> bool:
        """Returns whether the picture is as expected, or is noted to be written, since it does not change any more."""
        if not shown.rests:
            return False
        if self._expected is not None and self._difference(shown.image).is_within(self._limits):
            return True
        if self._baselines.update and self._observe(shown):
            self._new = shown.image
        return self._new is not None

    def give_up(self, shown: _Shown) -> bool:
        """Returns whether to stop waiting: nothing is expected, and the picture does not change any more."""
        return self._expected is None and self._observe(shown)

    def _observe(self, shown: _Shown) -> bool:
        return self._steady.observe((shown.image.size, shown.image.tobytes()))

    def write(self) -> None:
        """Writes the new picture, if there is one."""
        new = self._new
        if new is not None:
            self._baselines.write(self._own, lambda path: path.write_bytes(as_png(new)))

    def _difference(self, image: "Image") -> Difference:
        assert self._expected is not None
        return compare(self._expected, image, self._limits.tolerance)

    def describe(self, shown: _Shown) -> str:
        """Writes the pictures of the failure. Returns why the picture is not accepted."""
        if self._expected is None:
            self.comparison = Comparison(b"", as_png(shown.image), b"")
            text = "there was no such picture to compare it with"
        else:
            difference = self._difference(shown.image)
            self.comparison = Comparison(
                as_png(self._expected), as_png(shown.image), as_png(difference.picture)
            )
            text = difference.describe(self._limits)
        changing = "" if shown.rests else "it had not come to rest: "
        update = f"{self._baselines.update_option} writes {shown_path(self._own)}, if it is right so"
        return f"{changing}{text}\npictures: {self._save(self.comparison)}\n{update}"

    def _save(self, comparison: Comparison) -> str:
        """Writes the pictures of a failure. Returns their paths, of which all but the first one are names."""
        folder = self._baselines.make_folder()
        files = {f"{self._name}.{kind}{_SUFFIX}": data for kind, data in vars(comparison).items() if data}
        for name, data in files.items():
            (folder / name).write_bytes(data)
        first, *others = files
        return ", ".join([shown_path(folder / first), *others])


class _Camera:
    """Takes pictures of a widget, or a window, as it is on the screen."""

    def __init__(self, window: Window, widget: Optional[Widget], masks: Sequence[Widget]) -> None:
        self._window = window
        self._widget = widget
        self._masks = masks
        self._last: "Optional[Image]" = None
        self._taken_at = 0.0

    def __repr__(self) -> str:
        return f"<camera on {self._widget or self._window}>"

    def shoot(self) -> _Shown:
        """Takes a picture; two for the first time. Returns the last one, and whether the one before is the same."""
        before = self._picture() if self._last is None else self._last
        time.sleep(max(self._taken_at + _APART_SECONDS - time.monotonic(), 0.0))
        self._last = self._picture()
        is_same = before.size == self._last.size and before.tobytes() == self._last.tobytes()
        return _Shown(self._last, is_same)

    def _picture(self) -> "Image":
        rect = self._rect()
        masks = [_within(rect, mask.rect(timeout=0)) for mask in self._masks]
        with tempfile.TemporaryDirectory(prefix="qtdriver-picture-") as folder:
            path = Path(folder) / f"shown{_SUFFIX}"
            part = (rect.left, rect.top, rect.right + 1, rect.bottom + 1)
            self._taken_at = time.monotonic()
            SCREENS.save_picture(display_name(self._window.app.display), path, part=part).wait()
            return masked(read_picture(path.read_bytes(), str(path)), masks)

    def _rect(self) -> Rect:
        if self._widget is None:
            return self._window.snapshot(timeout=0).root.rect
        return self._widget.rect(timeout=0)


def _within(outer: Rect, inner: Rect) -> Box:
    """The place of one rectangle in the other one."""
    left, top = inner.left - outer.left, inner.top - outer.top
    return left, top, left + inner.width, top + inner.height


def _checked_masks(masks: Masks) -> List[Widget]:
    listed = [masks] if isinstance(masks, Widget) else list(masks)
    for mask in listed:
        if not isinstance(mask, Widget):
            raise TypeError(f"matches_picture: masks: {mask!r} ({type(mask).__name__}) is no widget")
    return listed


def _checked_limits(limits: Limits) -> Limits:
    numbers: Tuple[Tuple[str, float, float], ...] = (
        ("tolerance", limits.tolerance, 255),
        ("share", limits.share, 1),
    )
    for argument, value, most in numbers:
        if isinstance(value, bool) or not isinstance(value, (int, float)):
            raise TypeError(f"matches_picture: {argument}: {value!r} ({type(value).__name__}) is no number")
        if not 0 <= value <= most:
            raise ValueError(f"matches_picture: {argument}: {value!r} is not from 0 to {most:g}")
    return limits
