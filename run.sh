#!/usr/bin/env bash
# Builds the release, assembles the program folder and starts the program in it. Without a display it makes the
# report of a sample hall instead.
set -euo pipefail
cd "$(dirname "$0")"

tools/setup
cmake --preset release >/dev/null
cmake --build --preset release --target program-folder

programs=build/release/Zulerion
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "The program folder is $programs; Zulerion starts."
    exec "$programs/Zulerion"
fi

results=build/release/Ergebnis
mkdir -p "$results"
hall=$programs/Beispiele/Produktionshalle.sc1
"$programs/zulreport" --fine-grid --png "$results/Seite" "$hall" "$results/Produktionshalle.pdf"

echo
echo "There is no display, so the window was not opened. The program folder is $programs."
echo "The report of $hall is $results/Produktionshalle.pdf, its pages as pictures lie beside it."
