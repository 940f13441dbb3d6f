# 8 writers and 2 readers under the thread sanitizer, 1,000,000 messages (ORV_MESSAGES), with a change of day and with a
# disk that fills up: every message is in the files, in the order of the ring.
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}"
build_preset tsan housekeeping_tests
export ORV_MESSAGES=${ORV_MESSAGES:-1000000}
log=$(mktemp)
trap 'rm -f "$log"' EXIT
started=$(date +%s)
build/tsan/bin/housekeeping_tests --gtest_filter='ManyThreads.*' >"$log" 2>&1 || { tail -n 40 "$log"; exit 1; }
echo "messages: $(sed -nE 's/^\[  PASSED  \] (.*)\./\1/p' "$log") of $ORV_MESSAGES messages each under tsan, $(($(date +%s) - started)) s"
