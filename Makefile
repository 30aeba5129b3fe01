# The front door. Every target first installs the packages it needs (as root; otherwise it names
# them and stops), then calls one of the presets in CMakePresets.json.

JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 60
BENCH_REPETITIONS ?= 15
MUTANTS ?= 60
FUZZ_TARGETS := $(notdir $(wildcard fuzz/corpus/*))
# Rounded up: no time at all would mean for ever.
FUZZ_SHARE = $(shell echo $$((($(FUZZ_SECONDS) + $(words $(FUZZ_TARGETS)) - 1) / $(words $(FUZZ_TARGETS)))))
PACKAGES := scripts/install-packages.sh
VERSION := $(shell sed -nE 's/^project.* VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
FOLDERS := base bench common fuzz handlers platform tests tool toolbox
SOURCES = $(shell find $(FOLDERS) -name '*.cpp' -o -name '*.h')

.PHONY: demo build build-native build-sanitize build-windows package test test-native test-windows \
        run-windows-tests check-rebuild accept fuzz bench lint check-format format tidy coverage mutate count clean

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

# What is handed out for Windows, in one file.
package: build-windows
	scripts/package.py build/windows build/package/orvanta-config-$(VERSION).zip

# The Windows half comes last, so that the last lines say if it could not run.
test: test-native
	@$(MAKE) --no-print-directory test-windows

# The kept inputs of the fuzz targets are tests as well; CI also searches for new ones.
test-native: build-sanitize
	ctest --preset sanitize -j $(JOBS)
ifeq ($(CI),true)
	@$(MAKE) --no-print-directory fuzz
endif

build-sanitize:
	$(PACKAGES) native tests
	cmake --preset sanitize
	cmake --build --preset sanitize -j $(JOBS)

# Rewrites what the stories and the documents show; read the difference before you commit it.
accept: build-native
	scripts/stories.py --accept build/native/orvanta-config

test-windows:
	@if $(PACKAGES) native windows; then \
	  $(MAKE) --no-print-directory run-windows-tests; \
	else \
	  echo 'The Windows half was NOT tested: its compiler or Wine is missing and could not be installed.'; \
	  test '$(CI)' != true; \
	fi

run-windows-tests: build-windows
	cmake --preset windows-tests
	cmake --build --preset windows-tests -j $(JOBS)
	ctest --preset windows-tests -j $(JOBS)
ifeq ($(CI),true)
	@$(MAKE) --no-print-directory check-rebuild
endif

# Builds the plug-in once more, elsewhere: the bytes must be the same.
check-rebuild:
	scripts/check_rebuild.sh build/windows/orvanta-config-$(VERSION).X64.dll

# Searches for inputs that break a target, FUZZ_SECONDS in all; keeps what it learns in build/.
fuzz: build-sanitize
	@set -e; for target in $(FUZZ_TARGETS); do \
	  echo "Fuzzing $$target"; \
	  mkdir -p build/found/$$target; \
	  build/sanitize/fuzz/$$target -max_total_time=$(FUZZ_SHARE) -timeout=10 -max_len=4096 \
	    -print_final_stats=1 -print_funcs=0 -verbosity=0 \
	    -artifact_prefix=build/found/$$target- -dict=fuzz/$$target.dict \
	    build/found/$$target fuzz/corpus/$$target; \
	done

# Everything in one run, as one table; repetitions are interleaved.
bench:
	$(PACKAGES) native bench
	cmake --preset native -DCONFIG_BENCH=ON
	cmake --build --preset native -j $(JOBS) --target config_bench orvanta-config
	python3 bench/report.py build/native --repetitions $(BENCH_REPETITIONS)

lint: check-format
	$(PACKAGES) native lint
	python3 scripts/check_layers.py
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
	cmake --preset native -DCONFIG_UNITY=OFF
	run-clang-tidy -quiet -p build/native -j $(JOBS) '/(base|common|handlers|platform|toolbox|tool)/'
	cppcheck --std=c++20 --enable=warning,performance,portability --inline-suppr --quiet -I . \
	  --suppress=missingInclude -j $(JOBS) --error-exitcode=1 \
	  base common handlers toolbox platform/simulated platform/Platform.cpp tool

# Which lines the portable tests reach; build/coverage/index.html shows them one by one.
coverage:
	$(PACKAGES) native tests coverage
	cmake -S . -B build/coverage -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCONFIG_TESTS=ON \
	  -DCMAKE_CXX_FLAGS=--coverage
	cmake --build build/coverage -j $(JOBS)
	ctest --test-dir build/coverage -j $(JOBS) --output-on-failure
	gcovr --root . --object-directory build/coverage --filter '(base|common|handlers|toolbox|platform|tool)/' \
	  --exclude-throw-branches --html-details build/coverage/index.html --txt --sort-uncovered

# Changes the engine, one condition or constant at a time, and lists what no test noticed.
mutate:
	$(PACKAGES) native tests
	scripts/mutate.py --count $(MUTANTS)

# Lines of code, without blank lines and comments; the stories are counted apart.
count:
	@$(PACKAGES) count
	@git ls-files | cloc --list-file=- --include-lang='C,C++,C/C++ Header,Python,Bourne Shell' \
	  --by-file --csv --quiet | awk -F, '$$1 == "SUM" { next } $$2 ~ /^(.\/)?(tests|fuzz)\// { tests += $$5; next } { code += $$5 } \
	  END { printf "code   %6d lines\ntests  %6d lines, %.1f %% of the code\n", code, tests, 100 * tests / code }'
	@cat tests/stories/*.story | wc -l | xargs printf 'stories %5d lines in $(words $(wildcard tests/stories/*.story)) files\n'

clean:
	rm -rf build
