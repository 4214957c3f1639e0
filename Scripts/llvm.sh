# shellcheck shell=bash
# Sourced by its neighbours: the tools of LLVM by the names that ./setup installs them under.

llvm() { # clang++, clang-format …: release 19, or the system's own where there is none
  if command -v "$1-19" > /dev/null; then echo "$1-19"; else echo "$1"; fi
}
