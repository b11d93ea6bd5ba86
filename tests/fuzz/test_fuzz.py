"""The fuzz targets, for a short while each: their seeds, then new inputs, start from the seeds alone.

scripts/fuzz.sh runs them for longer.
"""

import shutil
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
FUZZ = ROOT / "scripts" / "fuzz.sh"
TARGETS = sorted(folder.name for folder in (ROOT / "tests/fuzz/corpus").iterdir())

# A minute in all. Whole requests take longest.
SECONDS = {"commands": 25}
USUAL_SECONDS = 5
# Fixed, so that what fails here has changed; scripts/fuzz.sh looks for what nobody has met yet.
SEED = 7

pytestmark = pytest.mark.skipif(not shutil.which("clang++"), reason="there is no clang here to build with")


def fuzz(*arguments):
    command = ["nice", str(FUZZ), *arguments]
    return subprocess.run(command, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)


@pytest.fixture(scope="session")
def built():
    result = fuzz("--build")
    assert result.returncode == 0, result.stdout


def test_every_target_has_its_program_and_its_words(built):
    programs = {path.name[len("fuzz_") :] for path in (ROOT / "build/qt5-fuzz/bin").iterdir()}
    words = {path.stem for path in (ROOT / "tests/fuzz").glob("*.dict")}
    assert words == set(TARGETS)
    assert programs == {*TARGETS, "planted"}


@pytest.mark.parametrize("target", TARGETS)
def test_the_seeds_break_nothing(built, target):
    result = fuzz("--built", "--time", "0", target)
    assert result.returncode == 0, result.stdout


@pytest.mark.parametrize("target", TARGETS)
def test_a_short_run_breaks_nothing(built, target):
    seconds = SECONDS.get(target, USUAL_SECONDS)
    result = fuzz("--built", "--fresh", "--seed", str(SEED), "--time", str(seconds), target)
    assert result.returncode == 0, result.stdout
    assert "executions" in result.stdout
    print(result.stdout)


def test_a_mistake_that_was_planted_is_found(built):
    result = fuzz("--built", "--fresh", "--time", "20", "planted")
    for finding in (ROOT / "build/qt5-fuzz/findings").glob("planted-*"):
        finding.unlink()
    assert result.returncode != 0
    assert "heap-buffer-overflow" in result.stdout
    assert "Test unit written" in result.stdout
