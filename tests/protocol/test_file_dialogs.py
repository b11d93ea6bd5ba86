"""File dialogs of Qt's own, as a test drives them: the application gets the file name that was typed."""

import os
import re

import pytest

from hostapp import HostApp, eventually
from hostplatform import shown
from refusals import nothing_happens

MODAL = "Widget:ActiveModalWidget"
BUILT_IN = ["propertyNames", "pseudoPropertyNames", "className", "silkClassName", "globalRect"]
FIELD_MISSING = "8,Exception : activate, fileNameEdit not found"
SHIFT = 0x02000000
HOME, END, BACKSPACE, RETURN = 0x01000010, 0x01000011, 0x01000003, 0x01000004


@pytest.fixture
def folder(tmp_path):
    for name in ("report.txt", "reply.txt"):
        (tmp_path / name).write_text(name)
    return tmp_path


@pytest.fixture(params=[[], ["-reverse"]], ids=["left-to-right", "right-to-left"])
def app(launch, folder, request):
    return start(launch, folder, *request.param)


@pytest.fixture
def plain(launch, folder):
    return start(launch, folder)


def start(launch, folder, *arguments):
    # A home of its own: Qt remembers there how its file dialogs were left.
    home = folder / "home"
    home.mkdir()
    return launch("filedialoghost", *arguments, env={"FOLDER": shown(folder), "HOME": str(home)})


def open_by(app: HostApp, button):
    """Has a click open the dialog, which the application waits for in exec()."""
    assert app.activate("Files", button) == "0,QPushButton"
    app.wait_until("dialog", "isActiveWindow", "true")
    app.forget()


def show(app: HostApp, request):
    """Has the application show a dialog that it does not wait for."""
    app.do(request)
    app.wait_until("dialog", "isActiveWindow", "true")
    app.forget()


def nothing_was_typed(app):
    return app.events("press", "release", "keypress", "keyrelease", "selected", "file") == []


def key(code, text="", modifiers=0):
    return [
        f"{word} fileNameEdit {code} '{text}' modifiers {modifiers}" for word in ("keypress", "keyrelease")
    ]


def typed(text):
    return [line for character in text for line in key(ord(character.upper()), character)]


@pytest.mark.parametrize("button, name", [("open", "report.txt"), ("save", "new.txt")])
def test_a_path_is_what_the_application_gets(app, folder, button, name):
    open_by(app, button)
    assert app.activate(MODAL, "dialog", f"s:{shown(folder)}/{name}") == "0,QFileDialog"
    app.wait_for(f"file {shown(folder)}/{name}")
    assert app.get("dialog", "visible") == "<no object dialog>"
    # The window is there for the next command as soon as the window manager has taken the dialog's frame away.
    eventually(lambda: app.activate("Files", button), "0,QPushButton")
    app.wait_until("dialog", "visible", "true")


@pytest.mark.parametrize("button", ["openSuggested", "openSeveral"])
@pytest.mark.parametrize("place", ["", "letters/"])
def test_a_path_takes_the_place_of_a_suggestion_that_is_not_there(plain, folder, button, place):
    (folder / place).mkdir(exist_ok=True)
    (folder / place / "first.txt").write_text("")
    open_by(plain, button)
    assert plain.get("fileNameEdit", "text") == "Documents"
    assert plain.activate(MODAL, "dialog", f"s:{shown(folder)}/{place}first.txt") == "0,QFileDialog"
    plain.wait_for(f"file {shown(folder)}/{place}first.txt")


@pytest.mark.parametrize("name", ["letters/../report.txt", "./report.txt", "letters/../letters/first.txt"])
def test_a_relative_path_may_lead_up_again(plain, folder, name):
    (folder / "letters").mkdir()
    (folder / "letters" / "first.txt").write_text("")
    open_by(plain, "open")
    assert plain.activate(MODAL, "dialog", f"s:{name}") == "0,QFileDialog"
    chosen = plain.wait_for(re.compile("file .*|no file"))
    assert os.path.normpath(chosen) == os.path.normpath(f"file {shown(folder)}/{name}")


