# Entry points: `make demo` and `make test` work on a fresh Debian machine.
JOBS ?= $(shell nproc)
BUILD ?= build
GEN := $(shell command -v ninja >/dev/null 2>&1 && echo Ninja || echo "Unix Makefiles")
FUZZ_SECONDS ?= 60

.PHONY: all deps configure build demo test bench fuzz check-sanitize check-thread clean

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
	$(BUILD)/app/rylvane demo

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	scripts/run-bench $(BUILD)

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B build-fuzz -G "$(GEN)" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRYL_FUZZ=ON -DRYL_TESTS=OFF
	cmake --build build-fuzz -j $(JOBS)
	scripts/run-fuzz build-fuzz $(FUZZ_SECONDS)

check-sanitize: deps
	cmake -S . -B build-asan -G "$(GEN)" -DCMAKE_BUILD_TYPE=Debug -DRYL_SANITIZE=address,undefined
	cmake --build build-asan -j $(JOBS)
	cd build-asan && ctest --output-on-failure -j $(JOBS)

check-thread: deps
	cmake -S . -B build-tsan -G "$(GEN)" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRYL_SANITIZE=thread
	cmake --build build-tsan -j $(JOBS)
	cd build-tsan && ctest --output-on-failure -j $(JOBS) -L thread || (cd build-tsan && ctest --output-on-failure -j $(JOBS))

clean:
	rm -rf $(BUILD) build-asan build-tsan build-fuzz
