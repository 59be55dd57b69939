#!/usr/bin/env python3
"""Reads a model that `kovalin model build` made with FlatBuffers' own converter, which knows nothing but the schema.

usage: check_model.py KOVALIN FLATC SCHEMA
"""

import json
import math
import pathlib
import subprocess
import sys
import tempfile

PAIRS = [
    ("Good morning", 7, 3),
    ("good night!", 9, 2),
    ("Morning, sun-shine", 7, 1),
    ("night night", -5, 2),
    ("\N{SLEEPING FACE}", 4, 100),
]

# What a comic has of the 8 choices that count.
COMICS = [(7, 4 / 8), (-5, 2 / 8), (9, 2 / 8)]

# Key: its count, how often it ends a text, and its comics with their counts and their parts of a choice more that is imagined.
# After a word that choice is spread like all, after a run as its words suggest: only one comic has both words of each run of two
# different ones, and "night" suggests two comics equally.
KEYS = {
    "good": (5, 0, [(7, 3, 0.5), (9, 2, 0.25)]),
    "good|morning": (3, 3, [(7, 3, 1)]),
    "good|night": (2, 2, [(9, 2, 1)]),
    "morning": (4, 3, [(7, 4, 0.5)]),
    "morning|sunshine": (1, 1, [(7, 1, 1)]),
    "night": (4, 4, [(-5, 2, 0.25), (9, 2, 0.25)]),
    "night|night": (2, 2, [(-5, 2, 0.5), (9, 0, 0.5)]),
    "sunshine": (1, 1, [(7, 1, 0.5)]),
}


def check(holds, fault):
    if not holds:
        sys.exit(fault)


def check_number(found, expected, name):
    # The converter prints six digits after the point.
    check(math.isclose(found, expected, rel_tol=1e-6, abs_tol=1e-6), f"{name}: {expected} expected, {found} found")


def convert(kovalin, flatc, schema, folder):
    pairs = pathlib.Path(folder, "pairs.tsv")
    pairs.write_text("".join(f"{text}\t{comic}\t{count}\n" for text, comic, count in PAIRS), encoding="utf-8")
    model = pathlib.Path(folder, "model.bin")
    subprocess.run([kovalin, "model", "build", "--pairs", pairs, "--out", model], check=True)
    subprocess.run(
        [flatc, "--json", "--strict-json", "--raw-binary", "--defaults-json", "--no-warnings"]
        + ["-o", folder, schema, "--", model],
        check=True,
    )
    return json.loads(model.with_suffix(".json").read_text(encoding="utf-8"))


def check_comics(model):
    found = [comic["comicId"] for comic in model["comicPriors"]]
    check(found == [comic for comic, _ in COMICS], f"comics: {found} found")
    for comic, (number, share) in zip(model["comicPriors"], COMICS):
        check_number(comic["prior"], share, f"prior of {number}")


def check_keys(model):
    entries = model["entryInfoForWords"]
    words = [entry["word"].encode() for entry in entries]
    check(words == sorted(set(words)), "keys aren't sorted and unique")
    check([word.decode() for word in words] == list(KEYS), f"keys: {words} found")
    rows = model["comicProbs"]
    end = 0
    for entry in entries:
        word = entry["word"]
        check(entry["entryStartIdx"] == end, f"{word}: begins at {entry['entryStartIdx']} instead of {end}")
        end += entry["numEntries"]
        check_key(entry, rows[entry["entryStartIdx"] : end])
    check(end == len(rows), f"{len(rows) - end} rows belong to no key")


def check_key(entry, rows):
    word = entry["word"]
    count, end_count, comics = KEYS[word]
    check_number(entry["wordPrior"], count / 8, f"{word}: wordPrior")
    check_number(entry["endWordScore"], end_count / count, f"{word}: endWordScore")
    check([row["comicId"] for row in rows] == [comic for comic, _, _ in comics], f"{word}: comics {rows} found")
    for row, (comic, comic_count, imagined) in zip(rows, comics):
        check(row["prob"] > 0, f"{word}: factor of {comic} isn't positive")
        factor = 1_000 * (comic_count + imagined) / (count + 1)
        check_number(row["prob"], factor, f"{word}: factor of {comic}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        model = convert(*sys.argv[1:4], folder)
    check_comics(model)
    check_keys(model)


if __name__ == "__main__":
    main()
