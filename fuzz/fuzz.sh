#!/usr/bin/env bash
# Builds Glowdeck's fuzz targets with clang, and runs them on the seed corpora written for them.
#
#   fuzz/fuzz.sh build <build-dir>                       configure and build the instrumented tree
#   fuzz/fuzz.sh run <build-dir> <target> <seconds> [libFuzzer options...]
#                                                        run one target (fuzz_lights, fuzz_groups, fuzz_scenes,
#                                                        fuzz_pairing, fuzz_discovery, fuzz_settings,
#                                                        fuzz_events)
#
# A run starts from fuzz/corpus/<name> and keeps what it learns in <build-dir>/corpus/<name>, so later runs
# start further on; inputs that crash land in <build-dir>/findings/. Exit status: 0 nothing found, 1 a
# finding or a failure, 77 no clang (skipped).
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
root="$(dirname "$here")"

command=${1:?usage: fuzz.sh build|run <build-dir> ...}
build=${2:?usage: fuzz.sh build|run <build-dir> ...}

case "$command" in
build)
    command -v clang++ >/dev/null || { echo "fuzz.sh: clang++ is not installed; skipped"; exit 77; }
    launcher=()
    command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    cmake -S "$root" -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DGLOWDECK_FUZZ=ON -DGLOWDECK_BUILD_APP=OFF -DGLOWDECK_BUILD_TESTS=OFF \
        -DGLOWDECK_BUILD_BENCHMARKS=OFF "${launcher[@]}" >/dev/null
    # Two jobs at most: the machines this runs on have two cores, shared with the rest of the suite.
    cmake --build "$build" --parallel 2 --target fuzz_lights fuzz_groups fuzz_scenes fuzz_pairing \
        fuzz_discovery fuzz_settings fuzz_events
    ;;
run)
    target=${3:?usage: fuzz.sh run <build-dir> <target> <seconds>}
    seconds=${4:?usage: fuzz.sh run <build-dir> <target> <seconds>}
    shift 4
    [ -x "$build/fuzz/$target" ] || { echo "fuzz.sh: $build/fuzz/$target is not built"; exit 1; }
    name=${target#fuzz_}
    corpus="$build/corpus/$name"
    mkdir -p "$corpus" "$build/findings"
    # -timeout: one input may take a second, not ten; -rss_limit_mb: a 16 MiB answer needs far less.
    exec "$build/fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -dict="$here/json.dict" -artifact_prefix="$build/findings/$name-" -print_final_stats=1 \
        "$@" "$corpus" "$here/corpus/$name"
    ;;
*)
    echo "usage: fuzz.sh build|run <build-dir> ..." >&2
    exit 1
    ;;
esac
