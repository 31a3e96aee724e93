"""The habits of real routers, by name, for scripted_router.py.

A habit is a class with the name that --habit takes; what it doesn't override is what an ordinary router does. They stand in
habits/*.py, each file read when the router starts.
"""

import importlib.util
import pathlib

HABITS = {}


def habit(name):
    """Registers a class under the name that --habit takes."""

    def register(kind):
        HABITS[name] = kind
        return kind

    return register


class Habit:
    """The places at which a router can be another than expected. None leaves it to the next habit, or to the router."""

    def start(self, router):
        """Called once when the router answers; threads of its own begin here."""

    def search(self, router, kind, asker):
        """False: the search isn't answered; a number: after so many seconds."""

    def location(self, router):
        """The LOCATION of answers and announcements."""

    def uuid(self, router):
        """The identifier of the device, without "uuid:"."""

    def control(self, router):
        """The control URL in the description."""

    def page(self, router):
        """The presentationURL in the description."""

    def get(self, router, handler):
        """True: the request for a page or a description is dealt with."""

    def post(self, router, handler, action, arguments):
        """True: the action is dealt with. May raise Refusal."""

    def keep(self, router, entry):
        """The entry that goes into the table when one is added; False keeps none. May raise Refusal."""

    def show(self, router, entry):
        """The entry as the router reads it out."""

    def restart(self, router):
        """Called when the router restarts, before it announces itself."""


def load(names):
    """The habits of these names, made."""
    for file in sorted((pathlib.Path(__file__).parent / "habits").glob("*.py")):
        specification = importlib.util.spec_from_file_location(f"habits_{file.stem}", file)
        specification.loader.exec_module(importlib.util.module_from_spec(specification))
    unknown = [name for name in names if name not in HABITS]
    if unknown:
        raise SystemExit(f"no habit is called {', '.join(unknown)}; there are: {' '.join(sorted(HABITS))}")
    return [HABITS[name]() for name in names]
