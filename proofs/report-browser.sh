# A real browser shows the page of the sample project, with a gauge that has gaps put beside it: no word on its console,
# nothing asked for beside the page itself. Leaves a screenshot in build/report.png (or ORV_SCREENSHOT).
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}" chromium fonts-dejavu-core pngquant
build_preset release orvcfg ORVCoordSys
program=$PWD/build/release/bin/orvcfg
picture=${ORV_SCREENSHOT:-$PWD/build/report.png}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
TMPDIR=$work "$program" demo --keep --quiet >/dev/null
system=$(echo "$work"/orvcfg-demo-*/system)
awk 'BEGIN { for (i = 0; i < 1152; ++i) { h = i / 12; if (h > 31 && h < 33.7 || h > 50 && h < 50.9) continue
    printf "2024-03-%02d %02d:%02d,%.3f\n", 4 + int(h / 24), int(h) % 24, i % 12 * 5,
           0.05 + 0.9 * cos(0.5059 * h - 1.3) + 0.15 * cos(1.0118 * h) } }' >"$work/quay.csv"
"$program" --system "$system" tide import Quay "$work/quay.csv" --zone UTC --create --quiet >/dev/null
"$program" --system "$system" report --output "$work/report.html"

browse() { # PAGE OPTION...: its output in $work/out, its log in $work/log, its requests in $work/net
    local page=$1
    shift
    chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --enable-logging=stderr --no-first-run \
        --host-resolver-rules="MAP * ~NOTFOUND" --disable-background-networking --disable-component-update --disable-sync --user-data-dir="$work/profile" \
        --log-net-log="$work/net" "$@" "file://$page" >"$work/out" 2>"$work/log" ||
        { tail -n 20 "$work/log" >&2; exit 1; }
}
complaints() { # console lines, and addresses that were asked for
    grep -c ':CONSOLE' "$work/log" || true
    grep -E '"initiator":"(null|file:)' "$work/net" | grep -oE '"url":"(https?|ftp|wss?):[^"]*' | sort -u || true
}
# What nobody would notice is no check: a page with a script that fails and a picture from elsewhere must show.
sed 's|</body>|<script>nothing()</script><img src="http://127.0.0.1:9/x.png"/></body>|' "$work/report.html" >"$work/bad.html"
browse "$work/bad.html" --dump-dom
[ "$(complaints | head -n 1)" -ge 1 ] && complaints | grep -q 127.0.0.1 ||
    { echo "the browser doesn't tell of a broken page" >&2; exit 1; }
sed 's|</body>|<script>document.title = document.documentElement.scrollHeight</script></body>|' "$work/report.html" \
    >"$work/measure.html"
browse "$work/measure.html" --window-size=1200,1000 --dump-dom
height=$(sed -nE 's|.*<title>([0-9]+)</title>.*|\1|p' "$work/out" | head -n 1)
browse "$work/report.html" --window-size="1200,$height" --screenshot="$work/report.png"
[ "$(complaints)" = 0 ] || { echo "the page has complaints:" >&2; complaints >&2; grep ':CONSOLE' "$work/log" >&2; exit 1; }
mkdir -p "$(dirname "$picture")"
pngquant --force --strip --quality 60-95 --output "$picture" 48 -- "$work/report.png"
echo "report-browser: a page of $(wc -c <"$work/report.html") bytes, $height pixels high, no complaints; $picture"
