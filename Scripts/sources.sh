# shellcheck shell=bash
# Sourced by its neighbours: our own C++ sources, one path a line, whether or not they are committed yet.

sources() { # file name patterns
  local expression=()
  for pattern in "$@"; do expression+=(-o -name "$pattern"); done
  find Quillfade Platform Tests Benchmarks -type f \( "${expression[@]:1}" \) | LC_ALL=C sort
}
