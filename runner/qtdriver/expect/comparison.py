"""Comparing two pictures of a widget, pixel by pixel."""

from __future__ import annotations

import io
from typing import TYPE_CHECKING, NamedTuple, Optional, Sequence, Tuple

from ..errors import PictureError

if TYPE_CHECKING:
    from PIL.Image import Image  # type: ignore[import]

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

Box = Tuple[int, int, int, int]
"""Left, top, right and bottom in pixels; right and bottom are the first ones outside."""

_MASK = (128, 128, 128)
_DIFFERS = (224, 33, 138)
_PALE = 0.75
"""The share of white in those pixels of a picture of the difference that do not differ."""


class Limits(NamedTuple):
    """The limits within which two pictures count as the same.

    Attributes:
        tolerance: by how much a channel of a pixel may differ, of 255.
        share: the share of the pixels that may differ by more.
    """

    tolerance: int
    share: float


class Difference(NamedTuple):
    """The difference between two pictures.

    Attributes:
        pixels: how many pixels differ by more than the tolerance.
        total: how many there are.
        box: the rectangle that they are in; None where there are none.
        sizes: the sizes of both where they are not the same; nothing else is compared then.
        picture: the second picture, paled, and what differs in a strong colour.
    """

    pixels: int
    total: int
    box: Optional[Box]
    sizes: Optional[Tuple[Tuple[int, int], Tuple[int, int]]]
    picture: "Image"

    def is_within(self, limits: Limits) -> bool:
        """Whether the pictures count as the same."""
        return self.sizes is None and self.pixels <= limits.share * self.total

    def describe(self, limits: Limits) -> str:
        """The difference in words."""
        if self.sizes is not None:
            (width, height), (shown_width, shown_height) = self.sizes
            return f"it was {shown_width} x {shown_height} pixels large in place of {width} x {height}"
        if self.box is None:
            return "it was as expected"
        left, top, right, bottom = self.box
        allowed = f", where {limits.share:.2%} may" if limits.share else ""
        return (
            f"it differs: {self.pixels / self.total:.2%} of its pixels ({self.pixels}) differ by more than "
            f"{limits.tolerance} of 255{allowed}, all within {right - left} x {bottom - top} pixels at {left}, {top}"
        )


def masked(image: "Image", boxes: Sequence[Box]) -> "Image":
    """The picture with these parts painted over."""
    result = image.copy()
    for box in boxes:
        result.paste(_MASK, box)
    return result


def compare(expected: "Image", actual: "Image", tolerance: int) -> Difference:
    """The difference between two pictures of the kind RGB."""
    from PIL import Image, ImageChops  # type: ignore[import]

    total = actual.width * actual.height
    if expected.size != actual.size:
        return Difference(total, total, None, (expected.size, actual.size), _beside(expected, actual))
    channels = ImageChops.difference(expected, actual).split()
    differing = None
    for channel in channels:
        beyond = channel.point(lambda value: 255 if value > tolerance else 0)
        differing = beyond if differing is None else ImageChops.lighter(differing, beyond)
    assert differing is not None
    picture = _paled(actual)
    picture.paste(Image.new("RGB", actual.size, _DIFFERS), mask=differing)
    return Difference(differing.histogram()[255], total, differing.getbbox(), None, picture)


def _paled(image: "Image") -> "Image":
    from PIL import Image

    grey = image.convert("L").convert("RGB")
    return Image.blend(grey, Image.new("RGB", image.size, "white"), _PALE)


def _beside(expected: "Image", actual: "Image") -> "Image":
    """The area that both have, paled, and the rest of either in the colour of what differs."""
    from PIL import Image

    width, height = max(expected.width, actual.width), max(expected.height, actual.height)
    common = (min(expected.width, actual.width), min(expected.height, actual.height))
    result = Image.new("RGB", (width, height), _DIFFERS)
    result.paste(_paled(actual.crop((0, 0, *common))), (0, 0))
    return result


def read_picture(data: bytes, name: str) -> "Image":
    """The picture in a file's bytes. Raises PictureError for other data, and without Pillow."""
    try:
        from PIL import Image
    except ImportError as error:
        raise PictureError("pictures need Pillow (Debian: python3-pil)") from error
    try:
        return Image.open(io.BytesIO(data)).convert("RGB")
    except OSError as error:
        raise PictureError(f"{name} is no picture: {error}") from error


def as_png(image: "Image") -> bytes:
    """The picture as a PNG file."""
    file = io.BytesIO()
    image.save(file, "PNG", optimize=True)
    return file.getvalue()
