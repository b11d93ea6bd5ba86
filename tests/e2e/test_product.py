"""The symbols and libraries that the products export and need."""

import os
import re
import subprocess
from pathlib import Path

BUILD = Path(os.environ["QTDRIVER_BUILD"])
QT = int(os.environ["QTDRIVER_QT"])


def exported(library):
    """The names of the symbols that the library defines for others, demangled."""
    listing = subprocess.run(
        ["nm", "-D", "--defined-only", "-C", str(BUILD / "lib" / library)],
        check=True,
        capture_output=True,
        text=True,
    )
    return [line.split(" ", 2)[2] for line in listing.stdout.splitlines()]


NAME_PROVIDER = "LmSquishProxy::setNameProvider(LmSquishProxy::NameProvider*)"


def test_the_agent_exports_its_factory_its_class_and_the_name_provider_and_nothing_else():
    names = exported("libqtdriver.so")
    assert "createTestClient" in names
    assert "TestClient::TestClient()" in names
    assert NAME_PROVIDER in names
    others = [
        name
        for name in names
        if name not in ("createTestClient", NAME_PROVIDER)
        and not name.startswith("TestClient::")
        and name not in ("vtable for TestClient", "typeinfo for TestClient", "typeinfo name for TestClient")
    ]
    assert others == []


def test_the_agent_needs_no_libraries_of_qt_but_those_of_every_widgets_application_and_the_network():
    listing = subprocess.run(
        ["readelf", "-d", str(BUILD / "lib" / "libqtdriver.so")], check=True, capture_output=True, text=True
    ).stdout
    needed = re.findall(r"\(NEEDED\) .*\[(libQt.*)\.so\.\d\]", listing)
    modules = ["Core", "Gui", "Network"] + (["Widgets"] if QT > 4 else [])
    assert sorted(needed) == [f"libQt{QT if QT > 4 else ''}{module}" for module in modules]
