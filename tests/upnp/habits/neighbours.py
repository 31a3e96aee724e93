"""Hostile or broken neighbours, and routers that say odd things of themselves."""

import contextlib
import itertools
import socket
import threading
import time
import uuid

from router_habits import Habit, habit

SSDP = ("239.255.255.250", 1900)
GATEWAY = "urn:schemas-upnp-org:device:InternetGatewayDevice:1"


def send_page(handler, body, length=None):
    handler.send_response(200)
    handler.send_header("Content-Type", "text/xml")
    handler.send_header("Content-Length", str(len(body) if length is None else length))
    handler.send_header("Connection", "close")
    handler.end_headers()
    handler.close_connection = True
    with contextlib.suppress(OSError):
        handler.wfile.write(body)


def datagram(first, lines):
    return "\r\n".join([first, *(f"{name}: {value}" for name, value in lines.items()), "", ""]).encode()


@habit("slow-search")
class SlowSearch(Habit):
    """Answers a search late, near the end of the time that it is given."""

    def search(self, router, kind, asker):
        return 0.9


@habit("deaf-to-all")
class DeafToAll(Habit):
    """Answers no multicast at all."""

    def search(self, router, kind, asker):
        return False


@habit("host-name")
class HostName(Habit):
    """Names itself by a host name in LOCATION and in the control URL, which only its own DNS server knows."""

    def location(self, router):
        return f"http://router.lan:{router.port}/description.xml"

    def control(self, router):
        return f"http://router.lan:{router.port}/control"


@habit("other-address")
class OtherAddress(Habit):
    """Describes itself with another address of its own, as after the LAN was renumbered."""

    def location(self, router):
        return f"http://10.9.8.7:{router.port}/description.xml"

    def control(self, router):
        return f"http://10.9.8.7:{router.port}/control"


@habit("new-identifier")
class NewIdentifier(Habit):
    """Makes itself another identifier at each start."""

    def __init__(self):
        self.own = str(uuid.uuid4())

    def uuid(self, router):
        return self.own

    def restart(self, router):
        self.own = str(uuid.uuid4())


@habit("end-tags")
class EndTags(Habit):
    """Has a description of begun elements and a quarter of a million begun ends."""

    def get(self, router, handler):
        if handler.path != "/description.xml":
            return None
        send_page(handler, b"<root><device><serviceList>" + b"<service>" * 1000 + b"</" * 250000)
        return True


@habit("huge-length")
class HugeLength(Habit):
    """Promises four gigabytes of description, and sends a few bytes of it."""

    def get(self, router, handler):
        if handler.path != "/description.xml":
            return None
        send_page(handler, b"<root>", 4 * 1024**3 - 1)
        time.sleep(30)
        return True


@habit("drips")
class Drips(Habit):
    """Sends its description byte by byte, one a second."""

    def get(self, router, handler):
        if handler.path != "/description.xml":
            return None
        handler.send_response(200)
        handler.end_headers()
        handler.close_connection = True
        with contextlib.suppress(OSError):
            for letter in itertools.cycle(b"<root><device>"):
                handler.wfile.write(bytes([letter]))
                time.sleep(1)
        return True


@habit("many-services")
class ManyServices(Habit):
    """Offers sixteen connections, each of which takes four seconds for an answer."""

    def get(self, router, handler):
        if handler.path != "/description.xml":
            return None
        text = router.description()
        service = text[text.index(f"<service><serviceType>{router.service}") : text.index("</service></serviceList>", text.index(router.service))]
        more = "".join(f"</service>{service.replace('/control', f'/control{i}')}" for i in range(15))
        send_page(handler, text.replace(service, service + more).encode())
        return True

    def post(self, router, handler, action, arguments):
        if action in ("GetStatusInfo", "GetExternalIPAddress"):
            time.sleep(4)


@habit("many-locations")
class ManyLocations(Habit):
    """Answers a search with forty locations, none of which ends its answer."""

    def search(self, router, kind, asker):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.bind((router.settings.address, 0))
            for i in range(40):
                lines = {
                    "ST": kind,
                    "USN": f"uuid:{uuid.uuid4()}::{kind}",
                    "LOCATION": f"http://{router.settings.address}:{router.port}/endless{i}.xml",
                }
                sender.sendto(datagram("HTTP/1.1 200 OK", lines), asker)

    def get(self, router, handler):
        if handler.path.startswith("/endless"):
            handler.send_endlessly()
            return True


@habit("floods")
class Floods(Habit):
    """Announces a restart of itself a hundred times a second."""

    def start(self, router):
        threading.Thread(target=self.announce, args=(router,), daemon=True).start()

    def announce(self, router):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.bind((router.settings.address, 0))
            sender.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(router.settings.address))
            for boot in itertools.count(100):
                lines = {
                    "HOST": "239.255.255.250:1900",
                    "NTS": "ssdp:alive",
                    "NT": GATEWAY,
                    "USN": f"uuid:{router.uuid()}::{GATEWAY}",
                    "LOCATION": router.location(),
                    "BOOTID.UPNP.ORG": boot,
                }
                sender.sendto(datagram("NOTIFY * HTTP/1.1", lines), SSDP)
                time.sleep(0.01)


@habit("says-goodbye-for-others")
class SaysGoodbyeForOthers(Habit):
    """Says goodbye in the name of the router with the ordinary identifier, ten times a second."""

    def start(self, router):
        threading.Thread(target=self.announce, args=(router,), daemon=True).start()

    def announce(self, router):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.bind((router.settings.address, 0))
            sender.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(router.settings.address))
            while True:
                lines = {
                    "HOST": "239.255.255.250:1900",
                    "NTS": "ssdp:byebye",
                    "NT": GATEWAY,
                    "USN": f"uuid:0d1f7c56-9d0e-4c0b-8a3e-6c1b2d3e4f50::{GATEWAY}",
                }
                sender.sendto(datagram("NOTIFY * HTTP/1.1", lines), SSDP)
                time.sleep(0.1)


@habit("quoted-page")
class QuotedPage(Habit):
    """Gives a page address with quotes and a second argument in it."""

    def page(self, router):
        return f'http://{router.settings.address}/" --run "calc.exe'
