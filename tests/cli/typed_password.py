#!/usr/bin/env python3
"""Types passwords on a terminal: they are taken without being shown.

    typed_password.py RVB FOLDER    exit code 77 without terminals
"""
import os
import pty
import subprocess
import sys


def run(arguments, answers):
    """(exit status, all that the terminal showed)"""
    child, terminal = pty.fork()
    if child == 0:
        os.execv(arguments[0], arguments)
    shown = b""
    waiting = list(answers)
    while True:
        try:
            piece = os.read(terminal, 1000)
        except OSError:
            break
        if not piece:
            break
        shown += piece
        if waiting and shown.endswith(b": "):
            os.write(terminal, waiting.pop(0) + b"\n")
    os.close(terminal)
    return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), shown.decode()


def main():
    rvb, folder = sys.argv[1:]
    database = os.path.join(folder, "typed.rvb")
    text = os.path.join(folder, "typed.csv")
    with open(text, "w", encoding="utf-8") as file:
        file.write("a\n1\n")
    if os.path.exists(database):
        os.remove(database)  # of a run that was ended
    subprocess.run([rvb, "import", database, text], check=True, stdout=subprocess.DEVNULL)

    def expect(status, words, answers, text):
        found, shown = run([rvb, *words], [answer.encode() for answer in answers])
        if found != status or text not in shown or any(answer in shown for answer in answers):
            sys.exit("%s: status %d\n%s" % (words, found, shown))

    protect = ["protect", database, "--new-password-file", "-"]
    expect(1, protect, ["sesam öffne", "sesam öffnE"], "message 146")
    expect(0, protect, ["sesam öffne", "sesam öffne"], "Once more: ")
    expect(1, ["--password-file", "-", "count", database], ["sesam offne"], "error 37")
    expect(0, ["--password-file", "-", "count", database], ["sesam öffne"], "Password: ")


try:
    os.close(os.open("/dev/ptmx", os.O_RDWR))
except OSError:
    sys.exit(77)
main()
