# shellcheck shell=bash
# Sourced by the other scripts: lists our own C++ sources, one path a line, committed or not.

sources() { # file name patterns
  local expression=()
  for pattern in "$@"; do expression+=(-o -name "$pattern"); done
  find Quillfade Platform Tests Benchmarks -type f \( "${expression[@]:1}" \) | LC_ALL=C sort
}
