#!/usr/bin/env bash
# Prints which values of the eGK's elements the program's schemas accept, by the program and by
# xmllint. Builds what it needs.
#   scripts/schema_verdicts.sh [build folder]
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/release}
cmake --build "$build" --target egk_xmllint_test >/dev/null
table=$("$build/tests/egk/egk_xmllint_test" --gtest_filter='SchemaVerdicts.*') || status=$?
echo "| document | element | value | KartoCheck | xmllint |"
echo "|---|---|---|---|---|"
grep '^| ' <<<"$table"
exit "${status:-0}"
