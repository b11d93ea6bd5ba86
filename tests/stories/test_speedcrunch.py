"""SpeedCrunch: a calculation, its result, and what the history keeps."""

from qtdriver import containing, eventually


def test_a_calculation_is_typed_shown_and_called_back_from_the_history(start):
    window = start("speedcrunch").window("SpeedCrunch")
    editor = window.find("Editor")
    editor.type("(2+3)*4\n")
    eventually(window.find("ResultDisplay")).has_property("plainText", containing("= 20"))
    editor.press("Up")
    eventually(editor).has(plainText="(2+3)*4")
    editor.press("End")
    editor.type("+22\n")
    eventually(window.find("ResultDisplay")).has_property("plainText", containing("= 42"))
