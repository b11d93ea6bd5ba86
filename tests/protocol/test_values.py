"""Typed values in replies: every type of property."""

import pytest

pytestmark = pytest.mark.shared


@pytest.fixture
def canvas(launch):
    # Memory that nobody has written to is not zero: a value that is read beyond its end tells.
    app = launch("corehost", env={"MALLOC_PERTURB_": "165"})
    return lambda name: app.read("Editor", "canvas", name)


@pytest.mark.parametrize(
    "name, reply",
    [
        ("aBool", "0,b:true"),
        ("anotherBool", "0,b:false"),
        ("anInt", "0,i:-5"),
        ("aUInt", "0,i:4000000000"),
        ("aDouble", "u:0.3"),
        ("aString", "u:\u20ac, 1\n"),
        ("anEmptyString", "u:"),
        ("aDate", "u:2024-02-29"),
        ("aTime", "u:13:05:09"),
        ("aDateTime", "u:2024-02-29T13:05:09"),
        ("aSize", "u:"),
        ("aPoint", "u:"),
        ("aFont", "u:DejaVu Sans,12,-1,5,75,0,1,0,0,0"),
        ("aColor", "u:#ff8000"),
        ("aStringList", "0,l:\fone, two\f\xe9\f"),
        ("anEmptyStringList", "0,l:"),
        ("aRect", "0,r:10,20,39,59"),
        ("aMap", "8,Property type not supported"),
        ("aList", "8,Property type not supported"),
        ("aByteArray", "8,Property type not supported"),
        ("aBitArray", "8,Property type not supported"),
        ("aBrush", "8,Property type not supported"),
        ("aPalette", "8,Property type not supported"),
        ("anImage", "8,Property type not supported"),
        ("aRegion", "8,Property type not supported"),
        ("aBitmap", "8,Property type not supported"),
        ("aCursor", "8,Property type not supported"),
        ("aSizePolicy", "8,Property type not supported"),
        ("aKeySequence", "8,Property type not supported"),
        ("aLongLong", "8,Unknown property type"),
        ("aULongLong", "8,Unknown property type"),
        ("aChar", "8,Unknown property type"),
        ("aUrl", "8,Unknown property type"),
        ("aRectF", "8,Unknown property type"),
        ("aPolygon", "8,Unknown property type"),
        ("level", "0,i:7"),
        ("small", "0,i:200"),
        ("aShort", "0,i:50000"),
        ("options", "0,i:5"),
        ("alignment", "0,i:34"),
        ("orientation", "0,i:2"),
        ("focusPolicy", "0,i:0"),
        ("windowModality", "0,i:0"),
    ],
)
def test_a_value_is_answered_by_its_type(canvas, name, reply):
    assert canvas(name) == reply


def xpm_of(reply):
    assert reply.startswith("0,x:")
    assert reply == reply.lower()
    return bytes.fromhex(reply[4:]).decode("ascii")


def test_a_pixmap_is_answered_as_xpm(canvas):
    xpm = xpm_of(canvas("aPixmap"))
    assert xpm.startswith("/* XPM */")
    assert '"2 2 2 1"' in xpm
    assert "#ff0000" in xpm.lower() and "#0000ff" in xpm.lower()


def test_an_icon_is_answered_as_its_pixmap_of_64_by_64(canvas):
    xpm = xpm_of(canvas("anIcon"))
    assert '"64 64 1 1"' in xpm
    assert "#00ff00" in xpm.lower()


def test_a_property_that_does_not_exist_is_an_error(canvas):
    assert canvas("nothing") == '8,Exception : Unknown property "nothing".'
    assert canvas("") == '8,Exception : Unknown property "".'
