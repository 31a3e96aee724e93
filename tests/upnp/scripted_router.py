#!/usr/bin/env python3
"""A UPnP Internet gateway whose table is a list, and which can be told to behave badly.

It answers searches (SSDP), hands out its description, and takes the actions of a WAN connection (SOAP). It forwards no
packet. --table names a file that always holds its mappings, one a line:

    TCP 8081 192.168.77.2:8080 600 description

--journal names a file with a line for each request: a search, a description, an action with its answer. SIGUSR1 restarts
it: its table is lost, its boot identifier grows, its up-time begins anew, and it announces itself. --habit gives it habits
of real routers (router_habits.py).
"""

import argparse
import contextlib
import http.server
import re
import select
import signal
import socket
import struct
import threading
import time
from xml.sax.saxutils import escape

import router_habits
from router_refusal import Refusal

GROUP = "239.255.255.250"
SSDP_PORT = 1900

ERRORS = {
    402: "Invalid Args",
    401: "Invalid Action",
    501: "Action Failed",
    606: "Action not authorized",
    713: "SpecifiedArrayIndexInvalid",
    714: "NoSuchEntryInArray",
    716: "WildCardNotPermittedInExtPort",
    718: "ConflictInMappingEntry",
    725: "OnlyPermanentLeasesSupported",
}


def options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--address", default="192.168.77.1", help="its own, on the LAN")
    parser.add_argument("--name", default="Scripted Router")
    parser.add_argument("--model", default="Script")
    parser.add_argument("--uuid", default="0d1f7c56-9d0e-4c0b-8a3e-6c1b2d3e4f50")
    parser.add_argument("--version", type=int, choices=(1, 2), default=1, help="of the gateway device")
    parser.add_argument("--service", choices=("WANIPConnection", "WANPPPConnection"), default="WANIPConnection")
    parser.add_argument("--wan-address", default="44.128.0.1")
    parser.add_argument("--status", default="Connected")
    parser.add_argument("--ready", help="this file is written when it answers")
    parser.add_argument("--journal", help="a line for each request")
    parser.add_argument("--table", help="always holds the mappings")
    faults = parser.add_argument_group("what it does badly")
    faults.add_argument("--permanent-only", action="store_true", help="refuses leases that end, with 725")
    faults.add_argument("--fail", action="append", default=[], metavar="ACTION[=CODE]", help="501, or that code")
    faults.add_argument("--lies", action="store_true", help="says yes to additions and does nothing")
    faults.add_argument("--description", choices=("whole", "broken", "endless", "none"), default="whole")
    faults.add_argument("--endless-answers", action="store_true", help="the answers to actions never end")
    faults.add_argument("--entries", type=int, default=0, help="so many mappings of others to begin with")
    faults.add_argument("--owned", type=int, action="append", default=[], metavar="PORT", help="of another host: 718")
    faults.add_argument("--refuse-below", type=int, default=0, metavar="PORT", help="606 for ports below")
    faults.add_argument("--delay", type=float, default=0, metavar="SECONDS", help="before each answer to an action")
    faults.add_argument("--longest-lease", type=int, default=0, metavar="SECONDS", help="grants no longer leases")
    faults.add_argument("--habit", action="append", default=[], metavar="NAME", help="of habits/*.py")
    return parser.parse_args()


