"""The hook of an outside tool, as the greeting reports it and the application sees it."""

import shutil
from pathlib import Path

import pytest

from hostapp import BUILD, WINDOWS
from hostplatform import shown

TAG = "qt486_vs2015_x64"
FILE_NAME = "{}.dll" if WINDOWS else "lib{}.so"
HOOK_NAME, WRAPPER_NAME = map(FILE_NAME.format, ("squishhook", "squishqtwrapper"))
TOOL = BUILD / "testtool"
HOOK, WRAPPER = TOOL / "bin" / HOOK_NAME, TOOL / "bin" / WRAPPER_NAME
WRAPPER_WITHOUT_ENTRY = TOOL / "incomplete" / FILE_NAME.format("wrapperwithoutentry")
PORTS = range(41100, 41300)


def install(prefix, hook=None, wrapper=None):
    """Lays out a prefix of the tool with these libraries."""
    (prefix / "bin").mkdir(parents=True)
    if hook:
        shutil.copy(hook, prefix / "bin" / HOOK_NAME)
    if wrapper:
        shutil.copy(wrapper, prefix / "bin" / WRAPPER_NAME)
    return prefix


@pytest.fixture
def start(launch):
    """Starts the host with SQUISH_PREFIX set, and perhaps more environment."""

    def start_with(prefix, **environment):
        return launch("bridgehost", env={"SQUISH_PREFIX": shown(prefix) if prefix else "", **environment})

    return start_with


@pytest.fixture
def hooked(start, tmp_path):
    return start(install(tmp_path, HOOK, WRAPPER))


def hook_port(app):
    greeting = app.greeting.split(" ")
    assert greeting == ["+client+", "2.1.0", greeting[2], greeting[3], TAG]
    return greeting[3]


def script_objects(app):
    app.do("scriptObjects")
    return app.events("script")


def asked_ports(app):
    return [int(line.split(" ")[1]) for line in app.events("asked")]


def environment(app):
    app.do("environment")
    return app.events("environment")[-1].replace("\\\\", "\\")


def per_build(prefix):
    """The folder for the build as the agent writes it."""
    return shown(prefix) + ("\\" if WINDOWS else "/") + TAG


def is_loaded(app, path):
    return str(path) in Path(f"/proc/{app.process.pid}/maps").read_text()


def test_without_a_prefix_there_is_no_hook(launch, monkeypatch):
    monkeypatch.delenv("SQUISH_PREFIX", raising=False)
    app = launch("bridgehost")
    assert hook_port(app) == "-1"
    assert script_objects(app) == ["script objects 0"]


@pytest.mark.parametrize("prefix", ["", "/nowhere"])
def test_an_empty_or_missing_prefix_is_no_hook(start, prefix):
    app = start(prefix)
    assert hook_port(app) == "-1"
    assert script_objects(app) == ["script objects 0"]
    assert environment(app) == f"environment {prefix and shown(prefix)}"


def test_without_the_hook_library_the_wrapper_is_not_loaded(start, tmp_path):
    app = start(install(tmp_path, wrapper=WRAPPER))
    assert hook_port(app) == "-1"
    assert script_objects(app) == ["script objects 0"]
    assert not is_loaded(app, tmp_path)


def test_a_hook_library_that_does_not_load_is_no_hook(start, tmp_path):
    prefix = install(tmp_path, wrapper=WRAPPER)
    (prefix / "bin" / HOOK_NAME).write_text("no library")
    app = start(prefix)
    assert hook_port(app) == "-1"
    assert script_objects(app) == ["script objects 0"]


@pytest.mark.parametrize("wrapper", [None, WRAPPER_WITHOUT_ENTRY], ids=["missing", "without entry"])
def test_without_a_usable_wrapper_the_port_is_0(start, tmp_path, wrapper):
    app = start(install(tmp_path, HOOK, wrapper))
    assert hook_port(app) == "0"
    assert script_objects(app)[-1] == "script objects 1"
    assert is_loaded(app, tmp_path / "bin" / HOOK_NAME)


@pytest.mark.parametrize("refusals", [0, 1, 57, 199])
def test_the_first_accepted_port_is_reported(start, tmp_path, refusals):
    app = start(install(tmp_path, HOOK, WRAPPER), STANDIN_REFUSALS=str(refusals))
    assert hook_port(app) == str(PORTS[refusals])
    assert asked_ports(app) == list(PORTS[: refusals + 1])


def test_after_200_refused_ports_the_port_is_0(start, tmp_path):
    app = start(install(tmp_path, HOOK, WRAPPER), STANDIN_REFUSALS="1000")
    assert hook_port(app) == "0"
    assert asked_ports(app) == list(PORTS)
    assert script_objects(app)[-1] == "script objects 1"


