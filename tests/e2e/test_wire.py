"""The text forms of the protocol, without any connection."""

import copy
import pickle
import subprocess
import sys

import pytest

import qtdriver
from qtdriver import COMMANDS, CursorWidget, Greeting, Rect, Reply, WidgetRecord, WindowRecord
from qtdriver import decode_hex, encode_argument, encode_hex, errors
from qtdriver.commandline.typed_line import to_request
from qtdriver.protocol.commands import COMMAND_BY_NAME
from qtdriver.trace.readable import describe_reply


@pytest.mark.parametrize("text, digits", [("", ""), ("A,", "412c"), ("\n\0ÿ", "0a00ff")])
def test_hexadecimal_text_has_two_lower_case_digits_per_character(text, digits):
    assert encode_hex(text) == digits
    assert decode_hex(digits.upper()) == text


def test_a_character_beyond_two_digits_is_named_with_its_position():
    with pytest.raises(ValueError, match=r"U\+20AC.*position 3"):
        encode_hex("5 x€")


@pytest.mark.parametrize(
    "value, text",
    [
        (None, ""),
        ("", "s:"),
        ("a,b", "s:a,b"),
        (True, "b:true"),
        (False, "b:false"),
        (-5, "i:-5"),
        (1, "i:1"),
    ],
)
def test_arguments_are_written_with_their_type(value, text):
    assert encode_argument(value) == text


def test_arguments_that_no_request_can_carry_are_refused():
    with pytest.raises(ValueError, match="32 bits"):
        encode_argument(2**31)
    with pytest.raises(TypeError, match="float"):
        encode_argument(0.5)


@pytest.mark.parametrize(
    "line, value",
    [
        ("0,b:true", True),
        ("0,b:false", False),
        ("0,i:-7", -7),
        ("0,i:4294967295", 4294967295),
        ("0,u:", ""),
        ("0,u:c3a4e282ac", "ä€"),
        ("0,l:", ()),
        ("0,l:\x0c", ("",)),
        ("0,l:\x0cone, two\x0cthree", ("one, two", "three")),
        ("0,r:10,20,39,59", Rect(10, 20, 39, 59)),
        ("0,r:-5,0,-1,9", Rect(-5, 0, -1, 9)),
        ("0,x:2f2a", b"/*"),
        ("0,QPushButton", "QPushButton"),
        ("0,", ""),
    ],
)
def test_values_in_replies_are_read_by_their_type(line, value):
    reply = Reply.parse(line)
    assert reply.ok
    assert reply.value() == value
    assert type(reply.value()) is type(value)


def test_the_right_and_bottom_edges_belong_to_a_rectangle():
    rect = Reply.parse("0,r:10,20,39,59").value()
    assert (rect.width, rect.height) == (30, 40)


@pytest.mark.parametrize(
    "line", ["0,b:maybe", "0,i:x", "0,u:c3", "0,u:abc", "0,l:x\x0cy", "0,r:1,2,3", "0,r:1,2,3,x", "0,x:zz"]
)
def test_a_value_that_does_not_fit_its_type_is_a_protocol_error(line):
    with pytest.raises(errors.ProtocolError):
        Reply.parse(line).value()


@pytest.mark.parametrize("line", ["", "0", "1,text", "10,text", "hello", "00,x"])
def test_a_line_without_a_known_code_is_no_reply(line):
    with pytest.raises(errors.ProtocolError):
        Reply.parse(line)


@pytest.mark.parametrize(
    "code, kind",
    [
        ("2", errors.WindowNotFoundError),
        ("3", errors.AmbiguousWindowError),
        ("4", errors.WindowBlockedError),
        ("5", errors.WidgetNotFoundError),
        ("6", errors.NotVisibleError),
        ("7", errors.AmbiguousError),
        ("8", errors.CommandError),
        ("9", errors.NotReadyError),
    ],
)
def test_each_refusal_raises_its_own_error_with_the_words_of_the_agent(code, kind):
    reply = Reply.parse(f"{code},Window (a, b) visible,2")
    with pytest.raises(kind) as caught:
        reply.value()
    assert (caught.value.code, caught.value.message) == (code, "Window (a, b) visible,2")
    assert pickle.loads(pickle.dumps(caught.value)).args == copy.copy(caught.value).args


def test_of_the_refusals_to_act_only_that_of_a_hidden_widget_can_clear():
    for words, kind in (
        ("widget is hidden by another window", errors.ObscuredError),
        ("hidden", errors.CommandError),
    ):
        error = errors.reply_error("8", f"Exception : Error: {words}")
        assert type(error) is kind and isinstance(error, errors.RETRYABLE_ERRORS) is (
            kind is errors.ObscuredError
        )


@pytest.mark.parametrize(
    "record, expected",
    [
        ('QMainWindow : "Editor"', WindowRecord("QMainWindow", False, "Editor")),
        ('QDialog (M) : "Save "x" : ""', WindowRecord("QDialog", True, 'Save "x" : "')),
        ('app::Window : ""', WindowRecord("app::Window", False, "")),
        ('QWidget : " (M) : ""', WindowRecord("QWidget", False, ' (M) : "')),
        ('QWidget : "two\nlines"', WindowRecord("QWidget", False, "two\nlines")),
    ],
)
def test_window_records_are_read_with_any_title(record, expected):
    assert WindowRecord.parse(record) == expected


def test_widget_records_are_read_with_depth_visibility_class_and_name():
    assert WidgetRecord.parse('0 V QMainWindow : "main"') == WidgetRecord(0, True, "QMainWindow", "main")
    assert WidgetRecord.parse('12 N QLabel : "a "b""') == WidgetRecord(12, False, "QLabel", 'a "b"')


