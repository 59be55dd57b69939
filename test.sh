#!/usr/bin/env bash
# Builds the library and runs its tests. With CI=true warnings are errors, and the tests run again under the address,
# undefined behaviour and thread sanitizers. --long adds what takes longer than that may.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

long=false
for argument in "$@"; do
    case $argument in
        --long) long=true ;;
        *) echo "usage: ./test.sh [--long]" >&2; exit 2 ;;
    esac
done

install_packages "${build_packages[@]}" "${test_packages[@]}"

# run_tests PRESET
run_tests() {
    ctest --preset "$1" --parallel 2 --output-on-failure
}

if [[ ${CI:-} == true ]]; then
    install_packages clang-format "${bench_packages[@]}"
    scripts/check-sources.sh
    build release -DKOVALIN_BUILD_TESTS=ON -DKOVALIN_BUILD_BENCHMARKS=ON -DKOVALIN_WARNINGS_AS_ERRORS=ON
    # Every public header compiles alone, without the precompiled ones.
    cmake --build --preset release --target all_verify_interface_header_sets >/dev/null
    # The benchmarks must build, run and agree with the plain method; what they print of speed is not judged here.
    build/bin/prefix_search_bench --quick
    build/bin/learned_search_bench --quick
    run_tests release
    for preset in asan tsan; do
        build "$preset"
        run_tests "$preset"
    done
else
    build release -DKOVALIN_BUILD_TESTS=ON -DKOVALIN_BUILD_BENCHMARKS=OFF
    run_tests release
fi

if $long; then
    install_packages "${bench_packages[@]}"
    build bench
    build/bench/bin/prefix_search_bench
    build/bench/bin/learned_search_bench
fi
