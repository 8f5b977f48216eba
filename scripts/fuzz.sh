#!/usr/bin/env bash
# Builds the libFuzzer targets of tests/fuzz with Clang into build-fuzz/ and
# runs each for SECONDS (default 600), from its checked-in seeds
# (tests/fuzz/corpus/<target>) and the corpus earlier runs grew
# (build-fuzz/corpus/<target>). Exits non-zero on any finding (crash,
# undefined behaviour, timeout, leak, out of memory); the input that shows
# it is left in build-fuzz/findings/<target>/, the log in build-fuzz/logs/.
#
#   scripts/fuzz.sh [SECONDS]
#   scripts/fuzz.sh --replay [DIR]   # each input of DIR/<target> once
#                                    # (default tests/fuzz/corpus, which
#                                    # holds every input that found a fault)
# FUZZ_TARGETS="fuzz_storm ..." runs some of them only.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

seconds=600
replay=""
if [ "${1:-}" = "--replay" ]; then
    replay=${2:-tests/fuzz/corpus}
elif [ -n "${1:-}" ]; then
    seconds=$1
fi
targets=(${FUZZ_TARGETS:-fuzz_uifile fuzz_properties fuzz_windowsettings fuzz_stylesheets fuzz_storm})

# The ordinary build's packages and Clang's (bootstrap lists both); when
# build/ is current this costs seconds.
bash scripts/bootstrap.sh

# Only the fuzzers and what they link: no tests, no benchmarks, no plugin.
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELMORA_FUZZ=ON -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=OFF >/dev/null
cmake --build build-fuzz --target fuzzers -j"$(( $(nproc) < 2 ? $(nproc) : 2 ))"

# Leaks per input are findings; Qt's process-lifetime caches are suppressed
# as in the sanitizer suite.
export ASAN_OPTIONS="detect_leaks=1:halt_on_error=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
export QT_QPA_PLATFORM=offscreen

failed=()
for t in "${targets[@]}"; do
    bin=build-fuzz/tests/fuzz/$t
    mkdir -p "build-fuzz/corpus/$t" "build-fuzz/findings/$t" build-fuzz/logs
    log=build-fuzz/logs/$t.log
    # A wipe may last 10 s; an input that takes 5 is stuck.
    args=(-timeout=5 -rss_limit_mb=4096 -artifact_prefix="build-fuzz/findings/$t/" -print_final_stats=1)
    [ -f "tests/fuzz/$t.dict" ] && args+=(-dict="tests/fuzz/$t.dict")
    start=$SECONDS
    if [ -n "$replay" ]; then
        bad=0 count=0
        for input in "$replay/$t"/*; do
            [ -f "$input" ] || continue
            count=$((count + 1))
            if ! "$bin" "${args[@]}" "$input" >"$log.one" 2>&1; then
                bad=$((bad + 1))
                cat "$log.one" >>"$log"
                echo "$t: FAILS $input" >&2
            fi
        done
        rm -f "$log.one"
        echo "$t: $count inputs replayed, $bad failing, $((SECONDS - start)) s"
        [ "$bad" -eq 0 ] || failed+=("$t")
        continue
    fi
    rc=0
    "$bin" "${args[@]}" -max_total_time="$seconds" "build-fuzz/corpus/$t" "tests/fuzz/corpus/$t" >"$log" 2>&1 || rc=$?
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    echo "$t: ${runs:-?} executions in $((SECONDS - start)) s, corpus $(ls "build-fuzz/corpus/$t" | wc -l) inputs"
    if [ "$rc" -ne 0 ]; then
        failed+=("$t")
        echo "$t: FINDING (exit $rc): $(ls -t "build-fuzz/findings/$t" | head -1 | sed "s|^|build-fuzz/findings/$t/|")" >&2
        grep -E -m1 -A14 'ERROR: |==FUZZ CHECK|runtime error' "$log" >&2 || tail -20 "$log" >&2
    fi
done

if ((${#failed[@]})); then
    echo "fuzz: findings in ${failed[*]} (logs in build-fuzz/logs/)" >&2
    exit 1
fi
echo "fuzz: no findings"
