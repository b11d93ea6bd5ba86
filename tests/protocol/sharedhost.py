"""An application that several tests use one after the other, each of which leaves it as it was."""

from hostapp import DEADLINE, HostApp, eventually


class SharedHost:
    """At most one running application, which is kept as long as tests want it with the same arguments."""

    def __init__(self):
        self.app = None
        self._command = None

    def take(self, program, *arguments, **options):
        """The application, with an empty journal. Arguments are those of HostApp."""
        command = (program, arguments, repr(options))
        if self.app is None or self._command != command:
            self.end()
            self._command = command
            self.app = HostApp(program, *arguments, **options)
            self.app.server.close()
            self.app.do("rememberState")
        self.app.forget()
        return self.app

    def give_back(self, failed=False, seconds=DEADLINE):
        """Checks that the application is as it was when it started, or becomes so in some seconds. One that is not, or
        was used by a test that failed, is not used again."""
        if self.app is None:
            return
        if failed:
            self.app.close()
            self.app = None
            return
        try:
            assert self.app.process.poll() is None, "the application that tests share has ended"
            # Its agent is there, and no reply is left over.
            assert self.app.request("13") == "8,Command not found"
            # The windowing system takes its time to bring the focus back.
            eventually(self.changes, [], seconds)
        except BaseException:
            self.app.close()
            self.app = None
            raise

    def changes(self):
        """The parts of the application's state that are not as they were, after all that is open was closed again."""
        self.app.do("restore")
        self.app.forget()
        self.app.do("changes")
        return self.app.events("changed")

    def end(self):
        """Ends the application."""
        ending, self.app = self.app, None
        if ending:
            ending.end()
