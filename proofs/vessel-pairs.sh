# Random pairs of vessels pushed to a common file and pulled from it: what holds for every pair (see the test) holds for
# 10,000 of them, of which the tests take the first 200.
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}"
build_preset release project_tests
pairs=10000
started=$(date +%s%N)
if ! report=$(ORV_VESSEL_PAIRS=$pairs build/release/bin/project_tests --gtest_filter='*WhatHoldsForEveryPair' 2>&1); then
    printf '%s\n' "$report" | grep -v '^\[' | head -n 40 >&2
    exit 1
fi
grep -q '1 test from 1 test suite ran' <<<"$report" || { echo "vessel-pairs: the test didn't run" >&2; exit 1; }
milliseconds=$(( ($(date +%s%N) - started) / 1000000 ))
echo "vessel-pairs: every invariant of push and pull held for $pairs random pairs of vessels, in $((milliseconds / 1000)) s"
