"""The form: every kind of entry field, the containers around them, and the file dialog."""

WINDOW = "Widget:showcase"
TABS = "pages/qt_tabwidget_tabbar"
PRICE_LIST = "/tmp/qtdriver-demo-prices.txt"


def run(demo):
    _fill_in_the_form(demo)
    _use_containers(demo)
    _choose_a_file(demo)


def _fill_in_the_form(demo):
    demo.title("Fill in the form")
    demo.activate("Turn to the page with the form.", TABS, "s:Entry fields")
    demo.expect("customerEdit", "visible", True)
    demo.enter("Enter a name and press Return.", "customerEdit", "s:Ada\n")
    demo.expect("customerEdit", "text", "Ada")
    demo.enter("Enter a number into a field with a validator.", "bagsEdit", "s:42")
    demo.expect("bagsEdit", "text", "42")
    reply = demo.request("Enter into a read-only field: refused.", f"6,{WINDOW},batchEdit,,733a78,")
    demo.check("refusal", reply.payload, "Exception : enter, QLineEdit is read only")
    demo.enter("Write a note.", "noteEdit", "s:Ground, please")
    demo.expect("noteEdit", "plainText", "Ground, please")
    demo.activate("Set the number of cups.", "cupSpin", "i:12")
    demo.expect("cupSpin", "value", 12)
    demo.activate("Set the weight.", "weightSpin", "s:2.25 kg")
    demo.expect("weightSpin", "value", "2.25")
    demo.activate("Choose a bean.", "beanCombo", "s:Liberica")
    demo.expect("beanCombo", "currentText", "Liberica")
    demo.enter("Type an origin that is not in the list.", "originCombo", "s:Peru")
    demo.expect("originCombo", "currentText", "Peru")
    demo.activate("Drag the strength to 8.", "strengthSlider", "i:8")
    demo.expect("strengthSlider", "value", 8)
    demo.activate("Set the time of the pick-up.", "pickupEdit", "s:2025-06-01 08:15")
    demo.expect_event("value: pickupEdit 2025-06-01 08:15")
    demo.activate("Set the date of the roast.", "roastedEdit", "s:2025-05-28")
    demo.expect_event("value: roastedEdit 2025-05-28")
    demo.activate("Set the opening time.", "openEdit", "s:06:30")
    demo.expect_event("value: openEdit 06:30")
    demo.picture("form")


def _use_containers(demo):
    demo.title("Containers")
    demo.activate("Turn to their page.", TABS, "s:Containers")
    demo.activate("Open a page of the tool box.", "recipeBox", "s:House secret")
    demo.expect("secretButton", "visible", True)
    demo.activate("Choose a day.", "weekBar", "s:Thursday")
    demo.expect_event("page: weekBar Thursday")
    demo.activate("Bring the recipe's dock to the front.", "recipeDock")
    demo.expect("favouriteCheck", "visible", True)


def _choose_a_file(demo):
    demo.title("The file dialog")
    demo.activate("Turn to the page with the dialogs.", TABS, "s:Dialogs")
    demo.activate("Open the price list.", "priceListButton")
    demo.expect_window("Widget:ActiveModalWidget:Price list")
    prices = demo.file_name(PRICE_LIST)
    demo.activate("Choose a file.", "priceListDialog", f"s:{prices}", window="Widget:ActiveModalWidget")
    demo.expect("fileResult", "text", prices.replace("\\", "/"))
