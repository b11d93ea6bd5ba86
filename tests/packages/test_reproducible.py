"""The same sources make the same bytes, wherever and whenever."""

import re

import pytest

from making import differing, make_elsewhere, run


@pytest.fixture(scope="module")
def elsewhere(made, tmp_path_factory):
    """The folder with the packages that a copy of the sources makes."""
    return make_elsewhere("wheel", tmp_path_factory.mktemp("copy"))


@pytest.mark.parametrize("pattern", ["*.deb", "*.whl"])
def test_two_folders_make_the_same_bytes(made, elsewhere, pattern):
    assert differing(pattern, made, elsewhere) == []


def test_the_objects_come_from_no_cache(elsewhere):
    """It has those of other folders, and hides what depends on the folder."""
    cache = elsewhere.parents[2] / "cache"
    assert [path for path in cache.rglob("*") if path.is_file() and path.name.endswith("R")] == []


def test_no_package_has_the_path_of_the_folder_that_made_it(made, tmp_path):
    for package in made.glob("*.deb"):
        run("dpkg-deb", "--raw-extract", package, tmp_path / package.name)
    for symbols in tmp_path.rglob("*.debug"):
        run("objcopy", "--decompress-debug-sections", symbols)
    folders = {str(made), str(made.parents[1])}
    found = [path for path in tmp_path.rglob("*") if path.is_file() and _names(path, folders)]
    assert list(tmp_path.rglob("*.debug")) and found == []


def _names(path, folders):
    return re.search(b"|".join(re.escape(folder.encode()) for folder in folders), path.read_bytes())
