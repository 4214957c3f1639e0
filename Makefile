# Short names for what CMakePresets.json and Scripts/ do.

PREFIX ?= /usr/local

SECONDS ?= 60
MINUTES ?= 10
SUITES ?= bookworm trixie testing

.PHONY: build install deb check-deb check-debian test bench coverage fuzz mutate soak asan tsan format lint check-mac \
        app clean help

build: ## the program, optimised: build/quillfade
	cmake --preset release
	cmake --build --preset release --target quillfade
	ln -sf release/Platform/Linux/quillfade build/quillfade

install: ## installs the program; PREFIX (/usr/local) and DESTDIR say where
	cmake --preset release -D CMAKE_INSTALL_PREFIX="$(PREFIX)"
	cmake --build --preset release --target quillfade
	cmake --install build/release

deb: ## the Debian package, in build/release
	./setup
	cmake --preset release
	cmake --build --preset release --target quillfade
	cd build/release && cpack

check-deb: deb ## the same, held against Debian's own rules (needs lintian) and against attacks
	Scripts/check-hardening --fortified build/release/Platform/Linux/quillfade
	Scripts/check-package build/release/quillfade_*.deb

test: ## every test, the static checks included
	./test

check-debian: ## ./run and ./test in bare roots of Debian 12, 13 and testing, as root; KEEP=DIRECTORY keeps them
	status=0; for suite in $(SUITES); do Scripts/try-debian $(if $(KEEP),--keep $(KEEP)) $$suite || status=1; done; exit $$status

bench: ## measures against other programs, which takes forty minutes; QUICK=1: a few minutes; ONLY=typing: just that
	./setup bench
	cmake --preset bench
	cmake --build --preset bench --target bench
	build/bench/Benchmarks/bench $(if $(QUICK),--quick) $(if $(ONLY),--only $(ONLY)) \
	  --json build/bench.json --svg build/bench.svg

coverage: ## every test, and how much of the code they reach
	./setup test
	Scripts/coverage

fuzz: ## every fuzzer for SECONDS (60) each
	./setup test
	Scripts/fuzz $(SECONDS)

soak: ## a cover in use for MINUTES (10): is everything as after the first minute?
	./setup test
	cmake --preset release
	cmake --build --preset release --target quillfade quillfade-soak
	build/release/Tests/Support/quillfade-soak build/release/Platform/Linux/quillfade $(MINUTES) build/soak

mutate: ## flips each comparison and constant of the rules in turn: a test must notice
	./setup test
	Scripts/mutate

asan: ## the tests with the address and undefined-behaviour sanitizers
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan --label-exclude lint

tsan: ## the tests with the thread sanitizer
	cmake --preset tsan
	cmake --build --preset tsan
	ctest --preset tsan --label-exclude lint

format: ## formats the sources in place
	Scripts/format

lint: ## checks the formatting and runs the static checks
	cmake --preset debug
	ctest --preset debug --label-regex lint

check-mac: ## checks the macOS adapter as far as that is possible elsewhere
	Scripts/check-mac

app: ## Quillfade.app, signed ad hoc (on a Mac)
	Scripts/mac-app

clean: ## removes everything that was built
	rm -rf build demo-output

help: ## this list
	@grep -E '^[a-z-]+:.*##' Makefile | sed 's/:.*## /\t/'
