"""Routers whose tables, leases and connections aren't as the standard has them."""

import contextlib
import socket
import struct
import sys
import threading

from router_habits import Habit, habit
from router_refusal import Refusal

READING = ("GetGenericPortMappingEntry", "GetSpecificPortMappingEntry")


def key_of(arguments):
    return arguments.get("NewProtocol"), int(arguments.get("NewExternalPort") or 0)


def is_missing(router, action, arguments):
    """The action asks for an entry that isn't there; the end of a table with entries doesn't count."""
    if action == "GetGenericPortMappingEntry":
        return not router.table.entries
    return action == "GetSpecificPortMappingEntry" and key_of(arguments) not in router.table.entries


def reset(handler):
    """Ends the connection without an answer."""
    handler.close_connection = True
    handler.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    with contextlib.suppress(OSError):
        handler.connection.shutdown(socket.SHUT_RD)
    handler.connection.close()


class EmptyCode(Habit):
    """Has one code for an empty table, for a missing entry, and for what it doesn't understand."""

    code = 0

    def post(self, router, handler, action, arguments):
        router.table.expire()
        if is_missing(router, action, arguments):
            raise Refusal(self.code)


@habit("empty-402")
class Empty402(EmptyCode):
    code = 402


@habit("empty-501")
class Empty501(EmptyCode):
    code = 501


class Shows(Habit):
    """Reads an entry out in words of its own."""

    words = {}

    def show(self, router, entry):
        return {**entry, **self.words}


@habit("anybody-zeros")
class AnybodyZeros(Shows):
    words = {"NewRemoteHost": "0.0.0.0"}


@habit("anybody-star")
class AnybodyStar(Shows):
    words = {"NewRemoteHost": "*"}


@habit("says-true")
class SaysTrue(Shows):
    words = {"NewEnabled": "TRUE"}


@habit("says-yes")
class SaysYes(Shows):
    words = {"NewEnabled": "YES"}


@habit("tells-no-lease")
class TellsNoLease(Shows):
    words = {"NewLeaseDuration": 0}


@habit("lower-case")
class LowerCase(Habit):
    def show(self, router, entry):
        return {**entry, "NewProtocol": entry["NewProtocol"].lower()}


@habit("blanks")
class Blanks(Habit):
    def show(self, router, entry):
        return {name: f" {value} " for name, value in entry.items()}


class RefusesFinite(Habit):
    """Refuses leases that end, by a code that isn't meant for it."""

    code = 0

    def keep(self, router, entry):
        if entry["NewLeaseDuration"]:
            raise Refusal(self.code)


@habit("finite-402")
class Finite402(RefusesFinite):
    code = 402


@habit("finite-501")
class Finite501(RefusesFinite):
    code = 501


@habit("finite-911")
class Finite911(RefusesFinite):
    code = -911


@habit("keeps-permanent-only")
class KeepsPermanentOnly(Habit):
    """Says yes to leases that end, and doesn't keep them."""

    def keep(self, router, entry):
        return False if entry["NewLeaseDuration"] else None


@habit("adds-once")
class AddsOnce(Habit):
    """Refuses to add what it has already, so that no lease can be renewed."""

    def post(self, router, handler, action, arguments):
        router.table.expire()
        if action == "AddPortMapping" and key_of(arguments) in router.table.entries:
            raise Refusal(501)


@habit("cuts-descriptions")
class CutsDescriptions(Habit):
    def keep(self, router, entry):
        return {**entry, "NewPortMappingDescription": entry["NewPortMappingDescription"][:6]}


@habit("own-descriptions")
class OwnDescriptions(Habit):
    def keep(self, router, entry):
        return {**entry, "NewPortMappingDescription": "UPnP"}


@habit("keeps-table")
class KeepsTable(Habit):
    """Shows its table after a restart as it was, and forwards nothing of it."""

    entries = {}

    def keep(self, router, entry):
        self.entries = {**router.table.entries, (entry["NewProtocol"], entry["NewExternalPort"]): entry}

    def restart(self, router):
        for entry in self.entries.values():
            router.table.put(entry)


class Resets(Habit):
    """Cuts the connection at actions that it lacks."""

    actions = ()

    def post(self, router, handler, action, arguments):
        if action in self.actions:
            reset(handler)
            return True
        return None


@habit("resets-at-entry")
class ResetsAtEntry(Resets):
    actions = READING[1:]


@habit("resets-at-table")
class ResetsAtTable(Resets):
    actions = READING


@habit("resets-at-status")
class ResetsAtStatus(Resets):
    actions = ("GetStatusInfo",)


@habit("one-connection")
class OneConnection(Habit):
    """Serves one connection at a time, and cuts the others."""

    busy = threading.Lock()

    def post(self, router, handler, action, arguments):
        if not self.busy.acquire(blocking=False):
            reset(handler)
            return True
        threading.Timer(0.01, self.busy.release).start()
        return None


@habit("placeholders")
class Placeholders(Habit):
    """Has an entry for every port that is asked for: switched off, and to nobody."""

    def post(self, router, handler, action, arguments):
        router.table.expire()
        if action != "GetSpecificPortMappingEntry" or not is_missing(router, action, arguments):
            return None
        envelope = sys.modules["__main__"].envelope
        nobody = {
            "NewInternalPort": 0,
            "NewInternalClient": "",
            "NewEnabled": 0,
            "NewPortMappingDescription": "",
            "NewLeaseDuration": 0,
        }
        handler.send(200, envelope(f"u:{action}Response", router.service, nobody))
        return True


@habit("port-ranges")
class PortRanges(Habit):
    """Has a range of ports as one entry, made on its own page."""

    def start(self, router):
        entry = router.table.entry("TCP", "8000-8100", "192.168.77.9", "8000-8100", 0, "a range")
        router.table.put(entry)
