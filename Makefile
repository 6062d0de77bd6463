# The two commands a newcomer needs: `make demo` and `make test`.
BUILD ?= build
CMAKE_FLAGS ?=

.PHONY: all deps configure build test demo reference bench clean

all: build

deps:
	@bash scripts/install-deps.sh

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS)

configure: deps $(BUILD)/build.ninja

build: configure
	cmake --build $(BUILD)

test: build
	ctest --test-dir $(BUILD) --output-on-failure

demo: build
	@bash scripts/demo.sh $(BUILD)

# Every decode row against the SVE reference, many cases each; rewrites
# docs/reference.md.
reference: build
	cmake --build $(BUILD) --target reference

# The benchmark kernels on the reference and under zorvo; rewrites
# bench/results.md. Options go in BENCH_ARGS (python3 bench/bench.py --help),
# e.g. BENCH_ARGS="--label after --compare bench/results.md".
bench: build
	python3 bench/bench.py --build $(BUILD) $(BENCH_ARGS)

clean:
	rm -rf $(BUILD)
