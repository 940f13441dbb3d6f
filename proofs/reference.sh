# The reference of all headers and documents by Doxygen, which fails at its first warning.
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}" doxygen
cmake --preset release >/dev/null  # which may have been configured without it
build_preset release reference
echo "reference: $(find build/release/reference/html -name '*.html' ! -name '*-members.html' | wc -l) pages without a warning"
