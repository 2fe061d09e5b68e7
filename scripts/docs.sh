#!/usr/bin/env bash
# Refreshes everything generated in docs/: the pictures in docs/images/ from the running editor
# (scripts/screenshots.sh, which also installs what is missing and builds), then the tables and
# the default-file dump of docs/file-format.md from the format library's field table, then the
# picture of a printed settings sheet (scripts/report-picture.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/screenshots.sh
build/tools/formatdoc/lumarex-formatdoc --update docs/file-format.md
echo "docs/file-format.md is up to date"
scripts/report-picture.sh
