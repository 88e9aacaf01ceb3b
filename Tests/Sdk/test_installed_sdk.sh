#!/usr/bin/env bash
# Installs a build, moves the tree, and builds and runs the sample clients against it, outside the project, with CMake
# and with pkg-config. Then checks that the packages contain the same tree.
#
#     test_installed_sdk.sh <build folder> <source folder> <compiler> <options of the compiler>
set -eu
build=$1 source=$2 compiler=$3 options=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export GS_Logger_Path=$work/Logs

cmake --install "$build" --prefix "$work/installed" >/dev/null
mv "$work/installed" "$work/moved"
sdk=$work/moved
if grep -rIl -e "$build" -e "$source" -e "$work" "$sdk"; then
    echo "these contain the path of the build or of the installation" >&2
    exit 1
fi
# Each binary is checked separately: in a process, one finds the libraries that another has loaded.
for binary in "$sdk"/bin/* "$sdk"/lib/*.so "$sdk"/lib/*/*.so; do
    if ldd "$binary" | grep -E 'lib(OrvPlatform|NodeFabric|ModuleBroker)\.so' | grep -vF "=> $sdk/"; then
        echo "$binary does not find its libraries in the tree" >&2
        exit 1
    fi
done

# Debian's /lib is a link to /usr/lib: the package may be found by either name.
mkdir "$work/linked"
ln -s "$sdk/lib" "$work/linked/lib"
cp -r "$source/Docs/Samples" "$work/samples"
cd "$work/samples"
cmake -S . -B "$work/build" -DCMAKE_PREFIX_PATH="$work/linked" \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$options" >/dev/null
cmake --build "$work/build" -j 2 >/dev/null
ctest --test-dir "$work/build" --output-on-failure

export PKG_CONFIG_PATH=$sdk/lib/pkgconfig
module=$(pkg-config --variable=module orv-action-manager)
[ -f "$(dirname "$module")/SharedFaultTexts.dll" ]
version=$("$sdk/bin/ActionHost" --version | cut -d' ' -f2)
readelf -n "$module" | grep -F "\"version\":\"$version\""
readelf -d "$sdk/lib/libNodeFabric.so" | grep -F "soname: [libNodeFabric.so.1]"
expect() {
    local sample=$1
    # shellcheck disable=SC2046,SC2086
    "$compiler" $options $warnings "$sample.cpp" -o "$sample" $(pkg-config --cflags --libs orv-action-manager)
    diff <(printf "$2") <("./$sample" "$module" | sed "${3:-}")
}
warnings="-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Werror"
expect RegularAction "call 1\ncall 2\ncall 3\ncall 4\ncall 5\n"
expect ForcedAction "started\nstopped\n"
expect TriggerStrategy "nothing changed: no run\na valve was added: run\nthe pump was removed: no run\n"
expect ConfigurationService "started\nstopped\nno watch is left\n"
cp "$source/Tests/Sdk/Refusals.cpp" .
expect Refusals "$(cat "$source/Tests/Sdk/Refusals.txt")\n" 's/\[.*\]/[ADDRESSES]/'

# Every example of the documents and of the headers.
python3 "$source/Tests/Sdk/build_examples.py" "$source" "$compiler" "$options"

# The installed headers are exactly the public ones, and each compiles without the others and without a warning.
headers=$sdk/include/OrvActionManager
diff <(find "$source"/*/Include "$source"/StandIns/*/Include -name '*.h' -printf '%P\n' | sort) \
    <(find "$headers" -type f -printf '%P\n' | sort)
# shellcheck disable=SC2046,SC2086
find "$headers" -type f -print0 | xargs -0 -n 1 -P 2 \
    "$compiler" $(pkg-config --cflags orv-action-manager) $warnings -fsyntax-only -x c++ /dev/null -include

"$sdk/bin/ActionHost" --every 100ms --duration 300ms
