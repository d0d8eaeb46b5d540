"""What the comparisons with other monitors share: programs in terminals of their own, the peers'
settings, and the kernel's figures of a running process."""

import contextlib
import fcntl
import os
import pty
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import threading
import time

PEERS = ("htop", "top", "btop")


def _of_threads(pid, file, read):
    total = 0
    for tid in os.listdir(f"/proc/{pid}/task"):
        try:
            with open(f"/proc/{pid}/task/{tid}/{file}") as lines:
                total += read(lines)
        except OSError:
            pass
    return total


def cpu_ns(pid):
    """Nanoseconds that the threads of a process have spent on a CPU."""
    return _of_threads(pid, "schedstat", lambda lines: int(lines.read().split()[0]))


def wakeups(pid):
    """How often the threads of a process have waited for something and gone on."""
    def count(lines):
        return sum(int(line.split()[1]) for line in lines if line.startswith("voluntary_ctxt_switches:"))
    return _of_threads(pid, "status", count)


def memory_kb(pid, field="VmRSS"):
    """A figure of the process's status: VmRSS is what is resident, VmHWM the most that ever was."""
    with open(f"/proc/{pid}/status") as file:
        for line in file:
            if line.startswith(field + ":"):
                return int(line.split()[1])
    return 0


class Monitor:
    """A program in a terminal of its own, whose output is read and thrown away."""

    def __init__(self, command, environment):
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.execvpe(command[0], command, environment)
        size = struct.pack("HHHH", 50, 160, 0, 0)
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, size)

    def drain(self, seconds):
        end = time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            ready, _, _ = select.select([self.terminal], [], [], left)
            if ready:
                try:
                    os.read(self.terminal, 1 << 16)
                except OSError:
                    sys.exit(f"{os.path.basename(sys.argv[0])}: a monitor ended by itself")

    def drain_beside(self, seconds):
        """The same, while the caller goes on; join() what is returned."""
        thread = threading.Thread(target=self.drain, args=(seconds,))
        thread.start()
        return thread

    def stop(self):
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)
        os.close(self.terminal)


def require(*programs):
    for program in programs:
        if not shutil.which(program):
            sys.exit(f"{os.path.basename(sys.argv[0])}: {program} is missing; run tools/setup bench and "
                     "build the bench preset")


@contextlib.contextmanager
def surroundings(interval):
    """An environment in which btop and htop refresh every so many seconds and nothing is the user's
    own: configuration, records and settings lie in a folder that is gone afterwards."""
    with tempfile.TemporaryDirectory() as config:
        os.makedirs(f"{config}/btop")
        with open(f"{config}/btop/btop.conf", "w") as file:
            file.write(f"update_ms={int(interval * 1000)}\n")
        yield dict(os.environ, TERM="xterm-256color", LANG="C.UTF-8", XDG_CONFIG_HOME=config,
                   XDG_DATA_HOME=config, HTOPRC=f"{config}/htoprc")


def peer_commands(interval):
    return {"htop": ["htop", "-d", str(int(interval * 10))],
            "top": ["top", "-b", "-d", str(interval)],
            "btop": ["btop", "--utf-force"]}


@contextlib.contextmanager
def crowd(build, processes, threads):
    """So many idle processes, and so many threads more in all of them."""
    world = subprocess.Popen([os.path.join(build, "bench", "process_crowd"), str(processes), str(threads)],
                             stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    world.stdout.readline()
    try:
        yield
    finally:
        world.stdin.close()
        world.wait()
