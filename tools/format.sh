#!/usr/bin/env bash
# Formats every C++ file of the project with clang-format; --check only reports.
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(git ls-files '*.cpp' '*.h')
if [ "${1:-}" = "--check" ]; then
    clang-format --dry-run --Werror $files
else
    clang-format -i $files
fi
