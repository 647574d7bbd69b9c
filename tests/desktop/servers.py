"""The servers of a desktop: display, window manager, session bus with accessibility, sound.

Each start function returns when the server can be used, or raises NotReady with what it said."""

import os
import select
import socket
import subprocess
import time

READY_SECONDS = 20
POLL_SECONDS = 0.01


class NotReady(Exception):
    pass


def wait_until(ready, seconds, what):
    """Returns the first true value of ready(), which is asked again and again for `seconds`."""
    end = time.monotonic() + seconds
    while True:
        value = ready()
        if value:
            return value
        if time.monotonic() > end:
            raise NotReady(f"{what}: not within {seconds} s")
        time.sleep(POLL_SECONDS)


class Server:
    """A child process whose output goes to a log file in `folder`."""

    def __init__(self, name, command, folder, environment, pass_fds=()):
        self.name = name
        self.log = os.path.join(folder, name + ".log")
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                env=environment, pass_fds=pass_fds)

    def wait_until(self, ready):
        def check():
            if self.process.poll() is not None:
                raise NotReady(f"{self.name} ended with {self.process.returncode}")
            return ready()
        try:
            return wait_until(check, READY_SECONDS, self.name)
        except NotReady as failure:
            with open(self.log, errors="replace") as log:
                raise NotReady(f"{failure}\n{log.read()}") from None

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def kill(self):
        """Takes the server away without a warning."""
        self.process.kill()
        self.process.wait()


def start_telling(name, command, folder, environment, option):
    """Starts a server that writes where it can be reached to a descriptor when it is ready."""
    reader, writer = os.pipe()
    server = Server(name, command + [option.format(writer)], folder, environment, (writer,))
    os.close(writer)

    def line():
        readable, _, _ = select.select([reader], [], [], 0)
        return os.read(reader, 4096).decode().strip() if readable else None
    told = server.wait_until(line)
    os.close(reader)
    return server, told


def start_display(folder, environment, size, dpi):
    """Returns the server and the name of its display, a free one."""
    command = ["Xvfb", "-screen", "0", f"{size}x24", "-dpi", str(dpi), "-nolisten", "tcp",
               "-noreset", "-displayfd"]
    server, number = start_telling("Xvfb", command, folder, environment, "{}")
    return server, ":" + number


def start_window_manager(folder, environment):
    # It runs the start-up command when it manages the display.
    ready = os.path.join(folder, "openbox.ready")
    server = Server("openbox", ["openbox", "--sm-disable", "--startup", f"touch {ready}"],
                    folder, environment)
    server.wait_until(lambda: os.path.exists(ready))
    return server


def start_compositor(folder, environment):
    """A Wayland session without a screen. Returns the server and the name of its display."""
    name = "wayland-1"  # the first that it tries
    # It refuses to run as root, which it isn't where nobody else exists.
    other_user = ["unshare", "--user", "--map-user=1000"] if os.geteuid() == 0 else []
    server = Server("sway", [*other_user, "sway", "--config", "/dev/null"], folder, dict(
        environment, WLR_BACKENDS="headless", WLR_LIBINPUT_NO_DEVICES="1", WLR_RENDERER="pixman"))
    socket_path = os.path.join(environment["XDG_RUNTIME_DIR"], name)
    server.wait_until(lambda: os.path.exists(socket_path))
    return server, name


def start_session_bus(folder, environment):
    """Returns the server and its address; the accessibility bus behind it answers as well."""
    place = "unix:path=" + os.path.join(environment["XDG_RUNTIME_DIR"], "bus")
    server, address = start_telling(
        "dbus-daemon", ["dbus-daemon", "--session", "--nofork", "--address=" + place],
        folder, environment, "--print-address={}")
    environment = dict(environment, DBUS_SESSION_BUS_ADDRESS=address)
    answer = subprocess.run(
        ["dbus-send", "--session", "--print-reply", f"--reply-timeout={READY_SECONDS * 1000}",
         "--dest=org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress"],
        env=environment, capture_output=True, text=True)
    if answer.returncode != 0:
        raise NotReady("no accessibility bus: " + answer.stderr)
    return server, address


def start_sound_server(folder, environment, address):
    """A sound server with one silent output, whose monitor is `nul.monitor`."""
    os.makedirs(os.path.dirname(address), mode=0o700, exist_ok=True)
    server = Server("pulseaudio", [
        "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
        "--disallow-exit=yes",
        "-L", "module-null-sink sink_name=nul rate=48000 channels=2",
        "-L", f"module-native-protocol-unix auth-anonymous=1 socket={address}"],
        # On a session bus there can be only one sound server.
        folder, dict(environment, DBUS_SESSION_BUS_ADDRESS="disabled:"))

    def answers():
        with socket.socket(socket.AF_UNIX) as client:
            return client.connect_ex(address) == 0
    server.wait_until(answers)
    return server


def start_print_server(folder, environment):
    """Returns the server, its address for CUPS_SERVER, and the folder that keeps the documents that
    its only queue, `paper`, was given."""
    for name in ("spool", "cache", "state", "etc"):
        os.mkdir(os.path.join(folder, name))
    address = os.path.join(folder, "socket")
    texts = {
        "cupsd.conf": f"Listen {address}\nBrowsing No\nWebInterface No\nPreserveJobFiles Yes\n"
                      "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                      "<Policy default>\n<Limit All>\nOrder allow,deny\nAllow all\n</Limit>\n</Policy>\n",
        "files.conf": f"ServerRoot {folder}/etc\nRequestRoot {folder}/spool\nCacheDir {folder}/cache\n"
                      f"StateDir {folder}/state\nTempDir {folder}\nErrorLog {folder}/error\n"
                      f"AccessLog {folder}/access\nPageLog {folder}/page\nFileDevice Yes\n",
        "etc/printers.conf": "<DefaultPrinter paper>\nInfo paper\nDeviceURI file:///dev/null\n"
                             "State Idle\nAccepting Yes\n</DefaultPrinter>\n"}
    for name, text in texts.items():
        with open(os.path.join(folder, name), "w") as file:
            file.write(text)
    server = Server("cupsd", ["/usr/sbin/cupsd", "-f", "-c", f"{folder}/cupsd.conf",
                              "-s", f"{folder}/files.conf"], folder, environment)
    server.wait_until(lambda: os.path.exists(address))
    return server, address, os.path.join(folder, "spool")