@pytest.mark.parametrize(
    "parse", [WindowRecord.parse, WidgetRecord.parse, CursorWidget.parse, Greeting.parse]
)
def test_text_that_is_no_record_is_a_protocol_error(parse):
    with pytest.raises(errors.ProtocolError):
        parse("something else")


def test_the_widget_under_the_cursor_is_read_with_commas_in_its_path():
    assert CursorWidget.parse("QPushButton,2,1,main/a,b/ok,main,456469746f72") == CursorWidget(
        "QPushButton", 2, 1, "main/a,b/ok", "main", "Editor"
    )
    assert CursorWidget.parse("QLabel,1,1,x,,20ac2").window == " ¬"


def test_no_widget_under_the_cursor_reads_as_none():
    assert CursorWidget.parse(Reply.parse("?,,,,").payload) is None


def test_the_greeting_is_read_field_by_field():
    greeting = Greeting.parse("+client+ 2.1.0 4711 -1 qt515_gcc12_x64")
    assert greeting == Greeting("2.1.0", 4711, -1, "qt515_gcc12_x64")


def test_a_request_holds_hexadecimal_text_only_where_the_command_wants_it():
    compose = COMMAND_BY_NAME["activateWidget"].compose
    assert compose("Main", "dlg/ok", "", "b:true", "") == "5,Main,dlg/ok,,623a74727565,"
    assert COMMAND_BY_NAME["readProperty"].compose("Main", "ok", "", "text", "s:x") == "7,Main,ok,,text,s:x"


@pytest.mark.parametrize("text, name", [("a,b", "comma"), ("a\nb", "line break"), ("a\rb", "line break")])
def test_a_plain_section_with_a_character_that_ends_it_is_refused(text, name):
    with pytest.raises(ValueError, match=name):
        COMMAND_BY_NAME["windowTree"].compose(text)


def test_there_are_twelve_commands_numbered_in_order():
    assert [command.number for command in COMMANDS] == [str(number) for number in range(1, 13)]


@pytest.mark.parametrize(
    "typed, request_line",
    [
        ("5,Main,dlg/ok,,=b:true,", "5,Main,dlg/ok,,623a74727565,"),
        ("5,Main,ok,,=a,=b", "5,Main,ok,,61,62"),
        ("6,Main,ok,,=s:a\\,b\\\\c\\n,", "6,Main,ok,,733a612c625c630a,"),
        ("6,Main,ok,,=", "6,Main,ok,,"),
        ("9,=Main,a\\b,=C,6162,=", "9,=Main,a\\b,=C,6162,"),
        ("7,Main,ok,,=text,", "7,Main,ok,,=text,"),
        ("5,Main", "5,Main"),
        ("1", "1"),
        ("nonsense,=x", "nonsense,=x"),
    ],
)
def test_typed_sections_behind_an_equals_sign_become_hexadecimal(typed, request_line):
    assert to_request(typed) == request_line


@pytest.mark.parametrize("typed", ["6,Main,ok,,=C:\\qt,", "6,Main,ok,,=end\\"])
def test_an_unknown_escape_in_a_typed_section_is_refused(typed):
    with pytest.raises(ValueError, match="backslash"):
        to_request(typed)


def test_a_window_title_that_looks_like_a_value_is_shown_as_it_stands():
    assert describe_reply("8,typed", Reply.parse("0,i:5,")) == "i:5,"


def test_a_reply_that_is_not_as_it_should_be_is_shown_raw():
    assert describe_reply("7,w,p,,x,", Reply.parse("0,i:five")) == "0,i:five"


def test_the_package_imports_without_other_packages():
    code = "import sys; sys.modules.update(elftools=None, psutil=None); sys.path.insert(0, sys.argv[1]); import qtdriver"
    folder = next(path for path in sys.path if path.endswith("runner"))
    subprocess.run([sys.executable, "-c", code, folder], check=True)


def test_every_public_error_can_be_imported_from_the_package():
    public = {
        name
        for name, value in vars(errors).items()
        if isinstance(value, type) and value.__module__ == errors.__name__
    }
    assert public and public <= set(qtdriver.__all__)


def test_the_tree_at_the_top_of_the_errors_is_that_of_the_classes():
    _, _, tree = errors.__doc__.partition("\n\n")
    above = []
    for line in tree.split("\n\n")[0].splitlines():
        depth = (len(line) - len(line.lstrip())) // 4 - 1
        kind = getattr(errors, line.split()[0])
        if depth:
            assert above[depth - 1] in kind.__bases__
        above[depth:] = [kind]
        assert kind.__doc__
    told = {line.split()[0] for line in tree.split("\n\n")[0].splitlines()}
    assert told == {name for name, value in vars(errors).items() if isinstance(value, type)}


def test_tracebacks_name_an_error_as_it_is_imported():
    assert errors.WidgetNotFoundError.__module__ == errors.EarlyExitError.__module__ == "qtdriver.errors"


@pytest.mark.parametrize("module", [qtdriver, errors])
@pytest.mark.parametrize(
    "former, error", [("NotFoundError", "WindowNotFoundError"), ("HiddenError", "ObscuredError")]
)
def test_an_error_has_its_former_name_too_for_one_version(module, former, error):
    with pytest.warns(DeprecationWarning, match=f"{former} is {error} now") as warned:
        assert getattr(module, former) is getattr(module, error)
    assert warned[0].filename == __file__
    assert former not in qtdriver.__all__


def test_another_name_is_none_of_the_package():
    with pytest.raises(AttributeError, match="module 'qtdriver' has no attribute 'VanishedError'"):
        qtdriver.VanishedError
