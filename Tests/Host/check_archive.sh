# Packs the archive for Windows, unpacks it into an empty folder, and runs its host there.
# Arguments: the build's directory, and the command that runs a Windows program.
set -eu
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
(cd "$1" && cpack -B "$directory/packed" >/dev/null)
cd "$directory"
cmake -E tar xf packed/*.zip
host=$(echo OrvActionManager-*/bin/ActionHost.exe)
GS_Logger_Path="$directory/log" "$2" "$host" --every 100ms --polling 10 --duration 1s | tee output
grep -q "Schedule" output
grep -q "alive: 0 objects of the module, 0 of the host, 0 open node handles" output
test -s log/OrvActionManager.log
