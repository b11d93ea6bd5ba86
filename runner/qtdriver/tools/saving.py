"""The tool that saves the steps as a test, once it has passed."""

from __future__ import annotations

import os
import re
import signal
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import Dict, List

from ..desktop import desktop
from ..project.trial import Trial, pytest_command, trial_of
from ..protocol.waiting import Deadline, attempts
from ..recording.files import parts_below, write_below
from ..recording.code import secret_variable, test_code
from ..recording.steps import Secret, Step
from .answers import MAX_OF_A_PART, Answer, ToolError, cut
from .call import Call
from .options import Options
from .session import Session
from .tool import Arguments, Tool

_RUN_SECONDS = 180.0
_MAX_OF_OUTPUT = 2500
_RESULTS = {True: "passed", False: "FAILED"}
_KEEP = "keep_failing saves it all the same"


def _save_test(session: Session, call: Call, arguments: Arguments) -> Answer:
    path = arguments["path"]
    file_name = parts_below(path)[-1]
    name = re.sub(r"\W+", "_", file_name[len("test_") : -len(".py")]) or "recorded"
    if not any(isinstance(step, Step) for step in session.recorded):
        raise ToolError("there are no steps yet: use the application first")
    code = test_code(name, session.recorded, arguments.get("summary", ""))
    checks = sum(isinstance(step, Step) and step.is_check for step in session.recorded)
    refusal = desktop.namespaces_refusal()
    call.tell("running the test on a fresh start")
    trial = Trial(False, refusal, "") if refusal else _run(session, code, file_name)
    if not trial.passed and not arguments.get("keep_failing", False):
        why = "could not be run" if refusal else "failed on a fresh start"
        shown = cut(trial.output[-_MAX_OF_OUTPUT:], _MAX_OF_OUTPUT) or _KEEP
        return Answer(
            f"The test was not saved, since it {why}: {trial.summary}\n{shown}\n{code}",
            is_error=True,
        )
    write_below(session.options.folder, path, code, overwrite=arguments.get("overwrite", False))
    if not arguments.get("keep_steps", False):
        session.begin_anew()
    ran = "it could not be run" if refusal else f"run once on a fresh start it {_RESULTS[trial.passed]}"
    head = f"saved {path}; {ran}: {trial.summary}"
    return Answer("\n".join([head, _advice(session, code, checks), cut(code, MAX_OF_A_PART)]))


def _advice(session: Session, code: str, checks: int) -> str:
    words = (
        f"{checks} {'check' if checks == 1 else 'checks'}"
        if checks
        else "it has no checks: use wait or read where something should come true"
    )
    numbers = [number for number in session.secret_texts() if f"SECRET_{number} = " in code]
    secrets = [secret_variable(Secret(number)) for number in numbers]
    return words + (
        f"; it needs the variables {', '.join(secrets)}, which have the passwords" if secrets else ""
    )


def _run(session: Session, code: str, name: str) -> Trial:
    """Runs the test on a desktop and a network of its own, beside the applications of the session."""
    with tempfile.TemporaryDirectory(prefix="qtdriver-mcp-") as folder:
        file = Path(folder, name)
        file.write_text(code, encoding="utf-8")
        Path(folder, "pytest.ini").write_text("[pytest]\n")
        command = [str(desktop.SCRIPT), *pytest_command(_pytest_options(session.options, folder, file))]
        environment: Dict[str, str] = desktop.environment_for_own_network()
        for number, text in session.secret_texts().items():
            environment[secret_variable(Secret(number))] = text
        with Path(folder, "output.txt").open("w+", errors="replace") as output:
            status = _run_to_end(command, session.options.folder, environment, output.fileno())
            output.seek(0)
            return trial_of(status, session.hide(output.read()))


def _pytest_options(options: Options, folder: str, file: Path) -> List[str]:
    words = ["--tb=short", "-c", str(Path(folder, "pytest.ini")), "--rootdir", folder, "--qtdriver-headed"]
    words += [f"--qtdriver-output={Path(folder, 'results')}", "--qtdriver-trace=off"]
    words += [] if options.build is None else [f"--qtdriver-build={options.build.absolute()}"]
    return [*words, str(file)]


def _run_to_end(command: List[str], folder: Path, environment: Dict[str, str], output: int) -> int:
    """Runs a command to its end. Returns its exit status; ends it where the client gives up or it takes too long."""
    with subprocess.Popen(
        command,
        cwd=folder,
        env=environment,
        stdin=subprocess.DEVNULL,
        stdout=output,
        stderr=output,
        start_new_session=True,
    ) as process:
        try:
            for _ in attempts(Deadline(_RUN_SECONDS)):
                if process.poll() is not None:
                    return process.returncode
            raise ToolError(f"the test ran longer than {_RUN_SECONDS:g} seconds, and was ended")
        finally:
            if sys.platform != "win32" and process.poll() is None:
                os.killpg(process.pid, signal.SIGTERM)


TOOLS = (
    Tool(
        "save_test",
        "Save a pytest test",
        "Writes the steps since launch, with the checks that wait and read have made, as a pytest file with stable addresses, "
        "below the working directory. Runs it once on a fresh start before, and saves it only if it passes.",
        _save_test,
        {
            "path": {"type": "string", "description": "Relative path, such as tests/test_login.py."},
            "summary": {"type": "string", "description": "One line on what the test shows."},
            "overwrite": {"type": "boolean", "description": "Replaces a file that is there."},
            "keep_failing": {"type": "boolean", "description": "Saves it even if it fails."},
            "keep_steps": {
                "type": "boolean",
                "description": "The next test begins with the same steps. Default: without; launch the application anew for it.",
            },
        },
        ("path",),
        destroys=True,
    ),
)
