# The packages in a bare Debian 12 (debootstrap, minbase): installed by apt with what they depend on, the demonstration
# run, manual pages and completion tried, every header read by a compiler, the examples built out of tree by CMake and
# one by pkg-config, and the Python example run. Needs root.
set -euo pipefail
. cmake/build.sh
. proofs/bare.bash
need_root package
need_packages "${base_packages[@]}" dpkg-dev file
started=$(date +%s)
build_preset release
packages=build/release/packages
rm -rf "$packages"
cpack --config build/release/CPackConfig.cmake -B "$packages" >build/cpack.log 2>&1 || { cat build/cpack.log; exit 1; }
make_bare_root package
mkdir -p "$root/packages" "$root/root/tree"
cp "$packages"/*.deb "$root/packages/"
cp -r examples "$root/root/"
cp tests/grids/nlgeo2018.gtx "$root/root/"

# What runs programs, without a compiler in sight.
in_root "apt-get update -qq && apt-get install -y -qq --no-install-recommends /packages/liborvconfigure0_*.deb /packages/orvcfg_*.deb"
in_root "orvcfg demo && ! command -v g++"
grep -q 'Geoid usable    yes' "$log"
in_root "apt-get install -y -qq --no-install-recommends man-db bash-completion"
in_root "man orvcfg-geoid-eval | grep -q 'Height separations' && man orvcfg >/dev/null"
in_root "set +u; source /usr/share/bash-completion/bash_completion; _completion_loader orvcfg || true; complete -p orvcfg &&
    COMP_WORDS=(orvcfg geoid ev); COMP_CWORD=2; _orvcfg; [ \"\${COMPREPLY[*]}\" = eval ]"

# What a developer adds. All headers in one source shows one that lacks something it needs.
in_root "apt-get install -y -qq --no-install-recommends /packages/liborvconfigure-dev_*.deb g++ cmake make pkg-config"
in_root "cd /usr/include/orvconfigure && find . -name '*.h' | sed 's/.*/#include \"&\"/' >/root/all.cpp &&
    g++ -std=c++20 -fsyntax-only -Wall -Werror -I. /root/all.cpp"
in_root "cmake -S examples/host -B host/build && cmake --build host/build &&
    cmake -S examples -B examples/build && cmake --build examples/build"
in_root "g++ examples/host/host.cpp \$(pkg-config --cflags --libs orvconfigure) -o host/by-pkg-config"
in_root "orvcfg init site && orvcfg --system site/system geoid add nlgeo2018.gtx &&
    orvcfg --system site/system project create Harbour --title 'Harbour basin' --group Netherlands \
        --coord-system 'RD New - NAP 2018' --geoid GeoidModelRDNAP2018 --geoid-file nlgeo2018.gtx"
for host in build/host by-pkg-config; do
    in_root "host/$host site/system Harbour | tee said && grep -q 'separation: 42.1' said"
done

# The same height from Python.
in_root "apt-get install -y -qq --no-install-recommends /packages/python3-orvconfigure_*.deb"
in_root "python3 examples/python/survey_day.py site/system Harbour | tee said && grep -q 'is run line L001' said && grep -q '7.955 m' said"

in_root "apt-get purge -y -qq python3-orvconfigure orvcfg liborvconfigure-dev liborvconfigure0"
in_root "! find /usr -path '*orv*' -not -path '*/perl*' | grep -i orv"
headers=$(grep -c . "$root/root/all.cpp")
sizes=$(du -ck "$packages"/*.deb | tail -n 1 | cut -f 1)
echo "package: $(ls "$packages"/*.deb | wc -l) packages of $sizes kB in a minbase root: demonstration, manual pages, completion, $headers headers, examples by CMake, by pkg-config and in Python, $(($(date +%s) - started)) s in all"
