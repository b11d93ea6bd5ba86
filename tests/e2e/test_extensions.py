"""Requests beyond the twelve commands, against agents that are sockets of the test itself."""

import copy
import json
import pickle

import pytest

from qtdriver import errors
from qtdriver.commandline.typed_line import to_request
from qtdriver.protocol.extensions import EXTENSIONS, decode_utf8_hex
from qtdriver.trace.readable import describe_commands, describe_reply
from qtdriver.trace.trace import describe_request
from qtdriver.protocol.wire import Rect, Reply
from agents import answering, connected_agent

ALL = ("0,l:" + "".join(f"\f{extension.name}" for extension in EXTENSIONS) + "\n").encode("ascii")
OK = {"ref": 1, "class": "QPushButton", "text": "Größe"}


def decoded(request):
    """The name and the texts of a request."""
    name, *sections = request.decode("latin-1").rstrip("\n").split(",")
    return (name, *map(decode_utf8_hex, sections))


REQUESTS = [
    (lambda agent: agent.snapshot("€"), ("+2", "€", ""), b"0,j:{}\n", {}),
    (
        lambda agent: agent.snapshot("", "ref=1"),
        ("+2", "", "ref=1"),
        f"0,j:{json.dumps(OK)}\n".encode("ascii"),
        OK,
    ),
    (lambda agent: agent.locate("a,b", "ref=1"), ("+4", "a,b", "ref=1"), b"0,QLabel\n", "QLabel"),
    (lambda agent: agent.activate("w", "l"), ("+5", "w", "l", "", "", "", ""), b"0,X\n", "X"),
    (
        lambda agent: agent.activate("w", "l", "\n", True, widget_class="C", force=True),
        ("+5", "w", "l", "C", "s:\n", "b:true", "force"),
        b"0,X\n",
        "X",
    ),
    (lambda agent: agent.enter("w", "l", "€"), ("+6", "w", "l", "", "s:€", ""), b"0,X\n", "X"),
    (
        lambda agent: agent.enter("w", "l", 5, widget_class="C", force=True),
        ("+6", "w", "l", "C", "i:5", "force"),
        b"0,X\n",
        "X",
    ),
    (lambda agent: agent.read("w", "l", "p"), ("+7", "w", "l", "", "p", ""), b"0,u:e282ac\n", "€"),
    (
        lambda agent: agent.read("w", "l", "p", "x", widget_class="C"),
        ("+7", "w", "l", "C", "p", "s:x"),
        b"0,i:5\n",
        5,
    ),
    (
        lambda agent: agent.mouse("w", "l", "::::", widget_class="C", force=True),
        ("+9", "w", "l", "C", "s:::::", "force"),
        b"0,X\n",
        "X",
    ),
    (
        lambda agent: agent.mouse("w", "l", "::::", item=3),
        ("+9", "w", "l", "", "s:::::", "", "i:3"),
        b"0,X\n",
        "X",
    ),
    (
        lambda agent: agent.scroll("w", "l", "x", widget_class="C"),
        ("+scroll", "w", "l", "C", "s:x"),
        b"0,r:1,2,3,4\n",
        Rect(1, 2, 3, 4),
    ),
    (
        lambda agent: agent.item("w", "l", 0),
        ("+item", "w", "l", "", "i:0"),
        b'0,j:{"text":"A","states":["checked"]}\n',
        ("A", ("checked",)),
    ),
    (lambda agent: agent.press("w", "F2"), ("+press", "w", "", "F2", ""), b"0,X\n", "X"),
    (
        lambda agent: agent.press("w", "Ctrl", "l", mode="press"),
        ("+press", "w", "l", "Ctrl", "press"),
        b"0,X\n",
        "X",
    ),
    (
        lambda agent: agent.type_text("w", "\U0001f600\n", "l"),
        ("+type", "w", "l", "\U0001f600\n"),
        b"0,X\n",
        "X",
    ),
    (lambda agent: agent.turn_wheel("w", "l", ":::0:-3"), ("+wheel", "w", "l", ":::0:-3"), b"0,X\n", "X"),
    (lambda agent: agent.clipboard(), ("+clipboard",), b"0,u:e282ac\n", "€"),
    (lambda agent: agent.set_clipboard(""), ("+clipboard", ""), b"0,u:\n", None),
    (lambda agent: agent.focus("w", "l"), ("+focus", "w", "l"), b"0,X\n", "X"),
    (lambda agent: agent.typed_hidden(), ("+hidden",), b"0,b:true\n", True),
    (lambda agent: agent.record(), ("+record", "start"), b"0,\n", None),
    (lambda agent: agent.record(passwords=True), ("+record", "start", "passwords"), b"0,\n", None),
    (lambda agent: agent.stop_recording(), ("+record", "stop"), b"0,\n", None),
    (lambda agent: agent.events(), ("+events",), b'0,j:{"events":[]}\n', {"events": []}),
]


