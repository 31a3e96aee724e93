"""The tables of the ready-made profiles, for the scripts that make and check them, and their table in the help."""

import csv
import html
import pathlib

# In the order of the help page.
CATEGORIES = (
    "games",
    "media servers",
    "remote desktops and shells",
    "VPNs and tunnels",
    "voice and video",
    "file sharing and sync",
    "home automation and cameras",
    "web and mail",
    "databases",
    "network services",
)
COLUMNS = ["name", "category", "ports", "protocol", "page", "date", "read", "uses", "warning", "description"]
PROTOCOLS = ("TCP", "UDP", "TCP+UDP")
HELP_PAGE = "ready-made.html"
BEGIN = "      <!-- Made by scripts/make-profiles from profiles/sources.csv -->\n"
END = "      <!-- So far -->\n"


def table(path):
    """The rows of a table with the names of its columns."""
    with open(path, encoding="ascii", newline="") as file:
        return list(csv.DictReader(file))


def sources(root):
    return table(pathlib.Path(root) / "profiles" / "sources.csv")


def warnings(root):
    return {row["warning"]: row["text"] for row in table(pathlib.Path(root) / "profiles" / "warnings.csv")}


def parts(text):
    return text.split("; ")


def port_range(text):
    """First and last port of a range; a single port is both."""
    first, _, last = text.partition("-")
    return int(first), int(last or first)


def mappings(row):
    """Use, first port, last port and protocol of each mapping of a row."""
    return [
        (use, *port_range(ports), protocol)
        for ports, protocol, use in zip(parts(row["ports"]), parts(row["protocol"]), parts(row["uses"]), strict=True)
    ]


def file_of_category(category):
    return f"All {category}.prf"


def title_of(category):
    return category[0].upper() + category[1:]


def anchor(category):
    return category.lower().replace(" ", "-")


def help_table(root):
    """The part of the help page that lists the profiles by category."""
    rows = sources(root)
    lines = []
    for category in CATEGORIES:
        members = [row for row in rows if row["category"] == category]
        lines += [
            f'      <h2 id="{anchor(category)}">{html.escape(title_of(category))}</h2>',
            f"      <p>All of them: <code>{html.escape(file_of_category(category))}</code></p>",
            '      <div class="wide">',
            '        <table class="stack">',
            "          <thead>",
            '            <tr><th scope="col">Profile</th><th scope="col">Ports</th></tr>',
            "          </thead>",
            "          <tbody>",
        ]
        for row in members:
            mark = " <b>(think first)</b>" if row["warning"] else ""
            ports = "<br>".join(
                html.escape(f"{text} {protocol}: {use}")
                for text, protocol, use in zip(parts(row["ports"]), parts(row["protocol"]), parts(row["uses"]), strict=True)
            )
            lines.append(f'            <tr><th scope="row">{html.escape(row["name"])}{mark}</th>')
            lines.append(f"              <td>{ports}</td></tr>")
        lines += ["          </tbody>", "        </table>", "      </div>", ""]
    return "\n".join(lines)


def spliced(page, made):
    """The page with what was made between its marks; fails when it lacks them."""
    head, begin, rest = page.partition(BEGIN)
    _, end, tail = rest.partition(END)
    if not begin or not end:
        raise ValueError("the marks of the table are missing")
    return head + begin + made + end + tail


def update_help(root):
    path = pathlib.Path(root) / "help" / HELP_PAGE
    path.write_text(spliced(path.read_text(encoding="utf-8"), help_table(root)), encoding="utf-8")