@pytest.mark.parametrize("name", ["a b.txt", "50%s%n.txt", "a,b&c.txt", "Käse.txt", "MixedCase_1.TXT"])
def test_a_name_is_taken_in_the_folder_that_is_shown(plain, folder, name):
    open_by(plain, "save")
    assert plain.activate(MODAL, "dialog", f"s:{name}") == "0,QFileDialog"
    plain.wait_for(f"file {shown(folder)}/{name}")


def test_the_field_is_clicked_twice_emptied_and_filled_and_return_is_pressed(plain, folder):
    open_by(plain, "save")
    assert plain.get("fileNameEdit", "text") == "old.txt"
    width, height = map(int, plain.get("fileNameEdit", "geometry").split(" ")[1].split("x"))
    point = f"{(width - 1) // 2},{(height - 1) // 2}"
    plain.activate(MODAL, "dialog", "s:xy")
    plain.wait_for(f"file {shown(folder)}/xy")
    press = f"press fileNameEdit {point} button 1 buttons 1 modifiers 0"
    release = f"release fileNameEdit {point} button 1 buttons 0 modifiers 0"
    clearing = key(HOME) + key(END, modifiers=SHIFT) + key(BACKSPACE)
    expected = [press, release, press, release] + clearing + typed("xy") + key(RETURN)
    input_events = plain.events("press", "release", "doubleclick", "contextmenu", "keypress", "keyrelease")
    assert input_events == expected


def test_an_empty_field_is_not_emptied(plain, folder):
    open_by(plain, "open")
    assert plain.get("fileNameEdit", "text") == ""
    plain.activate(MODAL, "dialog", "s:reply.txt")
    plain.wait_for(f"file {shown(folder)}/reply.txt")
    assert plain.events("keypress", "keyrelease") == typed("reply.txt") + key(RETURN)


def test_the_empty_name_empties_the_field(plain):
    open_by(plain, "save")
    assert plain.activate(MODAL, "dialog", "s:") == "0,QFileDialog"
    plain.wait_until("fileNameEdit", "text", "")
    assert plain.events("selected", "file") == []
    assert plain.get("dialog", "visible") == "true"


def test_a_file_that_is_not_there_leaves_the_dialog_open(plain, folder):
    open_by(plain, "open")
    assert plain.activate(MODAL, "dialog", "s:none.txt") == "0,QFileDialog"
    plain.wait_until("qt_msgbox_label", "isActiveWindow", "true")
    assert plain.activate(MODAL, "Ok_dialog_button") == "0,QPushButton"
    plain.wait_until("qt_msgbox_label", "visible", "<no object qt_msgbox_label>")
    assert plain.activate(MODAL, "dialog", "s:report.txt") == "0,QFileDialog"
    plain.wait_for(f"file {shown(folder)}/report.txt")


def test_an_option_is_ignored(plain, folder):
    open_by(plain, "save")
    assert plain.activate(MODAL, "dialog", "s:one.txt", "s:two.txt") == "0,QFileDialog"
    plain.wait_for(f"file {shown(folder)}/one.txt")


def test_a_dialog_beside_the_window_is_found_by_its_title(plain, folder):
    show(plain, "show")
    assert plain.activate("Choose", "dialog", "s:beside.txt") == "0,QFileDialog"
    plain.wait_for(f"selected dialog {shown(folder)}/beside.txt")
    plain.wait_until("dialog", "visible", "<no object dialog>")


def test_an_open_list_of_completions_does_not_get_in_the_way(plain, folder):
    show(plain, "show")
    plain.do("complete")
    assert "popup" in plain.events()
    plain.forget()
    assert plain.activate("Choose", "dialog", "s:beside.txt") == "0,QFileDialog"
    plain.wait_for(f"selected dialog {shown(folder)}/beside.txt")


def test_the_first_of_two_fields_of_the_name_is_used(plain, folder):
    show(plain, "showWithTwoFields")
    assert plain.activate("Choose", "dialog", "s:beside.txt") == "0,QFileDialog"
    plain.wait_for(f"selected dialog {shown(folder)}/beside.txt")


