# The two commands of README.md, and what else a developer types. Each target works alone on a fresh
# machine: it installs what is missing, builds and runs.

ARGS ?= --print

.PHONY: all run tray app test bench check check-macos format install clean deps-run deps-tray deps-test deps-bench deps-check deps-macos

all: release

run: release
	@build/release/tarnwick $(ARGS)

# The application in the tray. Needs Qt, which the command line does without.
tray: deps-tray
	@mkdir -p build
	@{ cmake --preset release -DTARNWICK_PANEL=ON && cmake --build --preset release; } >build/release.log 2>&1 \
	  || { cat build/release.log >&2; exit 1; }
	build/release/tarnwick

# Quiet unless something fails: what `make run` prints is the report.
release: deps-run
	@mkdir -p build
	@{ cmake --preset release && cmake --build --preset release; } >build/release.log 2>&1 \
	  || { cat build/release.log >&2; exit 1; }

test: release deps-test
	cmake --preset dev
	cmake --build --preset dev
	ctest --preset dev -j 2 --progress

bench: release deps-bench
	cmake --preset release -DTARNWICK_BENCHMARKS=ON >/dev/null
	cmake --build --preset release --target tarnwick_bench check_cost
	build/release/bench/tarnwick_bench
	build/release/bench/check_cost 1000 15 build/release/tarnwick
	build/release/tarnwick --bench

format: deps-check
	tools/check-style --fix

check: deps-check
	tools/check-style

check-macos: deps-macos
	tools/check-macos

# The application of macOS, signed for this Mac; with IDENTITY="Developer ID Application: ..." for every other.
app: release
	@tools/make-app build/release/tarnwick

install: release
	cmake --install build/release

clean:
	rm -rf build

deps-run deps-tray deps-test deps-bench deps-check deps-macos:
	@tools/install-deps $(@:deps-%=%)
