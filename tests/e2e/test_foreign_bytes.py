"""Readers of bytes that the runner has not written: any bytes are read, or are the one error that the reader documents.

The examples are made up by hypothesis, the same ones in each run. What was found is kept as an example of its own.
"""

import functools
import json
import socket
import tempfile
import time
from pathlib import Path

import hypothesis
import pytest
from hypothesis import example, given
from hypothesis import strategies as st

from qtdriver import CursorWidget, Exchange, Greeting, Rect, Reply, WidgetRecord, WidgetTree, WindowRecord
from qtdriver import decode_hex, encode_argument, encode_hex, errors
from qtdriver.api.pictures import read_xpm
from qtdriver.launch.elf import ElfFile, contains_qt_widgets, read_elf
from qtdriver.launch.qtversion import qt_major
from qtdriver.lookup.windows import last_windows
from qtdriver.protocol.lines import LineSocket
from qtdriver.report.page import TestResult, write_page
from qtdriver.trace.readable import describe_reply
from qtdriver.trace.trace import describe_request

hypothesis.configuration.set_hypothesis_home_dir(tempfile.gettempdir())  # nothing is kept in the checkout

DIGITS = "9" * 5000
"""A number that Python does not read."""

LATIN_1 = st.binary(max_size=200).map(lambda data: data.decode("latin-1"))
ALPHABET = '0123456789,:?bilurx \x0c()"MVN-ab\n'
LINES = LATIN_1 | st.text(ALPHABET, max_size=60)
"""Any text of the wire, and text that looks like a reply."""

NAMES = LATIN_1.filter(lambda text: not set(text) & set("\x0c\n"))
CLASSES = st.from_regex(r"[A-Z][A-Za-z0-9_:]{0,20}", fullmatch=True)


def made_up(count=150):
    """The settings of a test: as many examples, the same each time."""
    suppressed = [hypothesis.HealthCheck.function_scoped_fixture, hypothesis.HealthCheck.too_slow]
    return hypothesis.settings(
        max_examples=count,
        derandomize=True,
        database=None,
        deadline=None,
        suppress_health_check=suppressed,
    )


def read_or_refused(read, data, *refusals):
    """The result of `read` for the data; None when it raises one of the errors that it may raise."""
    try:
        return read(data)
    except refusals:
        return None


@made_up()
@given(LINES)
@example("0,i:" + DIGITS)
@example("0,r:1,2,3," + DIGITS)
@example("0,u:ff")
def test_a_reply_is_read_or_is_no_reply(line):
    reply = read_or_refused(Reply.parse, line, errors.ProtocolError)
    if reply is not None:
        assert line == f"{reply.code},{reply.payload}" == reply.raw
        value = read_or_refused(lambda it: it.value(), reply, errors.ProtocolError, errors.ReplyError)
        assert value is None or isinstance(value, (bool, int, str, tuple, Rect, bytes))
        assert value is None or reply.ok


@made_up(60)
@given(st.text(max_size=50), st.integers(-(2**31), 2**31 - 1), st.lists(NAMES), st.binary(max_size=50))
def test_values_that_the_agent_writes_are_read_as_they_were(text, number, items, data):
    assert Reply.parse(f"0,u:{text.encode().hex()}").value() == text
    assert Reply.parse(f"0,i:{number}").value() == number
    assert Reply.parse("0,l:" + "".join(f"\x0c{item}" for item in items)).value() == tuple(items)
    assert Reply.parse(f"0,x:{data.hex()}").value() == data
    assert Reply.parse(f"0,r:{number},1,2,{-number}").value() == Rect(number, 1, 2, -number)


@made_up()
@given(st.text(max_size=50))
def test_a_text_is_written_so_that_it_is_read_as_it_was_or_is_refused(text):
    assert encode_argument(text) == f"s:{text}"
    digits = read_or_refused(encode_hex, text, errors.UnsupportedTextError)
    if max(text, default="") <= "\xff":
        assert decode_hex(digits) == text
    else:
        assert digits is None


@made_up()
@given(LINES | st.from_regex(r"\+client\+ \S+ \d+ -?\d+ \S*", fullmatch=True))
@example(f"+client+ 2.1.0 {DIGITS} -1 x")
@example(f"+client+ 2.1.0 1 -{DIGITS} x")
def test_a_greeting_is_read_or_is_none(line):
    greeting = read_or_refused(Greeting.parse, line, errors.ProtocolError)
    if greeting is not None:
        assert line.startswith(f"+client+ {greeting.version} ")
        assert greeting.pid >= 0


