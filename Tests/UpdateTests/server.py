"""An HTTPS server on a free port of the loopback interface, which it prints.

Arguments: the folder to serve, and a certificate with its key. The first part of a path is
the method of Handler that serves the file named by the rest. Each request is logged as a line of
the file "requests" in the folder."""

import http.server
import pathlib
import ssl
import sys
import time

folder = pathlib.Path(sys.argv[1])


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        with open(folder / "requests", "a") as log:
            print(self.path, self.headers["User-Agent"], self.headers["Cookie"], file=log)
        manner, _, rest = self.path[1:].partition("?")[0].partition("/")
        getattr(self, manner)(rest)

    def head(self, status, length, **headers):
        self.send_response(status)
        headers = {"Set-Cookie": "a=b", "Cache-Control": "max-age=9999"} | headers
        if length is not None:
            headers["Content-Length"] = str(length)
        for name, value in headers.items():
            self.send_header(name, value)
        self.end_headers()

    def file(self, name):
        data = (folder / name).read_bytes()
        self.head(200, len(data))
        self.wfile.write(data)

    def missing(self, name):
        data = (folder / name).read_bytes()
        self.head(404, len(data))
        self.wfile.write(data)

    def moved(self, target):
        self.head(302, 0, Location=target)

    def half(self, name):
        data = (folder / name).read_bytes()
        self.head(200, len(data))
        self.wfile.write(data[: len(data) // 2])
        self.close_connection = True

    def stalling(self, name):
        data = (folder / name).read_bytes()
        self.head(200, len(data))
        self.wfile.write(data[: len(data) // 2])
        while True:
            time.sleep(1)

    def trickling(self, name):
        self.head(200, 1 << 20)
        while True:
            self.wfile.write(b"x")
            time.sleep(0.2)

    def endless(self, name):
        self.head(200, None)
        while True:
            self.wfile.write(bytes(1 << 16))


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
server.daemon_threads = True
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(sys.argv[2])
server.socket = context.wrap_socket(server.socket, server_side=True)
print(server.server_port, flush=True)
server.serve_forever()
