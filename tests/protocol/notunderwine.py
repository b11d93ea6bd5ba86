"""Tests that say nothing about the agent where their programs are Windows programs under Wine, and why.

A row is a file, the beginning of a test's name, with its parameters if need be, and the reason.
"""

import pytest

from hostplatform import QT

PIPES = "the host's notifier of a pipe, and GLib's event loop, are there on Linux only"

HALF = "Windows tells of half an end together with the last bytes, upon which Qt closes the other half, too"
RESETS = (
    "Wine now and then tells of no end, if the connection is reset right behind bytes that nobody has read"
)
UNREAD = "Wine often tells Qt 5 and 6 of no end, if the server has left bytes unread; so a QTcpSocket without any agent"
MOMENTS = "Wine sends further events between the reply and the press, in which the widget dies"
DRAGS = "Windows itself runs a drag, and follows the system's mouse instead of Qt's events"
KEY_HANDLER = "a fault within Qt 4.8 for Windows, when the handler of a key deletes the view's model"
SCREENS = "Qt gives a window on the second screen of the tests' desktops the scale of the first under Wine"
MASKS = "Qt 5 and 6 for Windows find a window by its rectangle, even where its mask has a hole"

DRAGGING = ["an_agent", "nothing_is_dropped", "requests_are_answered", "the_end", "with_ctrl"]
if QT != 5:  # whose drags see enough of the mouse under Wine to be dropped
    DRAGGING += ["a_dialog", "a_drag", "a_row", "a_selected_text", "requests_that_arrive", "the_picture"]

TABLE = [
    (
        "test_connection.py",
        "test_the_socket_is_not_inherited_by_child_processes",
        "it looks at Wine's own descriptors, which no child gets; whether one holds the connection is tested beside it",
    ),
    ("test_wire_ends.py", "test_many_requests_before_an_end_in_order_are_all_answered", HALF),
    ("test_wire_ends.py", "test_the_server_may_end_after_any_byte_that_it_has_written[by a reset]", RESETS),
    *(("test_drag_and_drop.py", f"test_{beginning}_", DRAGS) for beginning in DRAGGING),
    ("test_footprint.py", "test_the_agent_starts_no_thread_catches_no_signal_", "it reads /proc"),
    ("test_leaks.py", "test_", "the heap and the files are counted by the GNU C library and /proc"),
    (
        "test_windows.py",
        "test_a_size_beyond_all_screens_is_cut",
        "Windows makes no window larger than the screen with a frame around it",
    ),
    *(
        (
            "test_presses.py",
            f"test_a_widget_that_dies_before_its_press_leaves_what_is_below_alone[{name}]",
            MOMENTS,
        )
        for name in ("a click", "a double click", "a press")
    ),
    ("test_presses.py", "test_a_release_whose_widget_dies_reaches_nothing_else", MOMENTS),
    ("test_agent_life.py", "test_notifiers_are_held_back_only_while_", PIPES),
    ("test_agent_life.py", "test_without_a_server_no_notifier_is_held_back", PIPES),
]

WITH_QT_4 = [
    (
        "test_table.py",
        "test_a_cell_that_goes_away_during_the_walk_ends_it_silently[deleting-model-",
        KEY_HANDLER,
    ),
    (
        "test_tree_view.py",
        "test_an_item_that_goes_away_during_the_walk_is_an_error[deleting-model-",
        KEY_HANDLER,
    ),
]
WITH_QT_5_AND_6 = [
    ("test_wire_ends.py", "test_the_server_may_end_after_any_byte_that_it_has_read[", UNREAD),
    ("test_fronts.py", "test_a_wait_in_vain_is_not_repeated_while_the_window_stands_as_it_did", MASKS),
    ("test_screens.py", "test_the_mouse_reaches_its_points_on_each_of_two_screens[1;2-1]", SCREENS),
    ("test_screens.py", "test_the_mouse_reaches_its_points_on_each_of_two_screens[2;1-1]", SCREENS),
    ("test_screens.py", "test_the_mouse_reaches_its_points_on_each_of_two_screens[1.25;1.5-1]", SCREENS),
    ("test_screens.py", "test_the_mouse_reaches_its_points_on_each_of_two_screens[2;2-1]", SCREENS),
    ("test_screens.py", "test_a_point_beyond_the_last_screen_is_not_taken_", SCREENS),
]
TABLE += WITH_QT_4 if QT == 4 else WITH_QT_5_AND_6


def exclude(items, whole_files):
    """Marks the tests of the table as skipped. Where whole files are run, a row that no test fits is an error."""
    files = {item.path.name for item in items}
    unused = [row for row in TABLE if row[0] in files]
    for item in items:
        for row in TABLE:
            file, beginning, reason = row
            if item.path.name == file and item.name.startswith(beginning):
                item.add_marker(pytest.mark.skip(reason=f"not under Wine: {reason}"))
                if row in unused:
                    unused.remove(row)
    if unused and whole_files:
        raise pytest.UsageError(f"notunderwine.py excludes what is not there: {unused}")
