# Each fuzz target for a while, starting from its corpus: grids and survey data, of which users open what others send
# them, for 120 s, the others for 60 s; ORV_FUZZ_SECONDS sets it for all. ORV_FUZZ_TARGETS names some of them.
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}" clang-14 libclang-rt-14-dev
read -ra names <<<"${ORV_FUZZ_TARGETS:-}"
build_preset fuzz "${names[@]}"
[ ${#names[@]} -gt 0 ] || mapfile -t names < <(cd build/fuzz/bin && ls -d fuzz_*)

seconds_of() {
    case $1 in
        fuzz_gtx | fuzz_grid_* | fuzz_svp | fuzz_tide | fuzz_log_* | fuzz_file_set) echo 120 ;;
        *) echo 60 ;;
    esac
}

line=""
for name in "${names[@]}"; do
    seconds=${ORV_FUZZ_SECONDS:-$(seconds_of "$name")}
    work=$(mktemp -d)
    if ! "build/fuzz/bin/$name" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$work/" "$work" \
        "fuzz/corpus/$name" >"$work.log" 2>&1; then
        tail -n 30 "$work.log"
        exit 1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work.log")
    line="$line $name $seconds s, $runs runs;"
    rm -rf "$work" "$work.log"
done
echo "fuzz: without a finding:$line"
