#!/usr/bin/env bash
# install_test.sh CMAKE BUILD_DIRECTORY COMPILER FLAGS
#
# Installs a build into a temporary prefix and builds and runs the consumer beside this script
# against it: through find_package(), and through pkg-config with a plain compiler call.
set -euo pipefail

cmake=$1 build=$2 compiler=$3 flags=$4
consumer=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/consumer
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Moved after it was installed: no file of the package may hold the place.
"$cmake" --install "$build" --prefix "$work/installed" >"$work/log"
prefix=$work/moved
mv "$work/installed" "$prefix"

echo "== find_package"
"$cmake" -S "$consumer" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags"
"$cmake" --build "$work/build"
"$work/build/consumer" "$work/find_package"

echo "== pkg-config"
pc=$(find "$prefix" -name kxboxlibrary.pc)
libraries=$(dirname "$(dirname "$pc")")
export PKG_CONFIG_PATH=${pc%/*}
# Unquoted on purpose: pkg-config gives words.
"$compiler" -std=c++17 $flags "$consumer/main.cpp" -o "$work/consumer" \
    $(pkg-config --cflags --libs kxboxlibrary) -Wl,-rpath,"$libraries"
"$work/consumer" "$work/pkg-config"

echo "== the tool"
"$prefix/bin/kxbox" new "$work/tool.bxl"
"$prefix/bin/kxbox" info "$work/tool.bxl" | grep -x 'title       tool'
test -s "$prefix/share/man/man1/kxbox.1"
bash -n "$prefix/share/bash-completion/completions/kxbox"