class Table:
    """The mappings in their order, by protocol and external port."""

    def __init__(self, router):
        self.router = router
        self.settings = router.settings
        self.lock = threading.RLock()
        self.entries = {}
        self.ends = {}
        self.restart()

    def expire(self):
        """Takes out the mappings whose leases are over."""
        with self.lock:
            over = [key for key, end in self.ends.items() if end <= time.monotonic()]
            for key in over:
                del self.ends[key]
                if self.entries.pop(key, None):
                    self.router.note(f"expired {key[0]} {key[1]}")
            if over:
                self.write()

    def put(self, entry):
        key = entry["NewProtocol"], entry["NewExternalPort"]
        self.entries[key] = entry
        self.ends.pop(key, None)
        if entry["NewLeaseDuration"]:
            self.ends[key] = time.monotonic() + entry["NewLeaseDuration"]
        self.write()

    def shown(self, key):
        """An entry as it is read out: with what is left of its lease."""
        entry = dict(self.entries[key])
        if key in self.ends:
            entry["NewLeaseDuration"] = max(1, round(self.ends[key] - time.monotonic()))
        return self.router.habit("show", entry) or entry

    def restart(self):
        with self.lock:
            self.entries = {}
            self.ends = {}
            for number in range(self.settings.entries):
                port = 50000 + number % 10000
                protocol = "TCP" if number < 10000 else "UDP"
                self.entries[protocol, port] = self.entry(protocol, port, "192.168.77.9", port, 0, f"other {number}")
            for port in self.settings.owned:
                self.entries["TCP", port] = self.entry("TCP", port, "192.168.77.3", port, 0, "the neighbour's")
            self.write()

    @staticmethod
    def entry(protocol, external, client, internal, lease, description):
        return {
            "NewRemoteHost": "",
            "NewExternalPort": external,
            "NewProtocol": protocol,
            "NewInternalPort": internal,
            "NewInternalClient": client,
            "NewEnabled": 1,
            "NewPortMappingDescription": description,
            "NewLeaseDuration": lease,
        }

    def write(self):
        if not self.settings.table:
            return
        with open(self.settings.table, "w", encoding="utf-8") as file:
            for entry in self.entries.values():
                file.write(
                    f"{entry['NewProtocol']} {entry['NewExternalPort']} "
                    f"{entry['NewInternalClient']}:{entry['NewInternalPort']} "
                    f"{entry['NewLeaseDuration']} {entry['NewPortMappingDescription']}\n"
                )

    def add(self, arguments):
        key = arguments["NewProtocol"], int(arguments["NewExternalPort"])
        lease = int(arguments.get("NewLeaseDuration") or 0)
        if not 1 <= key[1] <= 65535:
            raise Refusal(716 if key[1] == 0 else 402)
        if key[1] < self.settings.refuse_below:
            raise Refusal(606)
        if self.settings.permanent_only and lease:
            raise Refusal(725)
        client = arguments["NewInternalClient"]
        internal = int(arguments["NewInternalPort"])
        description = arguments.get("NewPortMappingDescription", "")
        with self.lock:
            if key in self.entries and self.entries[key]["NewInternalClient"] != client:
                raise Refusal(718)
            if self.settings.lies:
                return
            if self.settings.longest_lease:
                lease = min(lease or self.settings.longest_lease, self.settings.longest_lease)
            entry = self.entry(*key, client, internal, lease, description)
            kept = self.router.habit("keep", entry)
            if kept is not False:
                self.put(kept or entry)

    def delete(self, arguments):
        with self.lock:
            if self.entries.pop((arguments["NewProtocol"], int(arguments["NewExternalPort"])), None) is None:
                raise Refusal(714)
            self.write()

    def specific(self, arguments):
        with self.lock:
            key = arguments["NewProtocol"], int(arguments["NewExternalPort"])
            if key not in self.entries:
                raise Refusal(714)
            entry = self.shown(key)
        names = ("NewInternalPort", "NewInternalClient", "NewEnabled", "NewPortMappingDescription", "NewLeaseDuration")
        return {name: entry[name] for name in names}

    def generic(self, arguments):
        index = int(arguments["NewPortMappingIndex"])
        with self.lock:
            keys = list(self.entries)
            if not 0 <= index < len(keys):
                raise Refusal(713)
            return self.shown(keys[index])


