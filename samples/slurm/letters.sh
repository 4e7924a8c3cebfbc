#!/bin/bash
#SBATCH --job-name=letters
#SBATCH --array=1-8
#SBATCH --cpus-per-task=4
# Renders the part of a mailing that this task of a job array has. A part that runs again makes what is not there.
#   sbatch letters.sh TEMPLATE DATA FOLDER
set -euo pipefail
case "${1:-}" in -h | --help | '') sed -n '/^# /,/^set/{/^set/!p}' "$0" | cut -c3-; exit ;; esac

mkdir -p "$3"
"${VELMOR:-velmor}" render "$1" --data "$2" --each "$3/{##########}.rtf" --continue \
    --part "$SLURM_ARRAY_TASK_ID/$SLURM_ARRAY_TASK_COUNT" --jobs "${SLURM_CPUS_PER_TASK:-1}"
