#!/usr/bin/env bash
# qpm is a host like the IDE: of the library it may include the public
# header, the host API (interface/host_*.h) and the platform layer's helpers,
# nothing else.
#
#   includes_test.sh CLI_DIR
set -euo pipefail

platform='platform/(environment|file_system|path|path_key|status)'
allowed="#include \"(cli/[a-z_]+|interface/host_[a-z_]+|quillon/[a-z_]+|$platform)\\.h\""
bad=$(grep -HnE '^#include "' "$1"/*.h "$1"/*.cpp | grep -vE ":[0-9]+:$allowed" || true)
if [ -n "$bad" ]; then
  echo "qpm includes library internals:" >&2
  echo "$bad" >&2
  exit 1
fi
