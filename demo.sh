#!/usr/bin/env bash
# Builds the libraries and their programs, and answers a few searches over the example packs and the example model. --build
# stops after the build.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

only_build=false
for argument in "$@"; do
    case $argument in
        --build) only_build=true ;;
        *) echo "usage: ./demo.sh [--build]" >&2; exit 2 ;;
    esac
done

install_packages "${build_packages[@]}"
build release -DKOVALIN_BUILD_TESTS=OFF -DKOVALIN_BUILD_BENCHMARKS=OFF
if $only_build; then
    exit
fi

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
