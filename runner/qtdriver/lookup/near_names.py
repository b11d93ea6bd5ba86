"""Names and items like one that was not found."""

from __future__ import annotations

import difflib
from typing import Callable, Dict, Iterable, List, TypeVar

from ..errors import CommandError, ObscuredError, ReplyError
from ..protocol.connection import Connection
from ..protocol.locators import Address

_Result = TypeVar("_Result")

_SHOWN = 8
_NEAREST = 5
_SIMILARITY = 0.5


def nearest_names(name: str, names: Iterable[str]) -> List[str]:
    """Those of `names` that are most like `name`, the nearest first, or contain it, or are part of it."""
    by_folded: Dict[str, str] = {known.casefold(): known for known in names}
    folded = name.casefold()
    containing = [known for known in by_folded if folded and (folded in known or known in folded)]
    similar = difflib.get_close_matches(folded, by_folded, n=_NEAREST, cutoff=_SIMILARITY)
    return [by_folded[known] for known in dict.fromkeys([*similar, *sorted(containing, key=len)])][:_NEAREST]


def with_item_suggestions(
    connection: Connection, window: str, path: Address, item: str, call: Callable[[], _Result]
) -> _Result:
    """Makes `call`, which chooses `item`, and returns its result; when the widget refuses, the error suggests items."""
    try:
        return call()
    except ObscuredError:
        raise  # the item was not looked for yet
    except CommandError as error:
        explanation = _explain_item(connection, window, path, item) if item else ""
        raise CommandError(error.code, error.message, explanation) from None


def _explain_item(connection: Connection, window: str, path: Address, item: str) -> str:
    """Names the nearest items of a widget that refused `item`; empty when it has that item or lists none."""
    for name in ("pathList", "itemList"):
        try:
            items = connection.read_property(window, path, name)
        except (ReplyError, ValueError):
            continue
        if isinstance(items, tuple) and item not in items:
            nearest = nearest_names(item, items) or list(items[:_SHOWN])
            shown = ", ".join(f'"{text}"' for text in nearest) or "none at all"
            return f'there is no item "{item}" among its {len(items)}; the nearest: {shown}'
    return ""
