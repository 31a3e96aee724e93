"""settle_type_library.py FILE: puts a fixed time in place of the one at which widl made a type library, so that the same
source gives the same bytes. What says nothing of its time stays as it is."""

import pathlib
import re
import sys

# widl leaves two remarks: a text that closes with its time, and behind it the same time as a 32-bit number (VT_UI4). Both
# are filled up to whole words with the letter W.
REMARKS = re.compile(rb"(Created by WIDL version \S+ at )(.{24})(\n?W*\x13\0)(.{4})(WW)", re.DOTALL)
SETTLED = rb"\1Thu Jan  1 00:00:00 1970\3" + bytes(4) + rb"\5"


def main():
    path = pathlib.Path(sys.argv[1])
    path.write_bytes(REMARKS.sub(SETTLED, path.read_bytes()))


if __name__ == "__main__":
    main()
