# A published grid, added by the tool, must give the heights that PROJ gives: 1,000 positions inside to 0.1 mm; positions
# outside are refused with a reason and exit 1, a missing grid names file and folder.
set -euo pipefail
orvcfg=$1 grid=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
system=$work/inst/system
"$orvcfg" -q init "$work/inst" >"$work/init.out"
"$orvcfg" -q --system "$system" geoid add "$grid" >"$work/add.out"
fail() { echo "$*" >&2; exit 1; }

LC_ALL=C awk 'BEGIN { srand(2018); for (i = 0; i < 1000; i++) printf "%.9f %.9f\n", 51 + rand() * 4.5, 3 + rand() * 4 }' \
    >"$work/positions"
"$orvcfg" --system "$system" geoid eval --decimals 6 --model 28 --file "$(basename "$grid")" <"$work/positions" \
    >"$work/ours" || fail "refused: $(grep '#' "$work/ours" | head -n 3)"
awk '{ print $2, $1, 0, 0 }' "$work/positions" | cct -d 9 +proj=vgridshift +grids="$grid" +multiplier=1 >"$work/peer"
paste -d' ' "$work/ours" "$work/peer" | LC_ALL=C awk '
    { d = $3 - $6; if (d < 0) d = -d; if (d > worst) worst = d; n++ }
    END { printf "%d positions, largest difference %.7f m\n", n, worst; exit !(n == 1000 && worst <= 0.0001) }' ||
    fail "heights differ from PROJ"

status=0
printf '60 4\n52 4\n50 -3\n' | "$orvcfg" -q --system "$system" geoid eval --model 28 --file "$(basename "$grid")" \
    >"$work/outside" || status=$?
[ $status -eq 1 ] || fail "outside: exit $status"
[ "$(grep -c '\* *# the position lies outside' "$work/outside")" -eq 2 ] || fail "outside: $(cat "$work/outside")"

status=0
"$orvcfg" --system "$system" geoid eval --model 28 --file missing.gtx 52 4 >"$work/missing" 2>&1 || status=$?
[ $status -ne 0 ] || fail "missing: exit 0"
grep -q 'missing.gtx' "$work/missing" && grep -q 'Netherlands' "$work/missing" || fail "missing: $(cat "$work/missing")"
