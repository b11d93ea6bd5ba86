"""pytest.hookimpl with types, which pytest itself does not declare."""

from __future__ import annotations

from typing import Callable, TypeVar, cast

import pytest

_Hook = TypeVar("_Hook", bound=Callable[..., object])


def hookimpl(**options: bool) -> Callable[[_Hook], _Hook]:
    """Marks a function as the implementation of a hook, with options as pytest.hookimpl has them."""
    return cast("Callable[[_Hook], _Hook]", pytest.hookimpl(**options))
