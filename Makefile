# The two commands of the README: `make run` and `make test`. Both install
# what is missing first, so a fresh Debian 12 machine needs nothing else.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
CMAKE_FLAGS ?=
JOBS ?= $(shell nproc)

.PHONY: all deps configure build run test sanitize bench clean

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

# The whole suite under AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize:
	$(MAKE) test BUILD=build-sanitize BUILD_TYPE=Debug CMAKE_FLAGS=-DVELMORA_SANITIZE=ON

bench: build
	scripts/install-deps --bench
	bench/run

clean:
	rm -rf $(BUILD) build-sanitize
