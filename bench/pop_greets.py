#!/usr/bin/env python3
"""Exits 0 when a POP3 server greets on 127.0.0.1:PORT, plain or over TLS.

    pop_greets.py PORT [--tls]

It says QUIT and waits for the close: a probe left open holds up Dovecot's
shutdown by seconds. The certificate is not checked here; the programs
under test check it.
"""

import socket
import ssl
import sys


def main():
    port = int(sys.argv[1])
    tls = "--tls" in sys.argv[2:]
    try:
        sock = socket.create_connection(("127.0.0.1", port), timeout=2)
        if tls:
            context = ssl.create_default_context()
            context.check_hostname = False
            context.verify_mode = ssl.CERT_NONE
            sock = context.wrap_socket(sock)
        with sock:
            line = sock.makefile("rb").readline()
            if not line.startswith(b"+OK"):
                return 1
            sock.sendall(b"QUIT\r\n")
            while sock.recv(4096):
                pass
        return 0
    except OSError:
        return 1


if __name__ == "__main__":
    sys.exit(main())
