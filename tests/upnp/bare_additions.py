#!/usr/bin/env python3
"""bare_additions.py HOST PORT CLIENT FIRST COUNT: adds mappings to the router's daemon, each by one request on a
connection of its own, and prints the milliseconds: what no client can do without. Then it takes them off again."""

import http.client
import sys
import time

host, port, client, first, count = sys.argv[1], *map(str, sys.argv[2:])
SERVICE = "urn:schemas-upnp-org:service:WANIPConnection:1"


def control_path():
    connection = http.client.HTTPConnection(host, int(port))
    connection.request("GET", "/rootDesc.xml")
    text = connection.getresponse().read().decode()
    return text[text.index(SERVICE[:-1]) :].partition("<controlURL>")[2].partition("<")[0]


def act(path, action, arguments):
    inner = "".join(f"<{name}>{value}</{name}>" for name, value in arguments)
    body = (
        '<?xml version="1.0"?><s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/" '
        's:encodingStyle="http://schemas.xmlsoap.org/soap/encoding/"><s:Body>'
        f'<u:{action} xmlns:u="{SERVICE}">{inner}</u:{action}></s:Body></s:Envelope>'
    )
    connection = http.client.HTTPConnection(host, int(port))
    connection.request("POST", path, body, {"Content-Type": "text/xml", "SOAPAction": f'"{SERVICE}#{action}"'})
    answer = connection.getresponse()
    answer.read()
    if answer.status != 200:
        sys.exit(f"the router answers {answer.status} to {action}")


def key(external):
    return [("NewRemoteHost", ""), ("NewExternalPort", external), ("NewProtocol", "TCP")]


def value(external):
    return [
        ("NewInternalPort", external),
        ("NewInternalClient", client),
        ("NewEnabled", 1),
        ("NewPortMappingDescription", "bare"),
        ("NewLeaseDuration", 3600),
    ]


path = control_path()
ports = range(int(first), int(first) + int(count))
start = time.perf_counter()
for external in ports:
    act(path, "AddPortMapping", key(external) + value(external))
print(round((time.perf_counter() - start) * 1000))
for external in ports:
    act(path, "DeletePortMapping", key(external))
