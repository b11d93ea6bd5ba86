"""Windows, names, buttons and the mouse."""

WINDOW = "Widget:showcase"


def play(stage):
    _look_around(stage)
    _press_buttons(stage)
    _toggle_check_boxes(stage)
    _read_properties(stage)
    _play_mouse_commands(stage)
    _move_and_resize(stage)


def _look_around(stage):
    stage.title("What is there")
    stage.request("List the visible windows.", "1")
    stage.request("List the widgets of the window.", f"2,{WINDOW}")
    stage.request("Check that the window can be acted on.", f"8,{WINDOW}")
    stage.request("Put the cursor on a button ...", f"4,{WINDOW},brewButton")
    stage.request("... and ask what is under it.", "3")


def _press_buttons(stage):
    stage.title("Press buttons")
    stage.activate("Press the button Brew.", "brewButton")
    stage.expect_event("clicked: brewButton")
    stage.activate("Press it again.", "brewButton")
    stage.expect("clickCount", "text", "2")
    stage.activate("Press a button that has no name but its text.", "Grind_dialog_button")
    stage.expect_event("clicked: Grind")
    reply = stage.request("Press a disabled button: refused.", f"5,{WINDOW},refillButton,,,")
    stage.check(
        "refusal",
        reply.payload,
        'Exception : Error: widget "refillButton" of class "QPushButton" is disabled.',
    )
    stage.activate("Choose a radio button.", "darkRadio")
    stage.expect("darkRadio", "checked", True)


def _toggle_check_boxes(stage):
    stage.title("Toggle check boxes")
    stage.activate("Switch milk on.", "milkCheck", "b:true")
    stage.expect_event("toggled: milkCheck on")
    stage.activate("Switch it on once more: nothing to do.", "milkCheck", "b:true")
    stage.expect("milkCheck", "checked", True)
    stage.activate("Check the group box Delivery.", "deliveryBox", "b:true")
    stage.expect("deliveryBox", "checked", True)
    stage.expect("courierButton", "enabled", True)


def _read_properties(stage):
    stage.title("Read properties")
    for name in ("text", "className", "silkClassName", "enabled", "globalRect", "focusPolicy"):
        stage.request(f"Read {name}.", f"7,{WINDOW},brewButton,,{name},")


def _play_mouse_commands(stage):
    stage.title("Play mouse commands")
    stage.mouse(
        "Right click with Control held.", "tastingPad", "MouseClick:RightButton:0.5:0.5:ControlModifier"
    )
    stage.mouse("Press on the left ...", "tastingPad", "MousePress:LeftButton:0.25:0.5:")
    stage.mouse("... drag to the right ...", "tastingPad", "MouseMove::0.75:0.5:")
    stage.mouse("... and let go.", "tastingPad", "MouseRelease:LeftButton:0.75:0.5:")
    stage.mouse("Double click.", "tastingPad", "MouseDoubleClick:LeftButton:::")
    stage.request("The journal of the application.", f"7,{WINDOW},journal,,plainText,")


def _move_and_resize(stage):
    stage.title("Move and resize the window")
    stage.request("Move it.", f"10,{WINDOW},60,40")
    stage.request("Resize it.", f"11,{WINDOW},1120,800")
    stage.expect("showcase", "width", 1120)
    stage.expect("showcase", "height", 800)
