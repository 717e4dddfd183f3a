#!/usr/bin/env python3
"""Two serial ports of Wine that lead to each other, while a command runs.

  serial_pair.py DOSDEVICES COMMAND [ARGUMENT ...]

DOSDEVICES is the folder of that name in Wine's prefix. The command finds the names of the ports in
KARTOCHECK_SERIAL_PAIR ("COM61,COM62"). Each is one end of a pseudo-terminal; what comes out of the
other end goes to the other port.
"""

import contextlib
import os
import select
import subprocess
import sys
import termios
import threading
import tty


class End:
    """A pseudo-terminal, and the link by which Wine knows it."""

    def __init__(self, folder, number):
        self.master, self.slave = os.openpty()
        for descriptor in (self.master, self.slave):
            tty.setraw(descriptor, termios.TCSANOW)
        self.link = os.path.join(folder, f"com{number}")
        with contextlib.suppress(FileNotFoundError):
            os.unlink(self.link)
        os.symlink(os.ttyname(self.slave), self.link)

    def close(self):
        with contextlib.suppress(FileNotFoundError):
            os.unlink(self.link)


def relay(ends, stop):
    other = {ends[0].master: ends[1].master, ends[1].master: ends[0].master}
    while True:
        ready, _, _ = select.select([*other, stop], [], [])
        if stop in ready:
            return
        for master in ready:
            os.write(other[master], os.read(master, 4096))


def main(folder, command):
    first = 61  # beyond what Wine numbers by itself
    ends = [End(folder, first), End(folder, first + 1)]
    stop, stopping = os.pipe()
    thread = threading.Thread(target=relay, args=(ends, stop))
    thread.start()
    try:
        environment = dict(os.environ, KARTOCHECK_SERIAL_PAIR=f"COM{first},COM{first + 1}")
        return subprocess.run(command, env=environment, check=False).returncode
    finally:
        os.write(stopping, b".")
        thread.join()
        for end in ends:
            end.close()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
