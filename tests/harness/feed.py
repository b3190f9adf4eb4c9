"""An update server under real names, with certificates of an authority of its own, reached through a proxy: so no name
has to resolve and every byte is seen."""
import json
import socket
import ssl
import subprocess
import threading

from .desktop import BUILD

SERVER = "updates.ostrelle.test"
MIRROR = "mirror.ostrelle.test"
MISTAKEN = "mistaken.ostrelle.test"  # in nobody's certificate
STRANGER = "stranger.ostrelle.test"  # of an authority that nobody trusts


def response(body, status="200 OK", *fields):
    body = body if isinstance(body, bytes) else json.dumps(body).encode()
    # What is not told of its end is used again, and then meets it.
    head = [f"HTTP/1.1 {status}", f"Content-Length: {len(body)}", "Connection: close", "Set-Cookie: taste=sweet; Path=/",
            *fields]
    return "\r\n".join(head).encode() + b"\r\n\r\n" + body


def redirect(location):
    return response(b"", "302 Found", f"Location: {location}")


def endless(status):
    """An answer that never ends, in pieces."""
    yield f"HTTP/1.1 {status}\r\n\r\n".encode()
    while True:
        yield b"x" * 16384


def stalled(head=b""):
    """An answer that does not go on: says so by its silence until whoever asked has gone."""
    yield head
    threading.Event().wait(60)


def deployed_program():
    """The command of a build that somebody deployed; its feed is on SERVER."""
    folder = BUILD / "deployed" / "bin"
    for file in [BUILD / "bin" / "ostrelle", *(BUILD / "bin").glob("ostrelle-*")]:
        if file.name != "ostrelle-notch":
            # Not symbolic ones: the programs look for each other beside the file that they are.
            (folder / file.name).unlink(missing_ok=True)
            (folder / file.name).hardlink_to(file)
    return str(folder / "ostrelle")


class FeedServer:
    """`answers` holds what each name answers, bytes or an iterable of them; `requests` the heads that came, with their
    names; `tunnels` what the proxy was asked."""

    def __init__(self, folder):
        self.folder = folder
        self.answers = {}
        self.requests = []
        self.tunnels = []
        authority = self._certificate("authority", "basicConstraints=critical,CA:TRUE")
        stranger = self._certificate("other-authority", "basicConstraints=critical,CA:TRUE")
        names = f"subjectAltName=DNS:{SERVER},DNS:{MIRROR},DNS:{STRANGER}"
        self._known = self._context(self._certificate("known", names, authority))
        self._unknown = self._context(self._certificate("unknown", names, stranger))
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.environment = {"https_proxy": f"http://127.0.0.1:{self._listener.getsockname()[1]}",
                            "SSL_CERT_FILE": str(authority[0])}
        threading.Thread(target=self._accept, daemon=True).start()

    def _certificate(self, name, extension, issuer=None):
        certificate, key = self.folder / f"{name}.pem", self.folder / f"{name}.key"
        command = ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                   "-subj", f"/CN={name}", "-days", "2", "-addext", extension, "-out", certificate, "-keyout", key]
        if issuer:
            command += ["-CA", issuer[0], "-CAkey", issuer[1]]
        subprocess.run(command, check=True, capture_output=True)
        return certificate, key

    @staticmethod
    def _context(certificate):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*certificate)
        return context

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=[connection], daemon=True).start()

    def _serve(self, connection):
        try:
            with connection:
                head = self._head(connection)
                self.tunnels.append(head)
                name = head.split()[1].decode().removesuffix(":443")
                connection.sendall(b"HTTP/1.1 200 Connection established\r\n\r\n")
                context = self._unknown if name == STRANGER else self._known
                with context.wrap_socket(connection, server_side=True) as tls:
                    self.requests.append((name, self._head(tls)))
                    answer = self.answers[name]
                    for piece in [answer] if isinstance(answer, bytes) else answer:
                        tls.sendall(piece)
        except OSError:
            pass  # whoever came has gone

    @staticmethod
    def _head(connection):
        head = b""
        while not head.endswith(b"\r\n\r\n"):
            piece = connection.recv(1)
            if not piece:
                raise ConnectionError("gone before it asked")
            head += piece
        return head

    def close(self):
        # Closing alone does not wake the thread that accepts.
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
