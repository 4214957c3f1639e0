# Short names for what CMakePresets.json and Scripts/ do.

PREFIX ?= /usr/local

SECONDS ?= 60
MINUTES ?= 10
SUITES ?= bookworm trixie testing

.PHONY: build install deb check-deb check-debian check-desktops test bench coverage fuzz mutate soak asan tsan format \
        lint check-mac check-mac-target test-mac test-mac-here test-mac-tsan coverage-mac mutate-mac app clean help

build: ## the program, optimised: build/quillfade
	cmake --preset release
	cmake --build --preset release --target quillfade
	ln -sf release/Platform/Linux/quillfade build/quillfade

install: ## installs the program under PREFIX (/usr/local), staged in DESTDIR
	cmake --preset release -D CMAKE_INSTALL_PREFIX="$(PREFIX)"
	cmake --build --preset release --target quillfade
	cmake --install build/release

deb: ## the Debian package, in build/release
	./setup deb
	cmake --preset release
	cmake --build --preset release --target quillfade
	cd build/release && cpack

check-deb: deb ## the same, checked for Debian's own rules (needs lintian) and for hardening
	Scripts/check-hardening --fortified build/release/Platform/Linux/quillfade
	Scripts/check-package build/release/quillfade_*.deb

test: ## every test, the static checks included
	./test

check-debian: ## ./run and ./test in bare roots of Debian 12, 13 and testing; needs root; KEEP=DIRECTORY keeps them
	status=0; for suite in $(SUITES); do Scripts/try-debian $(if $(KEEP),--keep $(KEEP)) $$suite || status=1; done; exit $$status

check-desktops: ## with ink on sway, labwc, KWin and GNOME of Debian 13 and testing; needs root; KEEP=DIRECTORY; DESKTOPS=sway
	status=0; for suite in $(filter-out bookworm,$(SUITES)); do \
	  Scripts/try-desktops $(if $(KEEP),--keep $(KEEP)) $$suite $(DESKTOPS) || status=1; done; exit $$status

bench: ## compares with other programs in forty minutes; QUICK=1: in a few; ONLY=typing: only that part
	./setup bench
	cmake --preset bench
	cmake --build --preset bench --target bench
	build/bench/Benchmarks/bench $(if $(QUICK),--quick) $(if $(ONLY),--only $(ONLY)) \
	  --json build/bench.json --svg build/bench.svg

coverage: ## runs every test and reports the code coverage
	./setup test
	Scripts/coverage

fuzz: ## runs each fuzzer for SECONDS (60)
	./setup test
	Scripts/fuzz $(SECONDS)

soak: ## uses a cover for MINUTES (10) and compares the end with the first minute
	./setup test
	cmake --preset release
	cmake --build --preset release --target quillfade quillfade-soak
	build/release/Tests/Support/quillfade-soak build/release/Platform/Linux/quillfade $(MINUTES) build/soak

mutate: ## flips each comparison and constant of the rules in turn; some test must fail
	./setup test
	Scripts/mutate

asan: ## runs the tests with the address and undefined-behaviour sanitizers
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan --label-exclude lint

tsan: ## runs the tests with the thread sanitizer
	cmake --preset tsan
	cmake --build --preset tsan
	ctest --preset tsan --label-exclude lint

format: ## formats the sources in place
	Scripts/format

lint: ## checks the formatting and runs the static checks
	cmake --preset debug
	ctest --preset debug --label-regex lint

check-mac: ## checks the macOS adapter as far as possible without a Mac
	Scripts/check-mac
	Scripts/check-mac tests

check-mac-target: ## compiles it for a Mac's processor and C library, whose headers it fetches
	Scripts/check-mac-target

test-mac: ## on a Mac: every test, those against the real frameworks included
	cmake --preset debug --compile-no-warning-as-error
	cmake --build --preset debug
	ctest --preset debug

test-mac-here: ## executes the macOS adapter over fakes of the frameworks, under the address sanitizer
	./setup test
	Scripts/mac-tests

coverage-mac: ## executes it and reports the lines and branches of it that were reached
	./setup test
	Scripts/mac-tests coverage

test-mac-tsan: ## executes it under the thread sanitizer
	./setup test
	Scripts/mac-tests thread

mutate-mac: ## plants mistakes in the macOS adapter, one at a time: a test must notice
	./setup test
	Scripts/mutate-mac

app: ## Quillfade.app and its disk image, signed ad hoc (on a Mac)
	Scripts/mac-app

clean: ## removes everything that was built
	rm -rf build demo-output

help: ## this list
	@grep -E '^[a-z-]+:.*##' Makefile | sed 's/:.*## /\t/'