@made_up()
@given(LINES)
@example(DIGITS + ' V QWidget : "x"')
@example("QLabel," + DIGITS + ",1,x,y,")
@example("QLabel,1,1,x,y,zz")
def test_a_record_is_read_or_is_none(text):
    for parse in (WindowRecord.parse, WidgetRecord.parse, CursorWidget.parse):
        read_or_refused(parse, text, errors.ProtocolError)


@made_up(60)
@given(CLASSES, st.booleans(), NAMES, st.integers(0, 500))
def test_records_that_the_agent_writes_are_read_as_they_were(class_name, flag, name, depth):
    window = WindowRecord.parse(f'{class_name}{" (M)" if flag else ""} : "{name}"')
    assert window == WindowRecord(class_name, flag, name)
    widget = WidgetRecord.parse(f'{depth} {"V" if flag else "N"} {class_name} : "{name}"')
    assert widget == WidgetRecord(depth, flag, class_name, name)


@made_up(60)
@given(
    st.lists(
        st.builds(WidgetRecord, st.integers(0, 5), st.booleans(), CLASSES, st.sampled_from("abc") | NAMES)
    ),
    st.text("abc/", max_size=8),
)
def test_a_tree_is_made_of_any_records_and_a_path_that_it_calls_unique_finds_one(records, path):
    tree = WidgetTree(records)
    assert len(tree.nodes) == len(records)
    assert set(tree.find(path)) <= set(tree.nodes)
    for node in tree.nodes:
        unique = tree.unique_path(node)
        if unique is not None:
            assert node in tree.find(unique)


@made_up(100)
@given(st.lists(st.binary(max_size=30), max_size=10), st.binary(max_size=10))
def test_lines_arrive_whole_in_whatever_pieces_they_come(pieces, rest):
    ours, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_STREAM)
    with theirs, ours:
        lines = LineSocket(_Plain(ours))
        for piece in pieces:
            theirs.sendall(piece)
        theirs.sendall(rest)
        theirs.shutdown(socket.SHUT_WR)
        got = list(iter(lambda: lines.read_line(time.monotonic() + 30), None))
    *whole, _ = (b"".join(pieces) + rest).split(b"\n")
    assert [line.encode("latin-1") for line in got] == whole


class _Plain:
    """A socket of another family, which has no options of TCP."""

    def __init__(self, inner):
        self._inner = inner

    def setsockopt(self, *_):
        pass

    def __getattr__(self, name):
        return getattr(self._inner, name)


@pytest.fixture
def library(tmp_path, compile_c):
    """The bytes of a small library with symbols."""
    path = tmp_path / "library.so"
    compile_c(path, "-shared", source="int answer(void) { return 42; }")
    return path.read_bytes()


PATCHES = st.lists(
    st.tuples(
        st.integers(0, 2**15),
        st.sampled_from([b"\xff" * 8, b"\0" * 8, b"\x7f", b"\x80"]) | st.binary(min_size=1, max_size=8),
    ),
    max_size=4,
)


def patched(content, patches, end):
    """The bytes with some of them exchanged, and cut. Most patches go where an ELF file has its tables."""
    data = bytearray(content)
    for place, patch in patches:
        start = place % 0x400 if place % 3 else place % len(data)
        data[start : start + len(patch)] = patch
    return bytes(data[: end if end < 64 * 1024 else None])


def check_elf(path):
    elf = read_or_refused(read_elf, path, ValueError)
    assert elf is None or isinstance(elf, ElfFile)
    read_or_refused(contains_qt_widgets, path, ValueError)
    read_or_refused(functools.partial(qt_major, environment={}), path, errors.ProgramError)


@made_up(120)
@given(PATCHES, st.integers(0, 256 * 1024))
def test_a_damaged_program_is_read_or_refused(tmp_path, library, patches, end):
    path = tmp_path / "damaged"
    path.write_bytes(patched(library, patches, end))
    check_elf(path)


@made_up(100)
@given(st.binary(max_size=300))
def test_any_file_that_begins_as_a_program_is_read_or_refused(tmp_path, data):
    path = tmp_path / "any"
    path.write_bytes(b"\x7fELF" + data)
    check_elf(path)


