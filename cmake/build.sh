# Sourced by run, test and prove: installs what is missing and builds a preset. Quick when nothing has changed.

need_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q '^ii' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "Some packages are missing. Install them first:" >&2
        echo "  sudo apt-get update && sudo apt-get install -y --no-install-recommends ${missing[*]}" >&2
        exit 2
    fi
    echo "Installing ${missing[*]}" >&2
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq >&2
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# build_preset PRESET [TARGET...]: configures once, then builds; the output is shown only when it fails.
build_preset() {
    local preset=$1 log
    shift
    log=build/$preset.log
    mkdir -p build
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; return 2; }
    cmake --build "build/$preset" ${1:+--target "$@"} >"$log" 2>&1 || { tail -n 60 "$log" >&2; return 2; }
}

mapfile -t base_packages < <(grep -v '^#' cmake/packages.txt)
