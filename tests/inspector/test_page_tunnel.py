"""The page of an application on another machine, through ssh."""

import re
import socket
import subprocess
import sys
from pathlib import Path

import pytest

from inspecting import RUNNER
from machines import SSHD, make_machines
from showcase import AGENTS, PROGRAM
from test_page_server import ask_about, get, talk


@pytest.mark.skipif(SSHD is None, reason="there is no sshd (Debian: openssh-server)")
def test_the_page_works_through_an_ssh_tunnel_into_a_machine_without_a_screen(tmp_path):
    machines = tmp_path / "machines"
    config = make_machines(machines, tmp_path, {"LANG": "C.UTF-8", "PYTHONPATH": RUNNER})
    ssh = ["ssh", "-F", str(config), "-o", "ControlPath=control"]
    inspect = f"{sys.executable} -m qtdriver inspect --build {AGENTS.resolve()} -- {PROGRAM.resolve()}"
    until_end_of_input = f"{inspect} & cat; kill $!; wait"
    with socket.create_server(("127.0.0.1", 0)) as free:
        port = free.getsockname()[1]
    with subprocess.Popen(
        [*ssh, "-o", "ControlMaster=yes", "lab", until_end_of_input],
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        cwd=machines,
    ) as running:
        try:
            told = map(re.compile(r"http://127\.0\.0\.1:(\d+)/(\S+)/").search, running.stdout)
            there, token = next(filter(None, told)).groups()
            forward = ["-O", "forward", "-L", f"127.0.0.1:{port}:127.0.0.1:{there}", "lab"]
            subprocess.run([*ssh, *forward], check=True, cwd=machines)
            address = f"http://127.0.0.1:{port}/{token}/"
            status, text, _ = get(address)
            assert status == 200 and "<title>qtdriver inspector</title>" in text
            assert Path(f"/proc/{talk(address, ask_about)}/exe").samefile(PROGRAM)
        finally:
            running.communicate(timeout=60)  # closes its input
    assert not (machines / "control").exists()
