"""A relay between a launcher and its server that lets through so many bytes and holds up the rest,
so that a test decides how far a download has come."""

import socket
import threading


class Gate:
    def __init__(self, server_port, limit):
        """Lets `limit` bytes of the server through on each connection; what the launcher sends always
        passes."""
        self.server_port = server_port
        self.limit = limit
        self.closed = False
        self.changed = threading.Condition()
        self.sockets = [socket.create_server(("127.0.0.1", 0))]
        self.port = self.sockets[0].getsockname()[1]
        self.threads = []
        self.start(self.accept, self.sockets[0])

    def start(self, work, *arguments):
        thread = threading.Thread(target=work, args=arguments, daemon=True)
        self.threads.append(thread)
        thread.start()

    def allow(self, limit):
        """So many bytes from the beginning of each connection."""
        with self.changed:
            self.limit = limit
            self.changed.notify_all()

    def open(self):
        self.allow(1 << 40)

    def close(self):
        with self.changed:
            self.closed = True
            self.changed.notify_all()
        for one in self.sockets:
            try:
                one.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass  # not connected any more
            one.close()
        for thread in self.threads:
            thread.join(10)

    def accept(self, listener):
        try:
            while True:
                launcher, _ = listener.accept()
                server = socket.create_connection(("127.0.0.1", self.server_port))
                self.sockets += [launcher, server]
                self.start(self.relay, launcher, server, False)
                self.start(self.relay, server, launcher, True)
        except OSError:
            pass  # closed

    def relay(self, source, target, limited):
        passed = 0
        try:
            while True:
                data = source.recv(self.wait_for_room(passed) if limited else 65536)
                if not data:
                    break
                target.sendall(data)
                passed += len(data)
        except OSError:
            pass  # the other direction has ended the connection
        for one in (source, target):
            try:
                one.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass

    def wait_for_room(self, passed):
        with self.changed:
            self.changed.wait_for(lambda: self.closed or passed < self.limit)
            if self.closed:
                raise OSError("closed")
            return min(self.limit - passed, 65536)
