#!/bin/bash
#SBATCH --job-name=join
# Joins the letters of a folder, in the order of the data, to one document.
#   sbatch join.sh FOLDER RESULT
set -euo pipefail
case "${1:-}" in -h | --help | '') sed -n '/^# /,/^set/{/^set/!p}' "$0" | cut -c3-; exit ;; esac

find "$1" -name '*.rtf' | LC_ALL=C sort | "${VELMOR:-velmor}" clean --inputs-from - -o "$2"
