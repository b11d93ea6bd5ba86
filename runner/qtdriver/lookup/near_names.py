"""Finds names that are similar to one that was not found."""

from __future__ import annotations

import difflib
from typing import Dict, Iterable, List

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_NEAREST = 5
_SIMILARITY = 0.5


def nearest_names(name: str, names: Iterable[str]) -> List[str]:
    """Up to five of `names`: those that are similar to `name`, the most similar first, then those that contain it or are part
    of it. Upper and lower case do not count."""
    by_folded: Dict[str, str] = {known.casefold(): known for known in names}
    folded = name.casefold()
    containing = [known for known in by_folded if folded and (folded in known or known in folded)]
    similar = difflib.get_close_matches(folded, by_folded, n=_NEAREST, cutoff=_SIMILARITY)
    return [by_folded[known] for known in dict.fromkeys([*similar, *sorted(containing, key=len)])][:_NEAREST]