COLOURS = st.tuples(st.integers(0, 255), st.integers(0, 255), st.integers(0, 255)) | st.none()


def xpm(width, height, colours, rows, header=None):
    """A picture as Qt writes it, with two characters for each colour."""
    keys = [f"{chr(97 + number // 26)}{chr(97 + number % 26)}" for number in range(len(colours))]
    lines = [header or f"{width} {height} {len(colours)} 2"]
    for key, colour in zip(keys, colours):
        lines.append(f"{key} c " + ("None" if colour is None else "#{:02x}{:02x}{:02x}".format(*colour)))
    lines += ["".join(keys[index] for index in row) for row in rows]
    return (
        "/* XPM */\nstatic char *dummy[]={\n" + ",\n".join(f'"{line}"' for line in lines) + "};\n"
    ).encode()


@st.composite
def pictures(draw):
    """Width, height, colours, and for each row the numbers of its colours."""
    width, height = draw(st.integers(1, 6)), draw(st.integers(1, 6))
    colours = draw(st.lists(COLOURS, min_size=1, max_size=30))
    row = st.lists(st.integers(0, len(colours) - 1), min_size=width, max_size=width)
    return width, height, colours, draw(st.lists(row, min_size=height, max_size=height))


@made_up(50)
@given(pictures())
def test_a_picture_that_qt_writes_is_read_pixel_by_pixel(picture):
    width, height, colours, rows = picture
    image = read_xpm(xpm(*picture))
    assert image.size == (width, height)
    for y, row in enumerate(rows):
        for x, index in enumerate(row):
            colour = colours[index]
            assert image.getpixel((x, y)) == ((0, 0, 0, 0) if colour is None else (*colour, 255))


HEADERS = st.lists(st.integers(-3, 4) | st.integers(), min_size=3, max_size=5).map(
    lambda n: " ".join(map(str, n))
)


@made_up()
@given(
    st.binary(max_size=100) | st.builds(lambda picture, header: xpm(*picture, header), pictures(), HEADERS)
)
@example(b'"1 1 1 1","a c #123456789abc","a"')
@example(b'"0 0 0 1"')
@example(b'"-1 0 0 1"')
@example(b'"1000000000 0 0 1"')
@example(b'"1 1 1 -1","a c None","a"')
@example(f'"1 {DIGITS} 1 1","a c None","a"'.encode())
def test_other_bytes_are_a_picture_or_refused(data):
    image = read_or_refused(read_xpm, data, errors.ProtocolError)
    assert image is None or min(image.size) > 0


@made_up()
@given(LINES, LINES)
@example("7,w,p,,icon,", "0,x:" + f'"{DIGITS} 1 1 1'.encode().hex())
@example("1", "0,l:\x0cQDialog")
@example("5,w,p,,xyz,", "0,")
def test_any_exchange_of_a_transcript_is_told(request, reply):
    exchange = Exchange(request, reply, 0.0, 0.0)
    windows = last_windows((exchange,))
    assert isinstance(windows, list) if request == "1" else windows is None
    assert isinstance(describe_request(request), str)
    parsed = read_or_refused(Reply.parse, reply, errors.ProtocolError)
    if parsed is not None:
        assert isinstance(describe_reply(request, parsed), str)


JSON = st.recursive(
    st.none() | st.booleans() | st.floats() | st.text(max_size=5) | st.integers(),
    lambda inner: st.lists(inner, max_size=3)
    | st.dictionaries(
        st.sampled_from(["steps", "before", "after", "trees", "notes"]) | st.text(max_size=5),
        inner,
        max_size=4,
    ),
)


@made_up(60)
@given(JSON.map(json.dumps).map(str.encode) | st.binary(max_size=50))
@example(b"[" * 100_000)
@example(b'{"steps": [{"before": "../../etc/passwd", "after": ""}]}')
def test_the_page_of_a_run_is_written_whatever_a_trace_holds(tmp_path, content):
    (tmp_path / "trace.json").write_bytes(content)
    page = tmp_path / "page" / "report.html"
    write_page([TestResult("test_x.py::test_y", "failed", 1.0, "message", tmp_path, None)], page)
    text = page.read_text()
    assert "test_y" in text and "root:" not in text
