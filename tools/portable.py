#!/usr/bin/env python3
"""A stand-in for the portable, on a pseudo-terminal that a COM port of the program is named after.

What the program sends is stored in a folder; when the program receives, it gets the offered file. Both ends
of a transfer are lrzsz's (rx and sx). A plain receive gives no sign on the line and is not served.
"""

import argparse
import os
import pathlib
import select
import socket
import subprocess
import sys
import termios
import time
import tty

CRC_REQUEST, NAK = b"C", b"\x15"  # either one asks an XMODEM sender to begin
LISTEN_SECONDS = 1.0  # an XMODEM receiver asks within this time of opening the port
STREAM_SILENCE_SECONDS = 2.0  # ends a plain stream
CLOSED_GRACE_SECONDS = 5.0  # what rx or sx may still take for its farewell when the program has closed
CHUNK = 65536

# The letter behind the length word of the program's own files.
EXTENSIONS = {b"I": ".PGT", b"S": ".CFT", b"R": ".LKT"}


def open_line(link):
    """Opens a raw pseudo-terminal whose other end is found under the path `link`; returns our end."""
    master, slave = os.openpty()
    tty.setraw(slave)
    link = pathlib.Path(link)
    link.unlink(missing_ok=True)
    link.symlink_to(os.ttyname(slave))
    os.close(slave)
    return master


def is_open(master):
    """Whether somebody holds the other end."""
    poller = select.poll()
    poller.register(master, 0)
    return not any(event & select.POLLHUP for _, event in poller.poll(0))


def read(master, seconds):
    """What arrives within a time: b"" for nothing, None when the other end is closed."""
    if not select.select([master], [], [], seconds)[0]:
        return b""
    try:
        return os.read(master, CHUNK)
    except OSError:
        return None


def forget_unread(master):
    """Throws away what the other end has not read, so that its next opening does not begin with it."""
    termios.tcflush(master, termios.TCOFLUSH)


def relay(master, command, folder, first=b""):
    """Runs rx or sx in `folder` with `master` as its line, and returns its exit status.

    The line is relayed through a socket pair: a child on the pseudo-terminal itself would lose its last
    bytes when it exits. `first` is what was already read from the line. When the program closes the port
    the child gets a moment to finish by itself, unless the port is opened again.
    """
    ours, theirs = socket.socketpair()
    child = subprocess.Popen(command, cwd=folder, stdin=theirs, stdout=theirs, stderr=subprocess.DEVNULL)
    theirs.close()
    sources = [master, ours]
    deadline = None
    try:
        ours.sendall(first)
        while deadline is None or (time.monotonic() < deadline and not is_open(master)):
            ready = select.select(sources, [], [], 0.1)[0]
            if ours in ready:
                data = ours.recv(CHUNK)
                if not data:
                    break
                while data and master in sources:
                    data = data[os.write(master, data):]
            if master in ready:
                data = read(master, 0)
                if data is None:
                    sources.remove(master)
                    forget_unread(master)
                    deadline = time.monotonic() + CLOSED_GRACE_SECONDS
                else:
                    ours.sendall(data)
    except OSError:
        pass  # the child or the line has gone; the exit status tells how it ended
    finally:
        ours.close()
        if deadline is not None and child.poll() is None:
            child.terminate()
    return child.wait()


def free_name(folder, extension):
    """The first received-N that is not taken yet."""
    number = 1
    while (folder / f"received-{number}{extension}").exists():
        number += 1
    return folder / f"received-{number}{extension}"


def receive_xmodem(master, folder):
    arriving = folder / "arriving.part"
    arriving.unlink(missing_ok=True)
    status = relay(master, ["rx", "-c", arriving.name], folder)
    size = arriving.stat().st_size if arriving.exists() else 0
    if status != 0 or size == 0:
        arriving.unlink(missing_ok=True)
        if size > 0:
            print(f"broken off after {size} bytes", flush=True)
        return
    with open(arriving, "rb") as file:
        kind = file.read(5)[4:]
    stored = free_name(folder, EXTENSIONS.get(kind, ".DAT"))
    arriving.rename(stored)
    print(f"stored {size} bytes in {stored.name}", flush=True)


def receive_stream(master, folder, first):
    stored = free_name(folder, ".TXT")
    size = 0
    with open(stored, "wb") as file:
        data = first
        while data:
            size += file.write(data)
            data = read(master, STREAM_SILENCE_SECONDS)
    print(f"stored {size} plain bytes in {stored.name}", flush=True)


def offer(master, name, first):
    status = relay(master, ["sx", name.name], name.parent, first)
    print(f"{'sent' if status == 0 else 'could not send'} {name.name}", flush=True)


def serve(master, folder, offered):
    """One transfer, or one moment of nothing, on an open line."""
    first = read(master, LISTEN_SECONDS)
    if first is None:
        return
    if not first:
        receive_xmodem(master, folder)
    elif not first.strip(CRC_REQUEST + NAK):
        offer(master, offered, first)
    else:
        receive_stream(master, folder, first)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--link", required=True, help="path under which the port is found")
    parser.add_argument("--folder", required=True, type=pathlib.Path, help="where to store what arrives")
    parser.add_argument("--offer", required=True, type=pathlib.Path, help="file for a program that receives")
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    offered = arguments.offer.resolve(strict=True)
    master = open_line(arguments.link)
    while True:
        if is_open(master):
            serve(master, arguments.folder, offered)
        else:
            forget_unread(master)
            time.sleep(0.05)


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit(0)
