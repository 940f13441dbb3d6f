# A bare Debian 12 (debootstrap, minbase), this tree cloned into it: ./run and ./test, one command each. Needs root.
set -euo pipefail
. proofs/bare.bash
need_root bare-root
started=$(date +%s)
make_bare_root bare
git clone -q . "$root/root/tree"
for command in ./run ./test; do in_root "cd tree && $command"; done
tests=$(grep -Eo '[0-9]+% tests passed.*' "$log" | tail -n 1)
echo "bare-root: ./run and ./test in a minbase root: $tests, $(($(date +%s) - started)) s in all"
