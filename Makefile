# Entry points: `make demo` and `make test` work on a fresh Debian machine.
JOBS ?= $(shell nproc)
BUILD ?= build
GEN := $(shell command -v ninja >/dev/null 2>&1 && echo Ninja || echo "Unix Makefiles")
# Seconds each fuzz target runs in `make fuzz`.
FUZZ_SECONDS ?= 60
# The sanitizer builds are optimised a little: -O0 code under AddressSanitizer
# runs several times slower, and -O1 keeps stack traces exact.
SAN_FLAGS ?= -O1 -gline-tables-only
# One clang build with AddressSanitizer and UndefinedBehaviorSanitizer serves
# both the sanitized test suite and the fuzz targets.
ASAN_BUILD ?= build-asan
TSAN_BUILD ?= build-tsan
# Paths inside the tree are hashed relative to it, so that ccache serves a
# clone in another folder (as CI makes) from the same cache.
export CCACHE_BASEDIR ?= $(CURDIR)

.PHONY: all deps configure build demo test bench fuzz check-sanitize check-thread configure-asan clean

all: build

deps:
	@scripts/install-deps

$(BUILD)/.configured: CMakeLists.txt | deps
	cmake -S . -B $(BUILD) -G "$(GEN)" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRYL_BENCH=ON
	@touch $@

configure: deps $(BUILD)/.configured

build: configure
	cmake --build $(BUILD) -j $(JOBS)

demo: build
	$(BUILD)/app/rylvane demo --export=$(CURDIR)/$(BUILD)/demo-site

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	scripts/run-bench $(BUILD)

configure-asan: deps
	CC=clang CXX=clang++ cmake -S . -B $(ASAN_BUILD) -G "$(GEN)" -DCMAKE_BUILD_TYPE=Debug \
	  -DCMAKE_CXX_FLAGS_DEBUG="$(SAN_FLAGS)" -DRYL_FUZZ=ON -DRYL_TESTS=ON

check-sanitize: configure-asan
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && ctest --output-on-failure -j $(JOBS)

fuzz: configure-asan
	cmake --build $(ASAN_BUILD) -j $(JOBS) --target fuzz_targets
	scripts/run-fuzz $(ASAN_BUILD) $(FUZZ_SECONDS)

check-thread: deps
	CC=clang CXX=clang++ cmake -S . -B $(TSAN_BUILD) -G "$(GEN)" -DCMAKE_BUILD_TYPE=Debug \
	  -DCMAKE_CXX_FLAGS_DEBUG="$(SAN_FLAGS)" -DRYL_SANITIZE=thread
	cmake --build $(TSAN_BUILD) -j $(JOBS) --target test_programs
	cd $(TSAN_BUILD) && ctest --output-on-failure -j $(JOBS) -L thread

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) build-fuzz
