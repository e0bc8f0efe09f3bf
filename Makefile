# The two commands of the README: `make run` and `make test`. Both install
# what is missing first, so a fresh Debian 12 machine needs nothing else.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
CMAKE_FLAGS ?=
JOBS ?= $(shell nproc)

.PHONY: all deps configure build run demo test package sanitize sanitize-unit format-check bench fuzz clean

all: build

deps:
	scripts/install-deps

configure: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) $(CMAKE_FLAGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/bin/velmora

# Velmora on a demonstration mailbox: two POP3 servers on loopback with
# made-up mail, and settings of the demo's own in $(BUILD)/demo-home, made
# afresh each time. The servers end when Velmora does.
demo: configure
	cmake --build $(BUILD) -j $(JOBS) --target velmora velmora-demo velmora_sounds velmora_icons
	$(BUILD)/tools/velmora-demo --home $(BUILD)/demo-home -- $(BUILD)/bin/velmora

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# A Debian package of a release build, with the flags Debian builds with
# (all hardening on), in $(PACKAGE_BUILD)/; lintian must find no error in it.
PACKAGE_BUILD ?= build-package
package: export DEB_BUILD_MAINT_OPTIONS = hardening=+all
package:
	scripts/install-deps --package
	cmake -S . -B $(PACKAGE_BUILD) -DCMAKE_BUILD_TYPE=Release -DVELMORA_BUILD_TESTS=OFF \
	  -DCMAKE_CXX_FLAGS="$$(dpkg-buildflags --get CPPFLAGS) $$(dpkg-buildflags --get CXXFLAGS)" \
	  -DCMAKE_EXE_LINKER_FLAGS="$$(dpkg-buildflags --get LDFLAGS)" $(CMAKE_FLAGS)
	cmake --build $(PACKAGE_BUILD) -j $(JOBS)
	rm -f $(PACKAGE_BUILD)/velmora_*.deb
	cd $(PACKAGE_BUILD) && cpack -G DEB
	lintian --fail-on error $(PACKAGE_BUILD)/velmora_*.deb
	@echo "package: $$(ls $(PACKAGE_BUILD)/velmora_*.deb)"

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

# The libFuzzer targets of tests/fuzz, built with clang in build-fuzz/, each
# run for FUZZ_SECONDS on its seeds and what earlier runs found. Crashes are
# kept in build-fuzz/crashes/<target>/.
FUZZ_SECONDS ?= 60
FUZZ_TARGETS = fuzz_profile fuzz_settings fuzz_rules fuzz_pop_reply fuzz_mime_capture
fuzz:
	scripts/install-deps --fuzz
	CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMORA_FUZZ=ON
	cmake --build build-fuzz -j $(JOBS) --target $(FUZZ_TARGETS)
	@failed=; for t in $(FUZZ_TARGETS); do \
	  mkdir -p build-fuzz/corpus/$$t build-fuzz/crashes/$$t; \
	  echo "fuzz: $$t for $(FUZZ_SECONDS) s"; \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp:print_suppressions=0 \
	  build-fuzz/fuzz/$$t -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 \
	    -artifact_prefix=build-fuzz/crashes/$$t/ build-fuzz/corpus/$$t tests/fuzz/corpus/$$t \
	    || failed="$$failed $$t"; \
	done; \
	if [ -n "$$failed" ]; then echo "fuzz: crashes in$$failed"; exit 1; fi; \
	echo "fuzz: no crashes"

clean:
	rm -rf $(BUILD) build-sanitize build-fuzz $(PACKAGE_BUILD)
