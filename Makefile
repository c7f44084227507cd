# Isolith: the two commands of a fresh machine are `make run` and `make test`.
BUILD ?= build
CMAKE_FLAGS ?=
EXAMPLE ?= examples/blinky

.PHONY: all deps configure build run test gui bench format clean

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

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j2

gui: build
	$(BUILD)/bin/isolith

bench: build
	@for b in $(BUILD)/bin/bench_*; do [ -x "$$b" ] && "$$b"; done; true

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')

clean:
	rm -rf $(BUILD)
