# The two commands of README.md, and what else a developer types. Each target works alone on a fresh
# machine: it installs what is missing, builds and runs.

ARGS ?= --print

# Started with an empty environment, make finds no tool.
PATH ?= /usr/local/bin:/usr/bin:/bin
export PATH

# The targets build in the same folders and ask the same package manager; ninja uses all processors anyway.
.NOTPARALLEL:

.PHONY: all run tray panel app test bench fuzz check check-macos format install uninstall package clean deps-run deps-tray deps-test deps-bench deps-fuzz deps-check deps-macos deps-package

all: release

run: release
	@build/release/tarnwick $(ARGS)

# The application in the tray. Needs Qt, which the command line does without.
tray: panel
	build/release/tarnwick

panel: deps-tray
	@tools/build release -DTARNWICK_PANEL=ON

# What is said while it builds goes to standard error: what `make run` prints is the report.
release: deps-run
	@tools/build release

test: deps-test
	@tools/build dev
	ctest --preset dev -j 2 --progress

bench: release deps-bench
	@tools/build release -DTARNWICK_BENCHMARKS=ON -- --target benchmarks
	build/release/bench/tarnwick_bench
	[ ! -x build/release/bench/check_cost ] || build/release/bench/check_cost 1000 15 build/release/tarnwick
	[ ! -x build/release/bench/panel_cost ] || build/release/bench/panel_cost
	build/release/tarnwick --bench

# Each reader of foreign bytes, and whole machines, fed with invented bytes for so many seconds each.
SECONDS ?= 60
fuzz: deps-fuzz
	@tools/build fuzz -- --target tarnwick_fuzz
	@tools/fuzz $(SECONDS)

format: deps-check
	tools/check-style --fix

check: deps-check
	tools/check-style
	tools/check-documents

check-macos: deps-macos
	tools/check-macos

# The application of macOS, signed for this Mac; with IDENTITY="Developer ID Application: ..." for every other.
# ARCHS="arm64 x86_64" makes it for both kinds of processor, in a folder of its own.
ARCHS ?=
ifeq ($(strip $(ARCHS)),)
app: release
	@tools/make-app build/release/tarnwick
else
app: deps-run
	@tools/build universal "-DCMAKE_OSX_ARCHITECTURES=$$(echo $(ARCHS) | tr ' ' ';')"
	@tools/make-app build/universal/tarnwick
endif

# As packagers expect them: PREFIX is where it will stand, DESTDIR a folder that stands for the root meanwhile.
PREFIX ?= /usr/local
DESTDIR ?=
install uninstall: export PREFIX := $(PREFIX)
install uninstall: export DESTDIR := $(DESTDIR)

install:
	@tools/install-program

uninstall:
	@tools/install-program --remove

# Debian packages and the source archive, in build/packages.
package: panel deps-package
	@tools/make-package

clean:
	rm -rf build

deps-run deps-tray deps-test deps-bench deps-fuzz deps-check deps-macos deps-package:
	@tools/install-deps $(@:deps-%=%)
