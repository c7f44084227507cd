# Isolith: the two commands of a fresh machine are `make run` and `make test`.
BUILD ?= build
CMAKE_FLAGS ?=
EXAMPLE ?= examples/blinky
# The sanitizer (and fuzzing) build and the package build keep folders of their own.
ASAN_BUILD ?= build-asan
RELEASE_BUILD ?= build-release
SECONDS ?= 60

.PHONY: all deps configure build run test gui bench format clean sanitize deb fuzz

all: build

deps:
	@bash scripts/install-deps.sh

$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS)

configure: $(BUILD)/build.ninja

build: deps configure
	cmake --build $(BUILD)

run: build
	@bash scripts/run-example.sh $(BUILD) $(EXAMPLE)

# The test run treats every warning on our code as an error.
test: deps
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS) -DISOLITH_WERROR=ON
	cmake --build $(BUILD)
	ctest --test-dir $(BUILD) --output-on-failure -j2

# The whole test suite under AddressSanitizer, UndefinedBehaviorSanitizer and LeakSanitizer,
# built by clang with the fuzzers' coverage too, so that one build serves `make fuzz` as well:
# any report fails the test that caused it.
SANITIZE_FLAGS = -DCMAKE_CXX_COMPILER=clang++ -DISOLITH_SANITIZE=ON -DISOLITH_FUZZ=ON \
  -DISOLITH_BENCH=OFF
export ASAN_OPTIONS = detect_leaks=1:abort_on_error=1:strict_string_checks=1
export UBSAN_OPTIONS = print_stacktrace=1:halt_on_error=1
export LSAN_OPTIONS = suppressions=$(CURDIR)/scripts/lsan-suppressions.txt:print_suppressions=0

sanitize: deps
	cmake -S . -B $(ASAN_BUILD) -G Ninja $(CMAKE_FLAGS) $(SANITIZE_FLAGS)
	cmake --build $(ASAN_BUILD)
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j2

# The Debian package of a Release build.
deb: deps
	cmake -S . -B $(RELEASE_BUILD) -G Ninja $(CMAKE_FLAGS) -DCMAKE_BUILD_TYPE=Release \
	  -DISOLITH_TESTS=OFF -DISOLITH_BENCH=OFF
	cmake --build $(RELEASE_BUILD)
	cd $(RELEASE_BUILD) && cpack -G DEB
	@ls $(RELEASE_BUILD)/*.deb

# Every libFuzzer harness of fuzz/, SECONDS seconds each, from the seed corpora of fuzz/corpus/.
fuzz: deps
	cmake -S . -B $(ASAN_BUILD) -G Ninja $(CMAKE_FLAGS) $(SANITIZE_FLAGS)
	cmake --build $(ASAN_BUILD) --target fuzzers
	@bash scripts/run-fuzzers.sh $(ASAN_BUILD) $(SECONDS)

gui: build
	$(BUILD)/bin/isolith

bench: build
	@for b in $(BUILD)/bin/bench_*; do [ -x "$$b" ] && "$$b"; done; true

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(RELEASE_BUILD)
