# File history and disk space manager over ten years (ORV_SIMULATED_DAYS) beside models of them, on a clock and a disk of
# the test's own.
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}"
build_preset release housekeeping_tests
export ORV_SIMULATED_DAYS=${ORV_SIMULATED_DAYS:-3653}
log=$(mktemp)
trap 'rm -f "$log"' EXIT
started=$(date +%s)
build/release/bin/housekeeping_tests --gtest_filter='TenYears.*' >"$log" 2>&1 || { tail -n 40 "$log"; exit 1; }
echo "ten-years: $ORV_SIMULATED_DAYS days agree with their models, $(($(date +%s) - started)) s"
