"""Stands in for an application with an agent: greets the test server and answers from a table.

Arguments, each optional:
  --status N         exit status when the connection ends or a request ends the program (default 0)
  --no-greeting      connect, but say nothing
  --stay             ignore SIGTERM, and go on when the connection ends
  --print TEXT       write TEXT to standard error first
  --fork             have a child that keeps the connection, too
  --delay SECONDS    wait so long before each answer
  --private          let other processes of the user not look into this one
Requests beyond the table: there is no widget "missing"; "8,quit" answers and ends, "8,vanish" ends without an answer, "8,env:NAME" answers
an environment variable, "8,slow" answers only when the next request has arrived.
"""

import argparse
import ctypes
import os
import signal
import socket
import sys
import time

PR_SET_DUMPABLE = 4
REPLIES = {
    "1": '0,l:\x0cQMainWindow : "Editor"\x0cQDialog (M) : "Save"',
    "2,Editor": '0,l:\x0c0 V QMainWindow : "main"\x0c1 V QPushButton : "ok"\x0c1 N QLabel : ""',
    "2,None": "2,Window (None) not found",
    "2,Bare": "0,l:",
    "3": "?,QPushButton,2,1,main/a,b/ok,main,456469746f72",
    "7,Editor,ok,,enabled,": "0,b:true",
    "7,Editor,ok,,text,": "0,u:c3a4e282ac",
    "7,Editor,ok,,geometry,": "0,r:10,20,39,59",
    "7,Editor,ok,,icon,": "0,x:" + b'/* XPM */\nstatic char *i[]={\n"2 1 1 1",\n"a c None",\n"aa"};'.hex(),
    "8,typed": "0,b:true",
    "8,two lines": "0,first\nsecond",
}


def receive(connection):
    """The requests, one line each, until the connection ends."""
    with connection.makefile("r", encoding="latin-1", newline="\n") as lines:
        for line in lines:
            yield line.rstrip("\n")


def serve(connection, delay):
    """Answers requests until one of them, or the server, ends it."""
    requests = receive(connection)
    for request in requests:
        command, _, detail = request.partition(",")
        time.sleep(delay)
        if request == "8,vanish":
            return
        if request == "8,slow":
            following = next(requests)
            connection.sendall(f"0,late\n0,answer to {following}\n".encode("latin-1"))
        elif command == "8" and detail.startswith("env:"):
            connection.sendall(f"0,{os.environ.get(detail[4:], '')}\n".encode("latin-1"))
        elif request == "8,quit":
            connection.sendall(b"0,bye\n")
            return
        elif ",missing," in request:
            connection.sendall(b"5,Widget (missing) not found\n")
        elif command in ("5", "6", "9"):
            connection.sendall(f"0,{request}\n".encode("latin-1"))
        else:
            connection.sendall((REPLIES.get(request, "8,Command not found") + "\n").encode("latin-1"))


def main():
    """Runs the fake agent and ends the process."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--status", type=int, default=0)
    parser.add_argument("--no-greeting", action="store_true")
    parser.add_argument("--stay", action="store_true")
    parser.add_argument("--print", default="")
    parser.add_argument("--fork", action="store_true")
    parser.add_argument("--private", action="store_true")
    parser.add_argument("--delay", type=float, default=0)
    options = parser.parse_args()
    if options.stay:
        signal.signal(signal.SIGTERM, signal.SIG_IGN)
    sys.stderr.write(options.print)
    sys.stderr.flush()
    if options.private:
        ctypes.CDLL(None).prctl(PR_SET_DUMPABLE, 0)
    with socket.create_connection(("127.0.0.1", 4242)) as connection:
        if options.fork and os.fork() == 0:
            signal.pause()
        if not options.no_greeting:
            connection.sendall(f"+client+ 2.1.0 {os.getpid()} -1 fake\n".encode("latin-1"))
        serve(connection, options.delay)
    while options.stay:
        signal.pause()
    sys.exit(options.status)


if __name__ == "__main__":
    main()
