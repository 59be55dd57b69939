#!/usr/bin/env bash
# Builds the libraries and their programs, and opens a chat window with the sticker picker in it, beside a development server in
# the same process. Without a display, or with --offscreen, a script plays in that window instead, and leaves pictures and events in
# build/demo/. --command-line shows the command line instead: a few searches over the example packs and the example model. --build
# stops after the build.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

what=window
if [[ -z ${DISPLAY:-} && -z ${WAYLAND_DISPLAY:-} ]]; then
    what=offscreen
fi
for argument in "$@"; do
    case $argument in
        --build) what=build ;;
        --offscreen) what=offscreen ;;
        --command-line) what=command-line ;;
        *) echo "usage: ./demo.sh [--build | --offscreen | --command-line]" >&2; exit 2 ;;
    esac
done

install_packages "${build_packages[@]}"
build release -DKOVALIN_BUILD_TESTS=OFF -DKOVALIN_BUILD_BENCHMARKS=OFF

# play: the script in a window that nobody sees.
play() {
    local out=build/demo script=examples/scripts/demo.txt
    rm -rf "$out"
    echo "Playing $script off screen:"
    build/bin/kovalin-host --script "$script" --out "$out" --content examples/content --offscreen --print |
        sed 's/^/    /'
    printf '\nPictures and events are in %s:\n' "$out"
    (cd "$out" && printf '    %s\n' *.png *.json log.txt)
}

case $what in
    build) exit ;;
    offscreen) play; exit ;;
    window)
        echo "The window is open; its log is below. What you can do there: log in, search, tap tags and stickers, type a message."
        exec build/bin/kovalin-host --content examples/content ;;
esac

kovalin=build/bin/kovalin
packs=examples/data/packs-emoji.json
model=examples/data/model-emoji.bin

# show COMMAND…: prints a command as one would type it.
show() {
    local word
    printf '\n$'
    for word in "$@"; do
        case $word in
            *[!A-Za-z0-9_./,=-]*) printf " '%s'" "$word" ;;
            *) printf ' %s' "$word" ;;
        esac
    done
    printf '\n'
}

# run COMMAND…: shows a command and what it prints.
run() {
    show "$@"
    "$@"
}

run "$kovalin" search --packs "$packs" --explain --limit 4 "happy" "red h" "thumbs u"
run "$kovalin" search --packs "$packs" --exact --limit 4 "love"
run "$kovalin" search --packs "$packs" --types 0,1 --json "pizza" "Birthday-CAKE!"

# Key strokes that extend each other become one search.
pushes='[["h",1],["he",1],["hey",1],["love",2],["hey!",1]]'
printf "\n$ echo '%s' | %s sequence\n" "$pushes" "$kovalin"
echo "$pushes" | "$kovalin" sequence

# What the search model makes of texts, and what it is made of.
run "$kovalin" predict --model "$model" --limit 4 "happy" "red heart"
run "$kovalin" suggest --model "$model" --limit 4 "hap"
run "$kovalin" words --model "$model" --json "A red HEART, please!"
run "$kovalin" model info --top 3 "$model"
