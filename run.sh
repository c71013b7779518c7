#!/usr/bin/env bash
# Builds the release, assembles the program folder and evaluates a sample hall: the report goes to the terminal,
# figures and maps to files beside the build.
set -euo pipefail
cd "$(dirname "$0")"

tools/setup
cmake --preset release >/dev/null
cmake --build --preset release --target program-folder

programs=build/release/Zulerion
results=build/release/Ergebnis
mkdir -p "$results"
hall=$programs/Beispiele/Produktionshalle.sc1
"$programs/zulcalc" --fine-grid --map "$results/Karte.png" --hygiene "$results/Hygiene" \
    --json "$results/Produktionshalle.json" "$hall"
"$programs/zulcalc" --fine-grid "$hall" | tee "$results/Produktionshalle.txt"

echo
echo "The program folder is $programs."
echo "The report, the figures (JSON) and the maps (PNG) of $hall are in $results."
