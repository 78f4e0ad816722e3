#!/bin/sh
# Public collections of text tables, where their npm packages are installed (NODE_PATH says where); without node or
# without any of them the test is skipped (exit code 77).
#   public_tables.sh TEXT_TOOL
set -eu
command -v node >/dev/null 2>&1 || { echo "node is not installed"; exit 77; }
modules=$(dirname "$0")/../../bench/node_modules
[ -n "${NODE_PATH:-}" ] || export NODE_PATH="$modules"
exec node "$(dirname "$0")/public_tables.cjs" "$1"
