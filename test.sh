#!/usr/bin/env bash
# Builds the library and runs its tests. With CI=true warnings are errors, the tests run again under the address, undefined
# behaviour and thread sanitizers, and the model reader is fuzzed for a minute. --long adds what takes longer than that may.
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

# run_tests PRESET [OPTION…]
run_tests() {
    local preset=$1
    shift
    ctest --preset "$preset" --parallel 2 --output-on-failure "$@"
}

# fuzz_model SECONDS: from a copy of the corpus, so that what the fuzzer adds stays in the build folder.
fuzz_model() {
    local work=build/fuzz/fuzz_model_run
    rm -rf "$work"
    mkdir -p "$work/corpus" "$work/findings"
    cp tests/fuzz/corpus/* "$work/corpus"
    echo "Fuzzing the model reader for $1 s"
    if ! build/fuzz/bin/fuzz_model -max_total_time="$1" -seed=1 -timeout=10 -rss_limit_mb=2048 -max_len=4096 \
        -dict=tests/fuzz/model.dict -print_final_stats=1 -artifact_prefix="$work/findings/" "$work/corpus" \
        >"$work/log" 2>&1; then
        tail -n 100 "$work/log" >&2
        echo "The fuzzer found something. To repeat it: build/fuzz/bin/fuzz_model $(echo "$work"/findings/*)" >&2
        return 1
    fi
    grep -F 'stat::number_of_executed_units' "$work/log"
}

# What runs with both sanitizers below, and learns little from an optimised build: half of its time.
sanitized='^(content|end_to_end|kits/|picker$|picker/ratio|platform/|telemetry)'

if [[ ${CI:-} == true ]]; then
    install_packages clang clang-format libclang-rt-dev "${bench_packages[@]}"
    scripts/check-sources.sh
    build release -DKOVALIN_BUILD_TESTS=ON -DKOVALIN_BUILD_BENCHMARKS=ON -DKOVALIN_WARNINGS_AS_ERRORS=ON \
        -DKOVALIN_TESTS_LEFT_OUT="$sanitized"
    # Every public header compiles alone, without the precompiled ones.
    cmake --build --preset release --target all_verify_interface_header_sets >/dev/null
    # The benchmarks must build, run and agree with the plain method; what they print of speed is not judged here.
    build/bin/prefix_search_bench --quick
    build/bin/learned_search_bench --quick
    build/bin/fusion_search_bench --quick
    build/bin/image_store_bench --quick
    build/bin/analytics_queue_bench --quick
    build/bin/sticker_grid_bench --quick
    build/bin/content_view_bench --quick
    build/bin/picker_start_bench --quick
    run_tests release --exclude-regex "$sanitized"
    for preset in asan tsan; do
        build "$preset"
        run_tests "$preset"
    done
    build fuzz
    fuzz_model 60
else
    build release -DKOVALIN_BUILD_TESTS=ON -DKOVALIN_BUILD_BENCHMARKS=OFF -DKOVALIN_TESTS_LEFT_OUT=
    run_tests release
fi

if $long; then
    install_packages "${bench_packages[@]}"
    build bench
    build/bench/bin/prefix_search_bench
    build/bench/bin/learned_search_bench
    build/bench/bin/fusion_search_bench
    build/bench/bin/image_store_bench
    build/bench/bin/analytics_queue_bench
    build/bench/bin/sticker_grid_bench
    build/bench/bin/content_view_bench
    build/bench/bin/picker_start_bench
fi
