"""Waiting until a deadline."""

import time

import pytest

from qtdriver import ConditionError, Driver, eventually
from qtdriver.protocol.waiting import Deadline, attempts, retry


def test_the_first_attempt_is_made_at_once_also_without_any_time():
    assert len(list(attempts(Deadline(0)))) == 1
    assert retry(lambda: 5, (ValueError,), Deadline(0)) == 5


@pytest.fixture
def pauses(monkeypatch):
    """The pauses that are made, on a clock that only they move."""
    made = []
    monkeypatch.setattr(time, "monotonic", lambda: sum(made))
    monkeypatch.setattr(time, "sleep", made.append)
    return made


def test_pauses_begin_short_and_grow(pauses):
    count = len(list(attempts(Deadline(5))))
    assert pauses[0] < 0.001 and max(pauses) <= 0.1
    assert all(later >= earlier for earlier, later in zip(pauses, pauses[1:-1]))
    assert sum(pauses) == pytest.approx(5) and count == len(pauses) + 1


@pytest.mark.parametrize("comes_true", [0.001, 0.002, 0.005, 0.02, 0.1])
def test_what_comes_true_is_seen_soon(pauses, comes_true):
    eventually(time.monotonic).satisfies(lambda now: now >= comes_true)
    late = sum(pauses) - comes_true
    assert late <= max(0.001, comes_true / 2), "one millisecond, or half of the time that it took"


def test_what_comes_true_after_a_millisecond_is_seen_before_two_have_passed(pauses):
    eventually(time.monotonic).satisfies(lambda now: now >= 0.001)
    assert sum(pauses) < 0.002


def test_a_wait_of_ten_seconds_takes_next_to_no_processor_time(build, fake_agent, request):
    """All of the ten seconds' questions are asked, on a clock that does not wait: the load of the machine does not
    count."""
    with Driver(qt=5, build=build) as driver:
        app = driver.launch(*fake_agent)
        pauses = request.getfixturevalue("pauses")
        asked = len(app.connection.transcript.exchanges())
        before = time.process_time()
        with pytest.raises(ConditionError, match="but after 10 s it was True"):
            eventually(app.window("Editor").widget("ok"), timeout=10).has(enabled=False)
        used = time.process_time() - before
        assert sum(pauses) == pytest.approx(10)
        assert len(app.connection.transcript.exchanges()) - asked > 100, "ten times a second at least"
        assert used < 0.02 * 10, "two hundredths of a core"


def test_a_click_and_its_awaited_effect_cost_next_to_no_processor_time(build, fake_agent):
    """An application takes about four milliseconds for both, most of it to paint. The least of several rounds counts:
    what else the machine does makes a round longer, never shorter."""
    with Driver(qt=5, build=build) as driver:
        window = driver.launch(*fake_agent).window("Editor")
        button = window.widget("ok")

        def round_of_clicks():
            before = time.process_time()
            for _ in range(20):
                button.click()
                eventually(button).has(enabled=True)
            return (time.process_time() - before) / 20

        assert min(round_of_clicks() for _ in range(10)) < 0.0004, "a tenth of what the application takes"


def test_the_last_error_is_raised_when_the_time_is_over(pauses):
    tries = []

    def fail():
        tries.append(len(tries))
        raise ValueError(len(tries))

    with pytest.raises(ValueError) as caught:
        retry(fail, (ValueError,), Deadline(5))
    assert caught.value.args == (len(tries),) and len(tries) == len(pauses) + 1


def test_another_error_is_not_tried_again():
    tries = []

    def fail():
        tries.append(1)
        raise KeyError

    with pytest.raises(KeyError):
        retry(fail, (ValueError,), Deadline(60))
    assert len(tries) == 1


def test_a_function_that_stays_false_is_told_with_its_last_value():
    with pytest.raises(ConditionError, match=r"^expected 4, but after 0.05 s it was 3$"):
        eventually(lambda: 3, timeout=0.05).equals(4)
    with pytest.raises(ConditionError, match="expected something true, but after 0.05 s it was False"):
        eventually(lambda: False, timeout=0.05).is_true()
