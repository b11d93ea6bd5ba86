"""The fuzz targets: their seeds, then new inputs, as many as tests/fuzz/work.txt says, starting from the seeds alone.

scripts/fuzz.sh runs them for longer.
"""

import shutil
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
FUZZ = ROOT / "scripts" / "fuzz.sh"
TARGETS = sorted(folder.name for folder in (ROOT / "tests/fuzz/corpus").iterdir())

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
def test_the_seeds_and_inputs_made_of_them_break_nothing(built, target):
    result = fuzz("--built", "--fresh", "--seed", str(SEED), "--suite", target)
    print(result.stdout)
    assert result.returncode == 0, result.stdout
    assert "executions" in result.stdout


def test_a_mistake_that_was_planted_is_found(built, tmp_path):
    result = fuzz("--built", "--keep", str(tmp_path), "--runs", "1000000", "planted")
    assert result.returncode != 0
    assert "heap-buffer-overflow" in result.stdout
    assert "Test unit written" in result.stdout
    assert list((tmp_path / "findings").glob("planted-*"))


@pytest.fixture
def pretend(tmp_path):
    """Runs scripts/fuzz.sh with a program that only says that it has executed inputs, and ends well."""

    def run(*arguments, executed, rate=1000, coverage=100000):
        program = tmp_path / f"fuzz_{TARGETS[0]}"
        program.write_text(
            "#!/bin/sh\n"
            f"echo '#1 DONE   cov: {coverage} ft: 1 corp: 1/1b'\n"
            f"echo 'stat::number_of_executed_units: {executed}'\n"
            f"echo 'stat::average_exec_per_sec:     {rate}'\n"
        )
        program.chmod(0o755)
        return fuzz("--programs", str(tmp_path), "--keep", str(tmp_path), *arguments, TARGETS[0])

    return run


@pytest.mark.parametrize(
    "work", [["--suite"], ["--runs", "50"], ["--time", "1"], ["--time", "0"]], ids=lambda work: work[0][2:]
)
def test_a_run_that_executes_nothing_fails(pretend, work):
    result = pretend(*work, executed=0)
    assert result.returncode == 1
    assert "executed only 0 of " in result.stdout
    assert pretend(*work, executed=10_000_000).returncode == 0


def test_a_run_that_executes_less_than_it_was_told_fails(pretend):
    assert pretend("--runs", "50", executed=50).returncode == 0
    result = pretend("--runs", "50", executed=49)
    assert result.returncode == 1
    assert "executed only 49 of 50 inputs" in result.stdout


def test_a_run_that_executes_far_less_than_the_last_one_in_the_same_time_fails(pretend):
    assert pretend("--time", "1", executed=10000, rate=10000).returncode == 0
    assert pretend("--time", "1", executed=2000, rate=2000).returncode == 0
    result = pretend("--time", "1", executed=199, rate=199)
    assert result.returncode == 1
    assert "executed 199 inputs in a second, the last time 2000" in result.stdout


def test_a_run_that_reaches_far_less_code_than_others_did_fails(pretend):
    result = pretend("--suite", executed=10_000_000, coverage=12)
    assert result.returncode == 1
    assert "reached only 12 of " in result.stdout


def test_a_program_that_says_nothing_at_all_fails(tmp_path):
    program = tmp_path / f"fuzz_{TARGETS[0]}"
    program.write_text("#!/bin/sh\n")
    program.chmod(0o755)
    result = fuzz("--programs", str(tmp_path), "--keep", str(tmp_path), "--time", "1", TARGETS[0])
    assert result.returncode == 1
    assert "executed only 0 of " in result.stdout
