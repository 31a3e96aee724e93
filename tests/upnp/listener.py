#!/usr/bin/env python3
"""listener.py serve PORT...: answers every TCP connection and every UDP datagram at these ports with "here PORT".
listener.py ask tcp|udp HOST PORT: prints the answer; fails when none comes within two seconds."""

import contextlib
import select
import socket
import sys


def serve(ports):
    sockets = {}
    for port in ports:
        for kind in (socket.SOCK_STREAM, socket.SOCK_DGRAM):
            made = socket.socket(socket.AF_INET, kind)
            made.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            made.bind(("0.0.0.0", port))
            if kind == socket.SOCK_STREAM:
                made.listen()
            sockets[made] = f"here {port}\n".encode()
    while True:
        for ready in select.select(list(sockets), [], [])[0]:
            with contextlib.suppress(OSError):
                if ready.type == socket.SOCK_STREAM:
                    connection, _ = ready.accept()
                    with connection:
                        connection.sendall(sockets[ready])
                else:
                    _, asker = ready.recvfrom(2048)
                    ready.sendto(sockets[ready], asker)


def ask(kind, host, port):
    with socket.socket(socket.AF_INET, socket.SOCK_STREAM if kind == "tcp" else socket.SOCK_DGRAM) as asker:
        asker.settimeout(2)
        asker.connect((host, port))
        if kind == "udp":
            asker.send(b"hello")
        return asker.recv(2048).decode()


if sys.argv[1] == "serve":
    serve([int(port) for port in sys.argv[2:]])
try:
    print(ask(sys.argv[2], sys.argv[3], int(sys.argv[4])), end="")
except OSError as failure:
    sys.exit(str(failure))
