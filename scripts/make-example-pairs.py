#!/usr/bin/env python3
"""Writes examples/content/pairs.tsv: what people type, the sticker that they choose, and how often.

Texts come from the stickers' tags (packs.json) and from hand-written phrases (phrases.tsv); around them this adds what people
add: a sign, an emoji, capitals, a slip of the finger. Nothing is left to chance: the same files give the same pairs.

    scripts/make-example-pairs.py [--check]
"""

import argparse
import json
import pathlib
import sys
import zlib

# What people put behind a text. None of it is a word, so that a model learns no nonsense from it.
SIGNS = ("!", "!!", "!!!", "...", "?", " :)", " :(", " ;)")
EMOJI = ("😀", "😂", "❤️", "🎉", "😢", "😡", "👍", "🙏", "😴", "🍕", "☕", "🎂", "✨", "💪", "🌈", "😍")

# How often a text is typed.
TAG_WEIGHT = 24
STAR_WEIGHT = 90
PHRASE_WEIGHT = 40
SLIP_WEIGHT = 2


def stable(text):
    """A number that follows from the text alone."""
    return zlib.crc32(text.encode("utf-8"))


def slips(text):
    """The text with one letter missing, or changing places with its neighbour, as hasty fingers do."""
    places = [i for i in range(1, len(text) - 1) if text[i].isalpha() and text[i + 1].isalpha()]
    if len(text) < 6 or not places:
        return []
    place = places[stable(text) % len(places)]
    return [text[:place] + text[place + 1 :], text[:place] + text[place + 1] + text[place] + text[place + 2 :]]


def around(text):
    """The text with something of no meaning around it."""
    number = stable(text)
    yield text + SIGNS[number % len(SIGNS)]
    yield f"{text} {EMOJI[(number // 16) % len(EMOJI)]}"
    yield text.capitalize()
    yield text.upper()


def spread(texts_with_weights):
    """All that is typed for one sticker, with counts; the first weight of a text that comes twice is the one that counts."""
    counts = {}
    for text, weight in texts_with_weights:
        counts.setdefault(text, weight)
        for other in around(text):
            counts.setdefault(other, max(1, weight // 10))
        for slip in slips(text) if weight == STAR_WEIGHT else ():
            counts.setdefault(slip, SLIP_WEIGHT)
    return counts


def texts_of_tags(tags):
    """What can be typed of tags: those for the system alone, with "#" or ":", aren't."""
    for tag in tags:
        if tag.startswith("#") or ":" in tag:
            continue
        is_star = tag.endswith("*")
        yield (tag[:-1] if is_star else tag), (STAR_WEIGHT if is_star else TAG_WEIGHT)


def read_phrases(path):
    phrases = {}
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), start=1):
        fields = line.split("\t")
        if len(fields) != 2:
            sys.exit(f"{path}: line {number}: must have two fields, template id and phrases, with a tab between them")
        phrases[fields[0]] = [phrase.strip() for phrase in fields[1].split(";")]
    return phrases


def pairs(content):
    """The lines of pairs.tsv."""
    phrases = read_phrases(content / "phrases.tsv")
    packs = json.loads((content / "packs.json").read_text(encoding="utf-8"))["packs"]
    for pack in packs:
        for sticker in pack["stickers"]:
            if "tags" not in sticker:  # stands in another pack with its tags
                continue
            texts = list(texts_of_tags(sticker["tags"]))
            texts += [(phrase, PHRASE_WEIGHT) for phrase in phrases.pop(sticker["template_id"], [])]
            for text, count in spread(texts).items():
                yield f"{text}\t{sticker['comic_id']}\t{count}\n"
    if phrases:
        sys.exit(f"{content / 'phrases.tsv'}: no sticker is drawn from the template \"{next(iter(phrases))}\"")


def main():
    arguments = argparse.ArgumentParser(description="Writes examples/content/pairs.tsv.")
    arguments.add_argument("--check", action="store_true", help="write nothing; fail if the file isn't what would be written")
    content = pathlib.Path(__file__).resolve().parent.parent / "examples" / "content"
    path = content / "pairs.tsv"
    text = "".join(pairs(content))
    if not arguments.parse_args().check:
        path.write_bytes(text.encode("utf-8"))
    elif path.read_bytes() != text.encode("utf-8"):
        sys.exit(f"{path}: is not what scripts/make-example-pairs.py makes of packs.json and phrases.tsv")


if __name__ == "__main__":
    main()
