"""Processes that stay while their applications end and begin, for systems on which a process takes long to start."""

from Xlib import X, display

from hostapp import HostApp, eventually

MOST = 3
FILES = {
    f"test_{name}.py"
    for name in ("buttons", "entry_combos", "entry_spins", "items", "key_sequences", "tree_view")
}


def are_kept_for(file):
    """Whether the tests of a file may have such processes: their applications do nothing as a process ends or begins."""
    return file in FILES


class KeptProcesses:
    """Each process has waited since the application of an earlier test ended in it: without windows, and without an agent."""

    def __init__(self):
        self._started = {}
        self._waiting = {}

    def start(self, program, *arguments, **options):
        """An application in a process that was started alike, or in a new one. Arguments are those of HostApp."""
        if options:  # the test looks at how a process starts, or at two applications
            self.end()
            return HostApp(program, *arguments, **options)
        app = self._waiting.pop((program, *arguments), None)
        if app is None:
            app = HostApp(program, *arguments)
            self._started[app] = (program, *arguments)
        else:
            # The window manager looks for another window to be the active one, after the last has gone and before the next
            # one comes: otherwise Wine would take the focus from the application when that is at work already.
            eventually(_has_focus, False)
            app.resume()
            eventually(_has_focus, True)
        return app

    def keep(self, app):
        """Ends the application in order, and keeps its process; if there are many, the oldest ends."""
        if app not in self._started:
            app.end()
            return
        app.pause()
        self._waiting[self._started[app]] = app
        if len(self._waiting) > MOST:
            self._waiting.pop(next(iter(self._waiting))).end()

    def end(self):
        """Ends the processes, each of which must end in order."""
        while self._waiting:
            self._waiting.popitem()[1].end()


def _has_focus():
    """Whether the window manager has given one of its windows the keyboard."""
    screen = display.Display()
    try:
        root = screen.screen().root
        clients = root.get_full_property(screen.get_atom("_NET_CLIENT_LIST"), X.AnyPropertyType)
        active = root.get_full_property(screen.get_atom("_NET_ACTIVE_WINDOW"), X.AnyPropertyType)
        return bool(clients and active and active.value[0] in clients.value)
    finally:
        screen.close()