class Router:
    def __init__(self, settings):
        self.settings = settings
        self.habits = router_habits.load(settings.habit)
        self.journal_lock = threading.Lock()
        self.table = Table(self)
        self.boot_identifier = 1
        self.started = time.monotonic()
        self.device = f"urn:schemas-upnp-org:device:InternetGatewayDevice:{settings.version}"
        service_version = settings.version if settings.service == "WANIPConnection" else 1
        self.service = f"urn:schemas-upnp-org:service:{settings.service}:{service_version}"
        self.port = 0

    def habit(self, place, *arguments):
        """What the first habit with an opinion says at this place; None when none has one."""
        for one in self.habits:
            answer = getattr(one, place)(self, *arguments)
            if answer is not None:
                return answer
        return None

    def uuid(self):
        return self.habit("uuid") or self.settings.uuid

    def note(self, text):
        if not self.settings.journal:
            return
        with self.journal_lock, open(self.settings.journal, "a", encoding="utf-8") as file:
            file.write(f"{time.time():.3f} {text}\n")

    def location(self):
        return self.habit("location") or f"http://{self.settings.address}:{self.port}/description.xml"

    def restart(self):
        self.table.restart()
        self.boot_identifier += 1
        self.started = time.monotonic()
        self.habit("restart")
        self.note("restart")
        announce(self)

    def act(self, action, arguments):
        """The answer's arguments, or a Refusal."""
        self.table.expire()
        failing = dict(fault.partition("=")[::2] for fault in self.settings.fail)
        if action in failing or "all" in failing:
            raise Refusal(int(failing.get(action) or failing.get("all") or 501))
        answers = {
            "AddPortMapping": lambda: self.table.add(arguments),
            "DeletePortMapping": lambda: self.table.delete(arguments),
            "GetSpecificPortMappingEntry": lambda: self.table.specific(arguments),
            "GetGenericPortMappingEntry": lambda: self.table.generic(arguments),
            "GetExternalIPAddress": lambda: {"NewExternalIPAddress": self.settings.wan_address},
            "GetStatusInfo": lambda: {
                "NewConnectionStatus": self.settings.status,
                "NewLastConnectionError": "ERROR_NONE",
                "NewUptime": int(time.monotonic() - self.started),
            },
            "GetConnectionTypeInfo": lambda: {
                "NewConnectionType": "IP_Routed",
                "NewPossibleConnectionTypes": "IP_Routed",
            },
        }
        if action not in answers:
            raise Refusal(401)
        return answers[action]() or {}

    def description(self):
        def device(kind, name, inner, version=self.settings.version):
            return (
                f"<device><deviceType>urn:schemas-upnp-org:device:{kind}:{version}</deviceType>"
                f"<friendlyName>{escape(name)}</friendlyName><manufacturer>Nobody</manufacturer>"
                f"<modelName>{escape(self.settings.model)}</modelName><UDN>uuid:{self.uuid()}</UDN>{inner}</device>"
            )

        service = (
            f"<serviceList><service><serviceType>{self.service}</serviceType>"
            "<serviceId>urn:upnp-org:serviceId:WANConn1</serviceId>"
            f"<controlURL>{escape(self.habit('control') or '/control')}</controlURL>"
            "<eventSubURL>/events</eventSubURL><SCPDURL>/service.xml</SCPDURL></service></serviceList>"
        )
        common = (
            "<serviceList><service>"
            "<serviceType>urn:schemas-upnp-org:service:WANCommonInterfaceConfig:1</serviceType>"
            "<serviceId>urn:upnp-org:serviceId:WANCommonIFC1</serviceId><controlURL>/common</controlURL>"
            "<eventSubURL>/events</eventSubURL><SCPDURL>/service.xml</SCPDURL></service></serviceList>"
        )
        connection = device("WANConnectionDevice", "Connection", service)
        wan = device("WANDevice", "WAN", f"{common}<deviceList>{connection}</deviceList>")
        address = self.habit("page") or f"http://{self.settings.address}:{self.port}/"
        page = f"<presentationURL>{escape(address)}</presentationURL>"
        root = device("InternetGatewayDevice", self.settings.name, f"<deviceList>{wan}</deviceList>{page}")
        return (
            '<?xml version="1.0"?>\n<root xmlns="urn:schemas-upnp-org:device-1-0">'
            f"<specVersion><major>1</major><minor>0</minor></specVersion>{root}</root>"
        )


