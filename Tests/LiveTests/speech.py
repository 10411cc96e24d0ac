"""A speech service that accepts every command and writes what it is asked to say to a file."""

import os
import socketserver
import sys


class Client(socketserver.StreamRequestHandler):
    def handle(self):
        is_text = False
        for line in self.rfile:
            command = line.decode().rstrip("\r\n")
            if is_text and command != ".":
                with open(sys.argv[2], "a", encoding="utf-8") as said:
                    said.write(command + "\n")
            elif is_text:
                is_text = False
                self.wfile.write(b"225-1\r\n225 OK MESSAGE QUEUED\r\n")
            else:
                is_text = command == "speak"
                self.wfile.write(b"230 OK RECEIVING DATA\r\n" if is_text else b"208 OK\r\n")


# Between bind and listen the socket exists but refuses connections. Its name appears after both.
unfinished = sys.argv[1] + ".unfinished"
server = socketserver.ThreadingUnixStreamServer(unfinished, Client)
os.rename(unfinished, sys.argv[1])
server.serve_forever()
