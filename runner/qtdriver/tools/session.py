"""The applications of a client, and the steps that it has made with them."""

from __future__ import annotations

from contextlib import suppress
from typing import Dict, List, Mapping, Optional, Sequence

from ..api.driver import Driver
from ..errors import QtDriverError
from ..protocol.secrets import Secrets
from ..recording.steps import Argument, Launch, Recorded, Secret, Step
from .answers import ToolError
from .options import Options
from .running import RunningApplication, Target

DEFAULT_NAME = "app"

_NOT_SAVED = "\n(this step will not be in a saved test: it has a password and other text)"

_WAIT_SECONDS = 3.0
"""How long an action waits until a user could do it. A model that waits costs more than one that asks again."""


class Session:
    """The state between the calls of tools: the applications, and the steps for a test.

    Attributes:
        options: how it starts applications.
        recorded: the steps that were made, in order.
    """

    def __init__(self, options: Options) -> None:
        self.options = options
        self.recorded: List[Recorded] = []
        self._driver: Optional[Driver] = None
        self._running: Dict[str, RunningApplication] = {}
        self._secrets: List[str] = []
        self._hidden_texts = Secrets()

    def __repr__(self) -> str:
        return f"<session with {', '.join(self._running) or 'no applications'}>"

    @property
    def names(self) -> List[str]:
        """The names of the applications that run."""
        return list(self._running)

    def running(self, arguments: Mapping[str, object]) -> RunningApplication:
        """The application that the arguments name; the only one where they name none. Raises ToolError."""
        name = arguments.get("app")
        if name is None and len(self._running) == 1:
            return next(iter(self._running.values()))
        if name is None and self._running:
            raise ToolError(f"say which application by 'app': {', '.join(self._running)}")
        if name not in self._running:
            known = f"; running: {', '.join(self._running)}" if self._running else ": launch one first"
            raise ToolError(f"no application{f' {name!r}' if name is not None else ''} is running{known}")
        return self._running[str(name)]

    def launch(self, name: str, command: Sequence[str], qt: Optional[int]) -> RunningApplication:
        """Starts an application under a name. Raises ToolError where another one has it, and the errors of the driver."""
        if name in self._running:
            raise ToolError(
                f"an application {name!r} is running already: close it, or give the new one another name"
            )
        if self._driver is None:
            self._driver = Driver(
                qt=self.options.qt,
                build=self.options.build,
                start_timeout=self.options.timeout,
                request_timeout=self.options.timeout,
                timeout=_WAIT_SECONDS,
                isolated=True,
            )
        app = self._driver.launch(command[0], *command[1:], qt=qt, working_directory=self.options.folder)
        running = self._running[name] = RunningApplication(name, app, command)
        # A test begins with the last start of its application.
        self.recorded[:] = [one for one in self.recorded if one.app != name]
        self.recorded.append(Launch(name, running.command, self.options.qt if qt is None else qt))
        return running

    def forget(self, running: RunningApplication) -> None:
        """Takes an application that has ended off the list; its name is free again."""
        self._learn(running.app.connection.secrets)
        self._running.pop(running.name, None)

    def begin_anew(self) -> None:
        """Forgets the steps; the next test begins with the start of the applications that are running."""
        self.recorded[:] = [
            one for one in self.recorded if isinstance(one, Launch) and one.app in self._running
        ]

    def ended(self) -> List[RunningApplication]:
        """The applications that have ended by themselves."""
        return [running for running in self._running.values() if running.app.connection.is_closed()]

    def record(
        self,
        running: RunningApplication,
        target: "Target | str",
        widget: Optional[str],
        method: str,
        arguments: Sequence[Argument] = (),
        keywords: Optional[Mapping[str, Argument]] = None,
        *,
        is_check: bool = False,
        reads: str = "",
    ) -> str:
        """Adds a step for a test. Secrets in it are left out.

        Args:
            running: the application.
            target: the widget, or the call on the application that makes the window.
            widget: the call on the window; None where nothing finds the widget alone, and the step cannot be added.
            method, arguments, keywords, is_check, reads: as Step has them.

        Returns a note for the model; empty for none.
        """
        if widget is None:
            return "\n(this step will not be in a saved test: no address finds that widget alone)"
        self._learn(running.app.connection.secrets)
        if method == "press" and any(self._hidden_texts.has_key(str(key)) for key in arguments):
            method, arguments = "type", ("".join(map(str, arguments)),)
            if arguments[0] not in self._secrets:
                return _NOT_SAVED
        hidden = tuple(map(self._hidden, arguments))
        options = {key: self._hidden(value) for key, value in (keywords or {}).items()}
        if any(self._shows_secret(value) for value in (*hidden, *options.values())):
            return _NOT_SAVED
        window = target if isinstance(target, str) else target.window.call
        step = Step(running.name, window, widget, method, hidden, options, is_check, reads)
        if not is_check or step not in self.recorded[-3:]:
            self.recorded.append(step)
        return ""

    def _learn(self, secrets: Secrets) -> None:
        self._secrets += [text for text in secrets if text not in self._secrets]
        self._hidden_texts = Secrets.of_all((self._hidden_texts, secrets))

    def _hidden(self, argument: Argument) -> Argument:
        if isinstance(argument, str) and argument.rstrip("\r\n\t") in self._secrets:
            return Secret(self._secrets.index(argument.rstrip("\r\n\t")) + 1)
        return argument

    def _shows_secret(self, argument: Argument) -> bool:
        is_number = isinstance(
            argument, (int, float)
        )  # it is no text, though it may look like a short password
        return not is_number and self._hidden_texts.hide(repr(argument)) != repr(argument)

    def secret_texts(self) -> Mapping[int, str]:
        """The texts of the secrets by their numbers."""
        return dict(enumerate(self._secrets, 1))

    def hide(self, text: str) -> str:
        """The text without the secrets."""
        for running in self._running.values():
            self._learn(running.app.connection.secrets)
        return self._hidden_texts.hide(text)

    def close(self) -> None:
        """Ends all applications."""
        self._running.clear()
        if self._driver is not None:
            with suppress(QtDriverError):
                self._driver.close()
            self._driver = None
