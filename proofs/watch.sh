# How long it takes until a change by another process is told, on the local disk and on a FUSE mount, whose changes
# from below bring no events; and that a save of one's own isn't told.
set -euo pipefail
. cmake/build.sh
[ "$(id -u)" -eq 0 ] || { echo "watch: needs root" >&2; exit 2; }
need_packages "${base_packages[@]}" bindfs
build_preset release proof_host
host=$PWD/build/release/bin/proof_host
work=$(mktemp -d)
trap 'umount "$work/mount" 2>/dev/null || true; rm -rf --one-file-system "$work"' EXIT
mkdir "$work/disk" "$work/mount"
bindfs --no-allow-other "$work/disk" "$work/mount"
echo "[Shared]" >"$work/disk/Ship.vcf"

slowest() { # FOLDER: the longest of five delays in ms
    local worst=0 delay changed told
    for value in 1 2 3 4 5; do
        : >"$work/told"
        "$host" watch "$1/Ship.vcf" 1 >"$work/told" &
        local watcher=$!
        until grep -q watching "$work/told"; do sleep 0.02; done
        sleep "0.$((value * 2))"
        changed=$("$host" change "$work/disk/Ship.vcf" other "$value$RANDOM")
        wait "$watcher" || { echo "watch: a change in $1 wasn't told once" >&2; return 1; }
        told=$(tail -n 1 "$work/told")
        delay=$((told - changed))
        [ "$delay" -le "$worst" ] || worst=$delay
    done
    echo "$worst"
}
disk=$(slowest "$work/disk")
fuse=$(slowest "$work/mount")
[ "$disk" -lt 2000 ] && [ "$fuse" -lt 2500 ] || { echo "watch: too late: $disk ms, $fuse ms"; exit 1; }
for folder in disk mount; do
    own=$("$host" change "$work/$folder/Ship.vcf" own "$RANDOM")
    [ "$own" = 0 ] || { echo "watch: a save of one's own was told $own times"; exit 1; }
done
echo "watch: a change by another told within $disk ms on the local disk, $fuse ms on a FUSE mount (slowest of 5 each); own saves never"
