# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# What the scripts share; sourced, not run. Goes to the project's folder, ROOT; HERE is where the
# script was called.

HERE=$PWD
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$ROOT" || exit
JOBS=$(nproc)
# Many tests wait for others more than they work.
TEST_JOBS=$((JOBS + 1))

# Qt complains where there is none, as in containers.
if [[ -z ${XDG_RUNTIME_DIR:-} ]]; then
  export XDG_RUNTIME_DIR=$ROOT/build/runtime
  mkdir -p -m 700 "$XDG_RUNTIME_DIR"
fi

# wrong_use SCRIPT TEXT: ends a script that was called wrongly.
wrong_use() {
  echo "$1: $2" >&2
  echo "Try '$1 --help'." >&2
  exit 2
}

# configure PRESET: from whatever an earlier run left in its build folder.
configure() {
  local launcher='' log
  # It caches what uses precompiled headers only if told to overlook that __TIME__ may be in them.
  ! command -v ccache >/dev/null ||
    launcher="$(command -v env);CCACHE_SLOPPINESS=pch_defines,time_macros;$(command -v ccache)"
  local arguments=(--preset "$1" "-DCMAKE_CXX_COMPILER_LAUNCHER=$launcher")
  log=$(mktemp)
  if ! cmake "${arguments[@]}" >"$log" 2>&1 && ! cmake --fresh "${arguments[@]}" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# build PRESET [TARGET...]: everything, without targets.
build() {
  local preset=$1
  shift
  cmake --build --preset "$preset" -j "$JOBS" ${1:+--target "$@"}
}
