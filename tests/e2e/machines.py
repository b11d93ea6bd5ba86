"""Other machines for tests: namespaces with an sshd of their own, to which ssh gets by a pipe in place of a network."""

import shutil
import subprocess
import textwrap

SSHD = shutil.which("sshd", path="/usr/sbin:/usr/bin:/sbin:/bin")

_USER = "tester"
_ID = 1234

_SSHD_CONFIG = """
    HostKey {folder}/host_key
    AuthorizedKeysFile {folder}/user_key.pub
    StrictModes no
    UsePAM no
    PidFile none
    SetEnv {environment}
"""

_SSH_CONFIG = """
    Host *
        User {user}
        IdentityFile {folder}/user_key
        IdentitiesOnly yes
        StrictHostKeyChecking no
        UserKnownHostsFile /dev/null
        LogLevel ERROR
        ProxyCommand {folder}/machine %n 2>>{folder}/sshd.log
"""

# A user who is not root, since root's sshd changes users, which it cannot do in here. What is read-only on a machine cannot be
# written from there by accident.
_MACHINE = """\
    #!/bin/sh
    exec unshare --user --map-user={id} --map-group={id} --mount --net --uts --keep-caps sh -euc '
    hostname "$1"
    ip link set lo up
    readlink /proc/self/ns/net >{folder}/network-"$1"
    mount --bind {folder}/passwd /etc/passwd
    mount --bind {folder}/group /etc/group
    mount --rbind {readonly} {readonly}
    mount -o remount,bind,ro {readonly}
    exec setpriv --ambient-caps -all --inh-caps -all -- {sshd} -i -e -f {folder}/sshd_config' sh "$1"
    """


def make_machines(folder, readonly, environment):
    """Writes what the machines need. Any name of a host is a machine of its own, for each connection.

    Args:
        folder: for their files.
        readonly: a folder that they can read, and not write.
        environment: of the programs that are started there.

    Returns the configuration file for ssh. A file network-HOST names the network of a machine that was connected to.
    """
    folder.mkdir()
    (folder / "home").mkdir()
    for key in ("host_key", "user_key"):
        subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", str(folder / key)], check=True)
    settings = " ".join(f'"{name}={value}"' for name, value in environment.items())
    values = dict(folder=folder, readonly=readonly, environment=settings, user=_USER, id=_ID, sshd=SSHD)
    files = {
        "passwd": f"{_USER}:x:{_ID}:{_ID}::{folder / 'home'}:/bin/sh\n",
        "group": f"{_USER}:x:{_ID}:\n",
        "sshd_config": textwrap.dedent(_SSHD_CONFIG).format(**values),
        "ssh_config": textwrap.dedent(_SSH_CONFIG).format(**values),
        "machine": textwrap.dedent(_MACHINE).format(**values),
    }
    for name, text in files.items():
        (folder / name).write_text(text)
    (folder / "machine").chmod(0o755)
    return folder / "ssh_config"
