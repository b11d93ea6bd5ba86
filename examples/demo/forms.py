"""The form: every kind of entry field, the containers around them, and the file dialog."""

WINDOW = "Widget:showcase"
TABS = "pages/qt_tabwidget_tabbar"
PRICE_LIST = "/tmp/qtdriver-demo-prices.txt"


def play(stage):
    _fill_in_the_form(stage)
    _use_containers(stage)
    _choose_a_file(stage)


def _fill_in_the_form(stage):
    stage.title("Fill in the form")
    stage.activate("Turn to the page with the form.", TABS, "s:Entry fields")
    stage.expect("customerEdit", "visible", True)
    stage.enter("Enter a name and press Return.", "customerEdit", "s:Ada\n")
    stage.expect("customerEdit", "text", "Ada")
    stage.enter("Enter a number into a field with a validator.", "bagsEdit", "s:42")
    stage.expect("bagsEdit", "text", "42")
    reply = stage.request("Enter into a read-only field: refused.", f"6,{WINDOW},batchEdit,,733a78,")
    stage.check("refusal", reply.payload, "Exception : enter, QLineEdit is read only")
    stage.enter("Write a note.", "noteEdit", "s:Ground, please")
    stage.expect("noteEdit", "plainText", "Ground, please")
    stage.activate("Set the number of cups.", "cupSpin", "i:12")
    stage.expect("cupSpin", "value", 12)
    stage.activate("Set the weight.", "weightSpin", "s:2.25 kg")
    stage.expect("weightSpin", "value", "2.25")
    stage.activate("Choose a bean.", "beanCombo", "s:Liberica")
    stage.expect("beanCombo", "currentText", "Liberica")
    stage.enter("Type an origin that is not in the list.", "originCombo", "s:Peru")
    stage.expect("originCombo", "currentText", "Peru")
    stage.activate("Drag the strength to 8.", "strengthSlider", "i:8")
    stage.expect("strengthSlider", "value", 8)
    stage.activate("Set the time of the pick-up.", "pickupEdit", "s:2025-06-01 08:15")
    stage.expect_event("value: pickupEdit 2025-06-01 08:15")
    stage.activate("Set the date of the roast.", "roastedEdit", "s:2025-05-28")
    stage.expect_event("value: roastedEdit 2025-05-28")
    stage.activate("Set the opening time.", "openEdit", "s:06:30")
    stage.expect_event("value: openEdit 06:30")
    stage.picture("form")


def _use_containers(stage):
    stage.title("Containers")
    stage.activate("Turn to their page.", TABS, "s:Containers")
    stage.activate("Open a page of the tool box.", "recipeBox", "s:House secret")
    stage.expect("secretButton", "visible", True)
    stage.activate("Choose a day.", "weekBar", "s:Thursday")
    stage.expect_event("page: weekBar Thursday")
    stage.activate("Bring the recipe's dock to the front.", "recipeDock")
    stage.expect("favouriteCheck", "visible", True)


def _choose_a_file(stage):
    stage.title("The file dialog")
    stage.activate("Turn to the page with the dialogs.", TABS, "s:Dialogs")
    stage.activate("Open the price list.", "priceListButton")
    stage.expect_window("Widget:ActiveModalWidget:Price list")
    prices = stage.file_name(PRICE_LIST)
    stage.activate("Choose a file.", "priceListDialog", f"s:{prices}", window="Widget:ActiveModalWidget")
    stage.expect("fileResult", "text", prices.replace("\\", "/"))
