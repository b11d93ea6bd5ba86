"""SpeedCrunch: a calculation, its result, and what the history keeps."""

from qtdriver import containing, eventually


def test_a_calculation_is_typed_and_its_result_is_shown(start):
    window = start("speedcrunch").window("SpeedCrunch")
    window.find("Editor").type("(2+3)*4\n")
    eventually(window.find("ResultDisplay")).has_property("plainText", containing("= 20"))
