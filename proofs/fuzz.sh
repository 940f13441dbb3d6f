# Each fuzz target for a while (ORV_FUZZ_SECONDS, default 60), starting from its corpus.
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}" clang-14 libclang-rt-14-dev
build_preset fuzz
seconds=${ORV_FUZZ_SECONDS:-60}
line=""
for target in build/fuzz/bin/fuzz_*; do
    name=$(basename "$target")
    work=$(mktemp -d)
    if ! "$target" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$work/" "$work" \
        "fuzz/corpus/$name" >"$work.log" 2>&1; then
        tail -n 30 "$work.log"
        exit 1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work.log")
    line="$line $name $runs runs;"
    rm -rf "$work" "$work.log"
done
echo "fuzz: $seconds s each without a finding:$line"
