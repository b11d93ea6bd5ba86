"""Pictures of several screens, of which one ends."""

import pytest

from qtdriver import Desktop
from qtdriver.desktop.screen_process import ScreenProcess
from qtdriver.errors import PictureError

KEPT_BYTES = 100_000_000


@pytest.fixture
def screens():
    process = ScreenProcess()
    yield process
    process.close()


@pytest.fixture
def desktops():
    both = Desktop(), Desktop()
    yield both
    for desktop in both:
        desktop.close()


def test_pictures_of_all_screens_stay_when_one_of_them_ends(screens, desktops, tmp_path):
    ending, staying = (desktop.environment["DISPLAY"] for desktop in desktops)
    store = screens.new_store()
    pictures = [screens.grab(display, store, KEPT_BYTES) for display in (ending, staying)]
    for picture in pictures:
        picture.wait()
    desktops[0].close()
    with pytest.raises(PictureError, match=f"no picture of the display {ending}: the X server has ended"):
        screens.grab(ending, store, KEPT_BYTES).wait()
    pictures.append(screens.grab(staying, store, KEPT_BYTES))
    pictures[-1].wait()
    saved, dropped = screens.save(store, tmp_path, pictures, later=True)
    screens.finish()
    assert sorted(saved) == [picture.number for picture in pictures] and dropped == 0
    assert all((tmp_path / picture.name).stat().st_size for picture in saved.values())