def make_handler(router):
    class Handler(http.server.BaseHTTPRequestHandler):
        protocol_version = "HTTP/1.1"

        def log_message(self, *_):
            pass

        def send(self, status, body, kind="text/xml"):
            data = body.encode()
            self.send_response(status)
            self.send_header("Content-Type", kind)
            self.send_header("Content-Length", str(len(data)))
            self.end_headers()
            self.wfile.write(data)

        def send_endlessly(self):
            self.send_response(200)
            self.send_header("Content-Type", "text/xml")
            self.send_header("Connection", "close")
            self.end_headers()
            self.close_connection = True
            with contextlib.suppress(OSError):
                self.wfile.write(b'<?xml version="1.0"?><root>')
                while True:
                    self.wfile.write(b"<device>" * 1000)

        def do_GET(self):
            router.note(f"GET {self.path}")
            if router.habit("get", self):
                return
            if self.path != "/description.xml":
                self.send(200, "<html><body>A scripted router.</body></html>", "text/html")
            elif router.settings.description == "endless":
                self.send_endlessly()
            elif router.settings.description == "none":
                self.send(404, "")
            else:
                text = router.description()
                broken = router.settings.description == "broken"
                self.send(200, text[: len(text) // 2].replace("</deviceType>", "<<&") if broken else text)

        def do_POST(self):
            body = self.rfile.read(int(self.headers.get("Content-Length") or 0)).decode("utf-8", "replace")
            action = self.headers.get("SOAPAction", "").strip('"').rpartition("#")[2]
            arguments = dict(re.findall(r"<(New\w+)[^>]*>([^<]*)</", body))
            time.sleep(router.settings.delay)
            if router.settings.endless_answers:
                router.note(f"{action} endless")
                self.send_endlessly()
                return
            try:
                if router.habit("post", self, action, arguments):
                    router.note(f"{action} {arguments.get('NewExternalPort', '')} by habit")
                    return
                answer = router.act(action, arguments)
                router.note(f"{action} {arguments.get('NewExternalPort', '')} done")
                self.send(200, envelope(f"u:{action}Response", router.service, answer))
            except (Refusal, KeyError, ValueError) as refusal:
                code = refusal.code if isinstance(refusal, Refusal) else 402
                router.note(f"{action} {arguments.get('NewExternalPort', '')} {code}")
                self.send(500, fault(code))

    return Handler


def envelope(name, service, arguments):
    inner = "".join(f"<{key}>{escape(str(value))}</{key}>" for key, value in arguments.items())
    return wrapped(f'<{name} xmlns:u="{service}">{inner}</{name}>')


def fault(code):
    return wrapped(
        "<s:Fault><faultcode>s:Client</faultcode><faultstring>UPnPError</faultstring><detail>"
        f'<UPnPError xmlns="urn:schemas-upnp-org:control-1-0"><errorCode>{code}</errorCode>'
        f"<errorDescription>{ERRORS.get(code, 'Failed')}</errorDescription></UPnPError></detail></s:Fault>"
    )


def wrapped(body):
    return (
        '<?xml version="1.0"?>\r\n<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/" '
        's:encodingStyle="http://schemas.xmlsoap.org/soap/encoding/"><s:Body>'
        f"{body}</s:Body></s:Envelope>\r\n"
    )


def announced_types(router):
    return ["upnp:rootdevice", f"uuid:{router.uuid()}", router.device, router.service]


def headers(router, kind_header, kind):
    identifier = f"uuid:{router.uuid()}"
    name = identifier if kind == identifier else f"{identifier}::{kind}"
    return (
        f"CACHE-CONTROL: max-age=120\r\n{kind_header}: {kind}\r\nUSN: {name}\r\nEXT:\r\n"
        f"SERVER: Script/1.0 UPnP/1.1 Router/1.0\r\nLOCATION: {router.location()}\r\n"
        f"BOOTID.UPNP.ORG: {router.boot_identifier}\r\nCONFIGID.UPNP.ORG: 1\r\n\r\n"
    )


def announce(router):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
        sender.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(router.settings.address))
        sender.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_TTL, 2)
        for kind in announced_types(router):
            head = f"NOTIFY * HTTP/1.1\r\nHOST: {GROUP}:{SSDP_PORT}\r\nNTS: ssdp:alive\r\n"
            sender.sendto((head + headers(router, "NT", kind)).encode(), (GROUP, SSDP_PORT))


def answer_searches(router):
    with (
        socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as listener,
        socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as own,
    ):
        listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        listener.bind((GROUP, SSDP_PORT))
        # A search may come to the router's own address, too.
        own.bind((router.settings.address, SSDP_PORT))
        membership = struct.pack("4s4s", socket.inet_aton(GROUP), socket.inet_aton(router.settings.address))
        listener.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP, membership)
        # An answer must come from the router's own address, of which its network card may have several.
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.bind((router.settings.address, 0))
            if router.settings.ready:
                with open(router.settings.ready, "w", encoding="utf-8") as file:
                    file.write(router.location() + "\n")
            announce(router)
            router.habit("start")
            while True:
                for ready in select.select([listener, own], [], [])[0]:
                    data, asker = ready.recvfrom(65536)
                    answer_search(router, sender, data.decode("latin-1"), asker)


def answer_search(router, sender, text, asker):
    wanted = re.search(r"^ST:\s*(\S+)", text, re.MULTILINE | re.IGNORECASE)
    if not text.startswith("M-SEARCH") or not wanted:
        return
    kinds = announced_types(router)
    for kind in kinds if wanted[1] == "ssdp:all" else [wanted[1]]:
        # A device answers for the versions below its own too.
        if any(known == kind or same_or_lower(kind, known) for known in kinds):
            router.note(f"search {kind} from {asker[0]}")
            delay = router.habit("search", kind, asker)
            if delay is False:
                continue
            answer = ("HTTP/1.1 200 OK\r\n" + headers(router, "ST", kind)).encode()
            threading.Timer(delay or 0, sender.sendto, (answer, asker)).start()


def same_or_lower(kind, known):
    name, _, version = kind.rpartition(":")
    known_name, _, known_version = known.rpartition(":")
    return name == known_name and version.isdigit() and known_version.isdigit() and int(version) <= int(known_version)


def watch_leases(router):
    while True:
        time.sleep(0.5)
        router.table.expire()


def main():
    router = Router(options())
    server = http.server.ThreadingHTTPServer((router.settings.address, 0), make_handler(router))
    server.daemon_threads = True
    router.port = server.server_address[1]
    signal.signal(signal.SIGUSR1, lambda *_: router.restart())
    threading.Thread(target=server.serve_forever, daemon=True).start()
    threading.Thread(target=watch_leases, args=(router,), daemon=True).start()
    answer_searches(router)


if __name__ == "__main__":
    main()
