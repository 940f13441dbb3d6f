# The packages, without an error of the packaging rules, in a bare Debian 12 (debootstrap, minbase): installed by apt with
# what they depend on, the demonstration run, manual pages and completion tried, all commands of the tutorial run, every
# header read by a compiler, the examples built out of tree by CMake and one by pkg-config, and the Python example run.
# Needs root.
set -euo pipefail
. cmake/build.sh
. proofs/bare.bash
need_root package
need_packages "${base_packages[@]}" dpkg-dev file lintian
started=$(date +%s)
build_preset release
packages=build/release/packages
rm -rf "$packages"
cpack --config build/release/CPackConfig.cmake -B "$packages" >build/cpack.log 2>&1 || { cat build/cpack.log; exit 1; }
lintian --allow-root --fail-on error "$packages"/*.deb >build/lintian.log 2>&1 || { cat build/lintian.log; exit 1; }
make_bare_root package
mkdir -p "$root/packages"
cp "$packages"/*.deb "$root/packages/"

# What runs programs, without a compiler in sight.
in_root "apt-get update -qq && apt-get install -y -qq --no-install-recommends /packages/liborvconfigure0_*.deb /packages/orvcfg_*.deb"
in_root "orvcfg demo && ! command -v g++"
grep -q 'Geoid usable    yes' "$log"
in_root "apt-get install -y -qq --no-install-recommends man-db bash-completion"
in_root "man orvcfg-geoid-eval | grep -q 'Height separations' && man orvcfg >/dev/null"
in_root "set +u; source /usr/share/bash-completion/bash_completion; _completion_loader orvcfg || true; complete -p orvcfg &&
    COMP_WORDS=(orvcfg geoid ev); COMP_CWORD=2; _orvcfg; [ \"\${COMPREPLY[*]}\" = eval ]"

# What a developer does first: every command of the tutorial, word for word.
in_root "cd /packages && $(sed -n '/^```sh$/,/^```$/{/^```/d;p}' docs/tutorial.md)"
[ "$(grep -c '^separation: 41.98' "$log")" -eq 2 ]  # in C++ and in Python

# All headers in one source show one that lacks something it needs.
in_root "apt-get install -y -qq --no-install-recommends pkg-config"
in_root "cd /usr/include/orvconfigure && find . -name '*.h' | sed 's/.*/#include \"&\"/' >/root/all.cpp &&
    g++ -std=c++20 -fsyntax-only -Wall -Werror -I. /root/all.cpp"
examples=/usr/share/doc/liborvconfigure-dev/examples
in_root "cmake -S $examples -B examples && cmake --build examples && examples/example_vessel /tmp/survey/system Maasvlakte"
in_root "g++ $examples/host/host.cpp \$(pkg-config --cflags --libs orvconfigure) -o by-pkg-config &&
    ./by-pkg-config /tmp/survey/system Maasvlakte | grep -q '^separation: 41.98'"
in_root "python3 /usr/share/doc/python3-orvconfigure/examples/survey_day.py /tmp/survey/system Maasvlakte | tee said &&
    grep -q 'is run line L001' said"

in_root "apt-get purge -y -qq python3-orvconfigure orvcfg liborvconfigure-dev liborvconfigure0"
in_root "! find /usr -path '*orv*' -not -path '*/perl*' | grep -i orv"
headers=$(grep -c . "$root/root/all.cpp")
sizes=$(du -ck "$packages"/*.deb | tail -n 1 | cut -f 1)
echo "package: $(ls "$packages"/*.deb | wc -l) packages of $sizes kB in a minbase root: demonstration, manual pages, completion, tutorial, $headers headers, examples by CMake, by pkg-config and in Python, $(($(date +%s) - started)) s in all"