def test_a_dialog_without_the_field_is_an_error(plain):
    show(plain, "showWithoutField")
    assert plain.activate("Choose", "dialog", "s:x.txt") == FIELD_MISSING
    assert nothing_was_typed(plain)
    assert plain.get("renamed", "text") == ""


def test_a_dialog_that_qt_does_not_show_itself_is_an_error(plain):
    plain.do("showElsewhere")
    plain.forget()
    assert plain.activate("Choose", "dialog", "s:x.txt") == FIELD_MISSING
    assert nothing_was_typed(plain)


@pytest.mark.parametrize("value", ["", "i:1", "b:true", "report.txt"])
def test_other_values_than_strings_are_type_errors(plain, value):
    show(plain, "show")
    error = '8,Exception : Type error: object "dialog" of class "QFileDialog" accepts string.'
    assert plain.activate("Choose", "dialog", value) == error
    assert nothing_was_typed(plain)


def test_a_wrong_value_is_reported_before_a_missing_field(plain):
    show(plain, "showWithoutField")
    error = '8,Exception : Type error: object "dialog" of class "QFileDialog" accepts string.'
    with nothing_happens(plain):
        assert plain.activate("Choose", "dialog", "i:1") == error


def test_a_disabled_dialog_is_refused(plain):
    show(plain, "showDisabled")
    refusal = '8,Exception : Error: widget "dialog" of class "QFileDialog" is disabled.'
    assert plain.activate("Choose", "dialog", "s:x.txt") == refusal
    assert nothing_was_typed(plain)


def test_a_closed_dialog_is_not_found(plain):
    open_by(plain, "open")
    plain.activate(MODAL, "Cancel_dialog_button")
    plain.wait_for("no file")
    with nothing_happens(plain):
        assert plain.activate(MODAL, "dialog", "s:x.txt") == f"2,Window ({MODAL}) not found"


def test_a_dialog_that_dies_at_the_click_is_answered_for(plain):
    show(plain, "showDoomed")
    assert plain.activate("Choose", "dialog", "s:x.txt") == "0,QFileDialog"
    plain.wait_until("dialog", "visible", "<no object dialog>")
    assert plain.events("keypress", "selected") == []


def test_a_dialog_that_dies_as_it_is_restored_is_an_error(plain):
    show(plain, "show")
    plain.do("minimize")
    plain.wait_until_minimized("dialog")
    assert (
        plain.activate("Choose", "dialog", "s:x.txt") == "8,Exception : Internal error, proxy without widget"
    )
    assert nothing_was_typed(plain)


def test_a_field_that_goes_away_at_the_first_click_is_an_error(plain):
    show(plain, "showRenaming")
    plain.do("focusOther")
    assert plain.activate("Choose", "dialog", "s:x.txt") == FIELD_MISSING
    assert plain.events("keypress", "selected") == []
    assert plain.get("renamed", "text") == ""


def test_there_are_no_pseudo_properties_of_its_own(plain):
    show(plain, "show")
    assert plain.read("Choose", "dialog", "pseudoPropertyNames") == "0,l:\f" + "\f".join(BUILT_IN)
    assert plain.read("Choose", "dialog", "itemList") == '8,Exception : Unknown property "itemList".'
    assert plain.read("Choose", "dialog", "silkClassName") == "u:QFileDialog"


def test_entering_is_refused(plain):
    show(plain, "show")
    refusal = '8,Exception : "enter" is not implemented for widget of class "QFileDialog"'
    assert plain.enter("Choose", "dialog", "s:x.txt") == refusal
    assert nothing_was_typed(plain)


def test_the_general_mouse_command_is_accepted(plain):
    show(plain, "journalled")
    assert plain.mouse("Choose", "dialog", "MouseClick:LeftButton:0:0:") == "0,QFileDialog"
    plain.wait_for("press dialog 0,0 button 1 buttons 1 modifiers 0")
