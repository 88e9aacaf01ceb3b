#!/usr/bin/env bash
# Installs a build, moves the tree, and builds and runs the sample clients against it, outside the project: by CMake and
# by pkg-config. Then the same tree by way of the packages.
#
#     test_installed_sdk.sh <build folder> <samples> <compiler> <options of the compiler>
set -eu
build=$1 samples=$2 compiler=$3 options=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export GS_Logger_Path=$work/Logs

cmake --install "$build" --prefix "$work/installed" >/dev/null
mv "$work/installed" "$work/moved"
sdk=$work/moved
if grep -rIl -e "$build" -e "$work/installed" -e "$(dirname "$(dirname "$samples")")" "$sdk"; then
    echo "these know where they were built or installed" >&2
    exit 1
fi

cp -r "$samples" "$work/samples"
cd "$work/samples"
cmake -S . -B build -DCMAKE_PREFIX_PATH="$sdk" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$options" >/dev/null
cmake --build build -j 2 >/dev/null
ctest --test-dir build --output-on-failure

export PKG_CONFIG_PATH=$sdk/lib/pkgconfig
module=$(pkg-config --variable=module orv-action-manager)
expect() {
    local sample=$1
    # shellcheck disable=SC2046,SC2086
    "$compiler" $options "$sample.cpp" -o "$sample" $(pkg-config --cflags --libs orv-action-manager)
    diff <(printf "$2") <("./$sample" "$module")
}
expect RegularAction "call 1\ncall 2\ncall 3\ncall 4\ncall 5\n"
expect ForcedAction "started\nstopped\n"
expect TriggerStrategy "nothing changed: no run\na valve was added: run\n"

"$sdk/bin/ActionHost" --every 100ms --duration 300ms

cpack --config "$build/CPackConfig.cmake" -B "$work/packages" >/dev/null
version=$("$sdk/bin/ActionHost" --version | cut -d' ' -f2)
dpkg-deb -f "$work"/packages/orv-action-manager-dev_*.deb Depends | grep -F "orv-action-manager (= $version)"
for package in "$work"/packages/*.deb; do
    dpkg-deb -x "$package" "$work/root"
    [ "$(dpkg-deb -f "$package" Version)" = "$version" ]
done
diff -r "$sdk/include" "$work/root/usr/include"
"$work/root/usr/bin/ActionHost" --every 100ms --duration 300ms
