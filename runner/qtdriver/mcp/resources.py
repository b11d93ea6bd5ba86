"""Resources: the documents on each kind of widget, which tell what values it takes and what can be read of it."""

from __future__ import annotations

from pathlib import Path
from typing import Any, Dict, Mapping, Optional

from .messages import INVALID_PARAMS, RpcError

_SCHEME = "qtdriver://widgets/"
_FOLDERS = (
    Path(__file__).resolve().parents[3] / "docs" / "widgets",
    Path(__file__).resolve().parent / "widgets",
    Path("/usr/share/doc/qtdriver/docs/widgets"),
)
"""Where the documents are: in a checkout, in a wheel, in a package of Debian."""


def _folder() -> Optional[Path]:
    return next((folder for folder in _FOLDERS if folder.is_dir()), None)


def _documents() -> Dict[str, Path]:
    folder = _folder()
    return {} if folder is None else {_SCHEME + file.stem: file for file in sorted(folder.glob("*.md"))}


def list_resources() -> Dict[str, Any]:
    """The result of resources/list; without any where the documents are not installed."""
    resources = [
        {
            "uri": uri,
            "name": file.stem,
            "title": _title(file),
            "mimeType": "text/markdown",
            "size": file.stat().st_size,
        }
        for uri, file in _documents().items()
    ]
    return {"resources": resources}


def _title(file: Path) -> str:
    with file.open(encoding="utf-8") as text:
        return text.readline().lstrip("# ").strip()


def read_resource(params: Mapping[str, Any]) -> Dict[str, Any]:
    """The result of resources/read. Raises RpcError for a resource that is not listed."""
    uri = params.get("uri")
    file = _documents().get(uri) if isinstance(uri, str) else None
    if file is None:
        raise RpcError(INVALID_PARAMS, f"there is no resource {uri!r}", {"uri": uri})
    text = file.read_text(encoding="utf-8")
    return {"contents": [{"uri": uri, "mimeType": "text/markdown", "text": text}]}
