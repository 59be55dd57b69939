#!/usr/bin/env bash
# What the compiler doesn't see: the form of the sources, and includes that would go round the layers.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t sources < <(git ls-files 'src/*.cpp' 'src/*.h' 'apps/*.cpp' 'apps/*.h' 'bench/*.cpp' 'bench/*.h' \
    'tests/*.cpp' 'tests/*.h' 'examples/*.cpp')
clang-format --dry-run --Werror "${sources[@]}"

if grep -nE '#include "\.\./' "${sources[@]}"; then
    echo "Includes are written from src, never relative to the file." >&2
    exit 1
fi
if grep -nE 'invokeMethod|QtConcurrent|QSemaphore|QueuedConnection' "${sources[@]}" | grep -v '^src/platform/dispatch/'; then
    echo "Work moves between threads through platform/dispatch alone." >&2
    exit 1
fi
