"""Windows, names, buttons and the mouse."""

WINDOW = "Widget:showcase"


def run(demo):
    _look_around(demo)
    _press_buttons(demo)
    _toggle_check_boxes(demo)
    _read_properties(demo)
    _send_mouse_commands(demo)
    _move_and_resize(demo)


def _look_around(demo):
    demo.title("What is there")
    demo.request("List the visible windows.", "1")
    demo.request("List the widgets of the window.", f"2,{WINDOW}")
    demo.request("Check that the window can be acted on.", f"8,{WINDOW}")
    demo.request("Put the cursor on a button ...", f"4,{WINDOW},brewButton")
    demo.request("... and ask what is under it.", "3")


def _press_buttons(demo):
    demo.title("Press buttons")
    demo.activate("Press the button Brew.", "brewButton")
    demo.expect_event("clicked: brewButton")
    demo.activate("Press it again.", "brewButton")
    demo.expect("clickCount", "text", "2")
    demo.activate("Press a button that has no name but its text.", "Grind_dialog_button")
    demo.expect_event("clicked: Grind")
    reply = demo.request("Press a disabled button: refused.", f"5,{WINDOW},refillButton,,,")
    demo.check(
        "refusal",
        reply.payload,
        'Exception : Error: widget "refillButton" of class "QPushButton" is disabled.',
    )
    demo.activate("Choose a radio button.", "darkRadio")
    demo.expect("darkRadio", "checked", True)


def _toggle_check_boxes(demo):
    demo.title("Toggle check boxes")
    demo.activate("Switch milk on.", "milkCheck", "b:true")
    demo.expect_event("toggled: milkCheck on")
    demo.activate("Switch it on once more: nothing to do.", "milkCheck", "b:true")
    demo.expect("milkCheck", "checked", True)
    demo.activate("Check the group box Delivery.", "deliveryBox", "b:true")
    demo.expect("deliveryBox", "checked", True)
    demo.expect("courierButton", "enabled", True)


def _read_properties(demo):
    demo.title("Read properties")
    for name in ("text", "className", "silkClassName", "enabled", "globalRect", "focusPolicy"):
        demo.request(f"Read {name}.", f"7,{WINDOW},brewButton,,{name},")


def _send_mouse_commands(demo):
    demo.title("Mouse commands")
    demo.mouse(
        "Right click with Control held.", "tastingPad", "MouseClick:RightButton:0.5:0.5:ControlModifier"
    )
    demo.mouse("Press on the left ...", "tastingPad", "MousePress:LeftButton:0.25:0.5:")
    demo.mouse("... drag to the right ...", "tastingPad", "MouseMove::0.75:0.5:")
    demo.mouse("... and let go.", "tastingPad", "MouseRelease:LeftButton:0.75:0.5:")
    demo.mouse("Double click.", "tastingPad", "MouseDoubleClick:LeftButton:::")
    demo.request("The journal of the application.", f"7,{WINDOW},journal,,plainText,")


def _move_and_resize(demo):
    demo.title("Move and resize the window")
    demo.request("Move it.", f"10,{WINDOW},60,40")
    demo.request("Resize it.", f"11,{WINDOW},1120,800")
    demo.expect("showcase", "width", 1120)
    demo.expect("showcase", "height", 800)