@pytest.mark.parametrize("call, texts, reply, result", REQUESTS)
def test_each_method_sends_its_request_and_reads_the_answer(server, call, texts, reply, result):
    serve = answering(ALL, reply)
    with connected_agent(server, serve) as agent:
        assert call(agent) == result
    assert serve.requests[0] == b"+extensions\n"
    assert decoded(serve.requests[1]) == texts


def test_there_is_a_method_for_each_extension():
    assert {texts[0] for _, texts, _, _ in REQUESTS} | {"+extensions"} == {row.name for row in EXTENSIONS}


def test_an_agent_is_asked_once_for_its_extensions_and_not_before_one_is_needed(server):
    serve = answering(b"0,title\n", b"0,l:\f+extensions\f+focus\n", b"0,QLabel\n", b"0,QLabel\n")
    with connected_agent(server, serve) as agent:
        agent.check_window("w")
        assert agent.extensions == {"+extensions", "+focus"}
        agent.focus("w", "l")
        agent.focus("w", "l")
    assert [request.split(b",")[0].strip() for request in serve.requests] == [
        b"8",
        b"+extensions",
        b"+focus",
        b"+focus",
    ]


def test_an_agent_of_an_earlier_version_has_no_extensions_and_is_asked_for_none(server):
    serve = answering(b"8,Command not found\n")
    with connected_agent(server, serve) as agent:
        assert agent.extensions == frozenset()
        with pytest.raises(errors.OldAgentError, match='newer agent.*"[+]press"') as caught:
            agent.press("w", "F2")
    assert caught.value.extension == "+press"
    assert serve.requests == [b"+extensions\n"]
    assert pickle.loads(pickle.dumps(caught.value)).args == caught.value.args


def test_half_of_a_surrogate_pair_is_refused_before_anything_is_sent(server):
    serve = answering()
    with connected_agent(server, serve) as agent:
        with pytest.raises(errors.UnsupportedTextError, match="surrogate pair at position 1"):
            agent.type_text("w", "a\ud83d")
    assert serve.requests == []


LOCATOR = 'label="Größe:"'
DIGITS = LOCATOR.encode("utf-8").hex()


@pytest.mark.parametrize(
    "reply, kind, message, candidates",
    [
        (f"2,Window ({DIGITS}) not found", errors.WindowNotFoundError, f"Window ({LOCATOR}) not found", ()),
        (f"3,Window ({DIGITS}) visible,2", errors.AmbiguousWindowError, f"Window ({LOCATOR}) visible,2", ()),
        (
            f"4,Window ({DIGITS}) not active modal",
            errors.WindowBlockedError,
            f"Window ({LOCATOR}) not active modal",
            (),
        ),
        (
            f"5,Widget ({DIGITS}) not found,{json.dumps([OK])}",
            errors.WidgetNotFoundError,
            f"Widget ({LOCATOR}) not found",
            (OK,),
        ),
        (f"5,Widget ({DIGITS}) not found", errors.WidgetNotFoundError, f"Widget ({LOCATOR}) not found", ()),
        (
            f"6,Widget ({DIGITS}) not visible,[]",
            errors.NotVisibleError,
            f"Widget ({LOCATOR}) not visible",
            (),
        ),
        (
            f"7,Widget ({DIGITS}) visible,2,{json.dumps([OK, OK])}",
            errors.AmbiguousError,
            f"Widget ({LOCATOR}) visible,2",
            (OK, OK),
        ),
        ('8,Exception : Unknown key "X"', errors.CommandError, 'Exception : Unknown key "X"', ()),
        ("9,covered by QFrame overlay", errors.NotReadyError, "covered by QFrame overlay", ()),
    ],
)
def test_a_refusal_tells_window_and_widget_as_the_test_wrote_them(server, reply, kind, message, candidates):
    with connected_agent(server, answering(ALL, reply.encode("latin-1") + b"\n")) as agent:
        with pytest.raises(kind) as caught:
            agent.focus("w", "l")
    assert type(caught.value) is kind
    assert (caught.value.code, caught.value.message) == (reply[0], message)
    assert caught.value.candidates == candidates
    copied = pickle.loads(pickle.dumps(caught.value))
    assert (copied.message, copied.candidates) == (message, candidates)
    assert copy.copy(caught.value).candidates == candidates


@pytest.mark.parametrize(
    "reply", ["5,Widget (zz) not found,[", "5,Widget (abc) not found", "7,Widget (ff) visible,2,[]"]
)
def test_a_refusal_that_is_not_as_it_should_be_does_not_pass_for_one_with_candidates(server, reply):
    with connected_agent(server, answering(ALL, reply.encode("latin-1") + b"\n")) as agent:
        with pytest.raises((errors.ProtocolError, errors.ReplyError)) as caught:
            agent.focus("w", "l")
    assert getattr(caught.value, "candidates", ()) == ()