def test_the_hook_is_ready_before_the_agent_is(hooked):
    hooked.wait_for("agent loaded")
    hooked.settle()
    lines = hooked.journal
    assert lines.index("hook library loaded") < lines.index("asked 41100") < lines.index("agent loaded")


def test_the_script_object_is_a_hidden_window_with_a_fixed_name(hooked):
    assert script_objects(hooked) == [
        "script object LmSquishProxy::CPyTestProxy LmSquishProxy visible 0 parent 0",
        "script objects 1",
    ]


def test_requests_do_not_see_the_script_object(hooked):
    assert hooked.request("1") == '0,l:\fQWidget : "Bridge"'
    assert hooked.request("2,Widget:LmSquishProxy").startswith("2,")


def test_the_wrapper_can_call_the_script_object_while_it_is_initialised(start, tmp_path):
    app = start(install(tmp_path, HOOK, WRAPPER), STANDIN_CALL="ok")
    assert hook_port(app) == "41100"
    assert app.events("wrapper") == ["wrapper called 1 found QPushButton"]


def test_scripts_can_call_the_script_object_later(hooked):
    hooked.do("callForButton")
    hooked.do("callForNothing")
    assert hooked.events("called") == [
        "called 1 found ok error NoError",
        "called 1 found nothing error WidgetNotFoundError",
    ]


def test_the_application_can_name_what_has_no_name(hooked):
    hooked.do("callForProvided")
    hooked.do("installNameProvider")
    hooked.do("callForProvided")
    hooked.do("removeNameProvider")
    hooked.do("callForProvided")
    assert hooked.events("called") == [
        "called 1 found nothing",
        "called 1 found QCheckBox",
        "called 1 found nothing",
    ]


def test_the_libraries_stay_until_the_process_ends(hooked, tmp_path):
    hooked.do("deleteAgent")
    for name in (HOOK_NAME, WRAPPER_NAME):
        assert is_loaded(hooked, tmp_path / "bin" / name)
    hooked.start("quit")
    hooked.wait_for("hook library unloaded")
    assert hooked.wait_for_end() == 0
    assert hooked.journal.index("exec returned") < hooked.journal.index("hook library unloaded")


def test_the_script_object_outlives_the_agent(hooked):
    hooked.do("deleteAgent")
    hooked.do("callForButton")
    assert hooked.events("called") == ["called 1 found ok error NoError"]


def test_the_script_object_is_deleted_when_the_application_quits(hooked):
    hooked.do("watchScriptObject")
    assert "script object destroyed" not in hooked.events()
    hooked.start("quit")
    hooked.wait_for("exec returned")
    assert hooked.wait_for_end() == 0
    assert "script object destroyed" in hooked.journal[: hooked.journal.index("exec returned")]


def test_the_application_may_delete_the_script_object_earlier(hooked):
    hooked.do("deleteScriptObject")
    assert script_objects(hooked) == ["script objects 0"]
    assert hooked.request("1").startswith("0,")
    hooked.start("quit")
    hooked.wait_for("exec returned")
    assert hooked.wait_for_end() == 0


def test_without_a_folder_for_the_build_the_environment_stays(hooked, tmp_path):
    assert environment(hooked) == f"environment {shown(tmp_path)}"


def test_the_folder_for_the_build_comes_first_and_into_the_environment(start, tmp_path):
    install(tmp_path, HOOK)
    own = install(tmp_path / TAG, HOOK, WRAPPER)
    app = start(tmp_path)
    assert hook_port(app) == "41100"
    assert environment(app) == f"environment {per_build(tmp_path)}"
    app.do("childEnvironment")
    assert app.events("child")[0].replace("\\\\", "\\") == f"child environment {per_build(tmp_path)}"
    assert is_loaded(app, own / "bin" / HOOK_NAME)
    assert not is_loaded(app, tmp_path / "bin" / HOOK_NAME)


def test_an_empty_folder_for_the_build_hides_the_prefix(start, tmp_path):
    install(tmp_path, HOOK, WRAPPER)
    (tmp_path / TAG).mkdir()
    app = start(tmp_path)
    assert hook_port(app) == "-1"
    assert environment(app) == f"environment {per_build(tmp_path)}"


def test_a_file_in_place_of_the_folder_for_the_build_is_ignored(start, tmp_path):
    install(tmp_path, HOOK, WRAPPER)
    (tmp_path / TAG).write_text("")
    app = start(tmp_path)
    assert hook_port(app) == "41100"
    assert environment(app) == f"environment {shown(tmp_path)}"


def test_the_prefix_is_read_and_written_in_the_local_encoding(start, tmp_path):
    prefix = tmp_path / "Prüf €"
    install(prefix / TAG, HOOK, WRAPPER)
    app = start(prefix, LC_ALL="C.UTF-8")
    assert hook_port(app) == "41100"
    assert environment(app) == f"environment {per_build(prefix)}"
