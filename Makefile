# The two commands of the README: `make run` and `make test`. Both install
# what is missing first, so a fresh Debian 12 machine needs nothing else.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
CMAKE_FLAGS ?=
JOBS ?= $(shell nproc)

.PHONY: all deps configure build run test sanitize sanitize-unit format-check bench clean

all: build

deps:
	scripts/install-deps

configure: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) $(CMAKE_FLAGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/bin/velmora

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The whole suite under AddressSanitizer and UndefinedBehaviorSanitizer,
# leaks included.
SANITIZE_FLAGS = BUILD=build-sanitize BUILD_TYPE=Debug CMAKE_FLAGS="-DVELMORA_SANITIZE=ON $(CMAKE_FLAGS)"
sanitize:
	$(MAKE) test $(SANITIZE_FLAGS)

# The unit tests alone under the sanitizers, as CI runs them.
sanitize-unit:
	$(MAKE) build $(SANITIZE_FLAGS)
	cd build-sanitize && ctest --output-on-failure -j $(JOBS) -L unit

# Fails when clang-format would change any of our C++ files.
format-check:
	git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

bench: build
	scripts/install-deps --bench
	bench/run

clean:
	rm -rf $(BUILD) build-sanitize
