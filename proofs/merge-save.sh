# Four processes over two FUSE mounts of one folder, neither of which forwards locks: 2,000 merge saves of their own
# items, with readers beside them. Then killed holders: one whose end can be seen, one as on another computer.
set -euo pipefail
. cmake/build.sh
[ "$(id -u)" -eq 0 ] || { echo "merge-save: needs root" >&2; exit 2; }
need_packages "${base_packages[@]}" bindfs
build_preset release proof_host
host=$PWD/build/release/bin/proof_host
work=$(mktemp -d)
trap 'umount "$work/one" "$work/two" 2>/dev/null || true; rm -rf --one-file-system "$work"' EXIT
mkdir "$work/disk" "$work/one" "$work/two"
bindfs --no-allow-other "$work/disk" "$work/one"
bindfs --no-allow-other "$work/disk" "$work/two"
echo "[Shared]" >"$work/disk/Ship.prj"
"${ORVCFG:-build/release/bin/orvcfg}" -q config sign "$work/disk/Ship.prj" >/dev/null

started=$(date +%s%N)
pids=() readers=()
for mount in one two; do
    "$host" read "$work/$mount/Ship.prj" "$work/stop" >"$work/read-$mount" &
    readers+=($!)
    for name in a b; do
        "$host" save "$work/$mount/Ship.prj" "$mount.$name." 500 &
        pids+=($!)
    done
done
for pid in "${pids[@]}"; do wait "$pid" || { echo "merge-save: a save failed"; touch "$work/stop"; exit 1; }; done
milliseconds=$(( ($(date +%s%N) - started) / 1000000 ))
touch "$work/stop"
for pid in "${readers[@]}"; do wait "$pid" || { cat "$work"/read-*; echo "merge-save: torn reads"; exit 1; }; done
items=$("$host" count "$work/disk/Ship.prj")
[ "$items" -eq 2000 ] || { echo "merge-save: $items of 2000 items are left"; exit 1; }
read -r reads refused < <(awk '{ n += $1; r += $3 } END { print n, r }' "$work"/read-*)

killed() { # in what surroundings the holder runs
    rm -f "$work/held"
    "$@" "$host" hold "$work/one/Ship.prj" >"$work/held" &
    local runner=$!
    until grep -q held "$work/held"; do sleep 0.02; done
    for child in $(pgrep -P "$runner") "$runner"; do kill -9 "$child" 2>/dev/null || true; done
    wait "$runner" 2>/dev/null || true
    "$host" take "$work/two/Ship.prj"
}
near=$(killed env)
far=$(killed unshare --pid --fork)
echo "merge-save: 2000 saves by 4 processes over 2 FUSE mounts in $milliseconds ms, none lost; $reads reads beside them, 0 torn, $refused refused;" \
    "a killed holder's lock taken over after $near ms, after $far ms where its end can't be seen"
