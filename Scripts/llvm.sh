# shellcheck shell=bash
# Sourced by the other scripts: LLVM's tools under the names that ./setup installs.

llvm() { # clang++, clang-format …: release 19, or the system's own where there is none
  if command -v "$1-19" > /dev/null; then echo "$1-19"; else echo "$1"; fi
}