@pytest.mark.parametrize("reply", ["0,j:", "0,j:[]", "0,j:{", "0,{}", "0,u:7b7d"])
def test_a_snapshot_that_is_no_description_is_a_protocol_error(server, reply):
    with connected_agent(server, answering(ALL, reply.encode("latin-1") + b"\n")) as agent:
        with pytest.raises(errors.ProtocolError):
            agent.snapshot("w")


def test_that_a_widget_cannot_take_input_yet_can_clear():
    assert issubclass(errors.NotReadyError, errors.RETRYABLE_ERRORS)
    assert issubclass(errors.NotReadyError, errors.RETRYABLE_LOOKUPS)


def test_traces_and_the_console_show_the_texts_of_requests_and_refusals():
    request = to_request(r"+type,=Main,=path=ok,=a\, €\n")
    assert request == f"+type,{'Main'.encode().hex()},{'path=ok'.encode().hex()},{'a, €'.encode().hex()}0a"
    assert describe_request(request) == "+type  Main  path=ok  a, €\n"
    assert describe_request("+type,zz") == "+type  zz"
    assert describe_reply(request, Reply.parse(f"5,Widget ({DIGITS}) not found,[]")) == (
        f"error 5: Widget ({LOCATOR}) not found"
    )
    assert describe_reply(request, Reply.parse("0,QTextEdit")) == "QTextEdit"
    assert describe_reply("+clipboard", Reply.parse("0,u:e282ac")) == "€"
    assert describe_reply("+2,", Reply.parse("0,j:{}")) == "j:{}"
    assert all(f"  {extension.name}" in describe_commands() for extension in EXTENSIONS)


CARRIED = [
    (lambda agent: agent.enter_widget("w", "a", "€"), ("+6", "w", 'path="a"', "", "s:€", "force")),
    (lambda agent: agent.activate_widget("w", "a", "€"), ("+5", "w", 'path="a"', "", "s:€", "", "force")),
    (lambda agent: agent.read_property("w,x", "a", "p"), ("+7", "w,x", 'path="a"', "", "p", "")),
    (
        lambda agent: agent.mouse_widget("€", "a", "::::"),
        ("+9", "€", 'path="a"', "", "s:::::", "force"),
    ),
    (lambda agent: agent.locate_widget("w", "a,b"), ("+4", "w", 'path="a,b"')),
]


@pytest.mark.parametrize("call, texts", CARRIED)
def test_a_text_that_a_command_cannot_carry_travels_by_its_extension(server, call, texts):
    serve = answering(ALL, b"0,QLineEdit\n")
    with connected_agent(server, serve) as agent:
        assert call(agent) == "QLineEdit"
    assert decoded(serve.requests[1]) == texts


@pytest.mark.parametrize("call, texts", CARRIED)
def test_without_extensions_such_a_text_is_refused_as_ever(server, call, texts):
    serve = answering(b"8,Command not found\n")
    with connected_agent(server, serve) as agent:
        with pytest.raises(errors.UnsupportedTextError):
            call(agent)
    assert serve.requests == [b"+extensions\n"]


def test_the_focus_widget_has_no_locator(server):
    with connected_agent(server, answering()) as agent:
        with pytest.raises(errors.UnsupportedTextError):
            agent.enter_widget("w", "FocusWidget", "€")


def test_texts_that_a_command_can_carry_ask_for_no_extension(server):
    serve = answering(b"0,QLineEdit\n")
    with connected_agent(server, serve) as agent:
        agent.enter_widget("w", "a", "\xe4,\n")
    assert [request.split(b",")[0] for request in serve.requests] == [b"6"]


@pytest.mark.parametrize(
    "answer, secrets",
    [
        (b"0,b:true\n", {"Ada Lovelace"}),
        (b"0,b:false\n", set()),
        (b"8,Command not found\n", set()),
        (None, {"Ada Lovelace"}),
    ],
    ids=["hidden", "seen", "older agent", "ended"],
)
def test_a_text_is_a_password_unless_the_agent_tells_otherwise(server, answer, secrets):
    def serve(agent):
        replies = {b"6": b"0,QListView\n", b"+hidden": answer}
        for request in agent.makefile("rb"):
            reply = replies.get(request.rstrip().split(b",")[0], b"8,Property not found\n")
            if reply is None:
                return
            agent.sendall(reply)

    with connected_agent(server, serve) as agent:
        assert agent.enter_widget("w", "FocusWidget", "Ada Lovelace") == "QListView"
        assert set(agent.secrets) == secrets
