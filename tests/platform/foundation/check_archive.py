#!/usr/bin/env python3
"""Reads an archive that our archiver wrote with a CBOR reader that is not ours.

usage: check_archive.py WRITER      WRITER is the program write_sample_archive; exit code 77 means skipped
"""

import hashlib
import io
import pathlib
import subprocess
import sys
import tempfile

try:
    import cbor2
except ImportError:
    print("skipped: the Python module cbor2 is not installed (Debian package python3-cbor2)")
    sys.exit(77)

FULL_PACK = {
    "name": "Grüße \U0001F600",
    "tags": ["hi", "", "привет"],
    "color": [0x0001, 0x8000, 0xFFFF, 0x7FFF],
    "isNew": True,
    "size": -1234567890123,
    "weight": 0.1,
    "cover": {"url": "https://example.com/1.png"},
    "stickers": [{"url": "https://example.com/1.png"}, {"url": "u", "text": ""}],
}
EMPTY_PACK = {"isNew": False, "size": 0, "weight": 0.0}
ROOT = [FULL_PACK, EMPTY_PACK]
ARCHIVE = {
    "format": "kovalin.keyed-archive",
    "version": 1,
    "checksum": hashlib.blake2s(cbor2.dumps(ROOT), digest_size=16).hexdigest(),
    "root": ROOT,
}


def check_same(found, expected, path):
    """Equal values of equal kinds, with the keys in the same order: 1, 1.0 and True are three different things."""
    if type(found) is not type(expected):
        sys.exit(f"{path}: {type(expected).__name__} expected, {type(found).__name__} found")
    if isinstance(expected, dict):
        if list(found) != list(expected):
            sys.exit(f"{path}: keys {list(expected)} expected, {list(found)} found")
        for key in expected:
            check_same(found[key], expected[key], f"{path}.{key}")
    elif isinstance(expected, list):
        if len(found) != len(expected):
            sys.exit(f"{path}: {len(expected)} elements expected, {len(found)} found")
        for index, pair in enumerate(zip(found, expected)):
            check_same(*pair, f"{path}[{index}]")
    elif found != expected:
        sys.exit(f"{path}: {expected!r} expected, {found!r} found")


def main():
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "sample.archive")
        subprocess.run([sys.argv[1], str(file)], check=True)
        data = file.read_bytes()
    stream = io.BytesIO(data)
    check_same(cbor2.load(stream), ARCHIVE, "archive")
    if stream.tell() != len(data):
        sys.exit(f"{len(data) - stream.tell()} bytes behind the archive")


if __name__ == "__main__":
    main()
