# The front door. Every target first installs the packages it needs (as root; otherwise it names
# them and stops), then calls one of the presets in CMakePresets.json.

JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 60
PACKAGES := tools/install-packages.sh
FOLDERS := bench common fuzz handlers platform tests toolbox tools
SOURCES = $(shell find $(FOLDERS) -name '*.cpp' -o -name '*.h')

.PHONY: demo build build-native build-windows test test-native test-fuzz test-windows \
        run-windows-tests fuzz bench lint check-format format tidy clean

# A first look: an example configuration on a simulated computer.
demo: build-native
	build/native/orvanta-config simulate examples/first-boot.cfg

# The tool for this computer, and the plug-in and the tool for Windows.
build: build-native build-windows

build-native:
	$(PACKAGES) native
	cmake --preset native
	cmake --build --preset native -j $(JOBS) --target orvanta-config

build-windows:
	$(PACKAGES) native windows
	cmake --preset windows
	cmake --build --preset windows -j $(JOBS) --target config orvanta-config

# The Windows half comes last, so that the last lines tell when it could not run.
test: test-native test-fuzz
	@$(MAKE) --no-print-directory test-windows

test-native:
	$(PACKAGES) native tests
	cmake --preset sanitize
	cmake --build --preset sanitize -j $(JOBS)
	ctest --preset sanitize -j $(JOBS)

# Replays the kept inputs; CI also searches for new ones.
test-fuzz:
	$(PACKAGES) native fuzz
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(JOBS)
	ctest --preset fuzz
ifeq ($(CI),true)
	@$(MAKE) --no-print-directory fuzz
endif

test-windows:
	@if $(PACKAGES) native windows; then \
	  $(MAKE) --no-print-directory run-windows-tests; \
	else \
	  echo 'The Windows half was NOT tested: its compiler or Wine is missing and could not be installed.'; \
	  test '$(CI)' != true; \
	fi

run-windows-tests:
	cmake --preset windows
	cmake --build --preset windows -j $(JOBS)
	ctest --preset windows -j $(JOBS)

# Searches for inputs that break the configuration file reader; keeps what it learns in build/.
fuzz:
	$(PACKAGES) native fuzz
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(JOBS)
	mkdir -p build/fuzz/found/config-file
	build/fuzz/fuzz/config-file -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 -verbosity=0 \
	  -artifact_prefix=build/fuzz/found/ -dict=fuzz/config-file.dict \
	  build/fuzz/found/config-file fuzz/corpus/config-file

bench:
	$(PACKAGES) native bench
	cmake --preset native -DCONFIG_BENCH=ON
	cmake --build --preset native -j $(JOBS) --target config_bench
	build/native/bench/config_bench

lint: check-format
	$(PACKAGES) native lint
	python3 tools/check_layers.py
	cmake --preset native
	cmake --build --preset native -j $(JOBS) --target all_verify_interface_header_sets

check-format:
	$(PACKAGES) lint
	clang-format --dry-run --Werror $(SOURCES)

format:
	$(PACKAGES) lint
	clang-format -i $(SOURCES)

tidy:
	$(PACKAGES) native tidy
	cmake --preset native
	run-clang-tidy -quiet -p build/native -j $(JOBS) '/(common|handlers|platform|toolbox|tools)/'

clean:
	rm -rf build
