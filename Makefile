# The commands a newcomer needs: `make demo` and `make test`. Everything builds into build/ (Release with
# debug info); the sanitizer, thread-sanitizer and fuzzing builds live apart (build-sanitize/, build-tsan/,
# build-fuzz/) so that none shares objects with another.
BUILD_DIR     ?= build
SANITIZE_DIR  ?= build-sanitize
TSAN_DIR      ?= build-tsan
FUZZ_DIR      ?= build-fuzz
FUZZ_SECONDS  ?= 60
# The tests that start threads: the MCP server's connections and main-thread hand-off, the intersection
# worker, the live view, and `orvex serve` run as a process (built with ThreadSanitizer too). The rest are
# single-threaded.
TSAN_FILTER   ?= MCP*:MainThreadQueue*:IntersectTest*:LiveView*:ServeProcess*
JOBS          ?= $(shell nproc)
CCACHE        := $(shell command -v ccache 2>/dev/null)
LAUNCHER      := $(if $(CCACHE),-DCMAKE_CXX_COMPILER_LAUNCHER=$(CCACHE)) -DORVEX_WERROR=ON
GENERATOR     := $(if $(shell command -v ninja 2>/dev/null),-G Ninja)

.PHONY: all deps configure build test demo sanitize tsan fuzz bench peers format format-check clean

all: build

deps:
	@bash scripts/install-deps.sh

$(BUILD_DIR)/CMakeCache.txt:
	cmake -S . -B $(BUILD_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo $(LAUNCHER)

configure: $(BUILD_DIR)/CMakeCache.txt

build: deps configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

demo: build
	@bash scripts/demo.sh $(BUILD_DIR)/orvex

sanitize: deps
	cmake -S . -B $(SANITIZE_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVEX_SANITIZE=ON \
	  -DORVEX_BUILD_BENCH=OFF $(LAUNCHER)
	cmake --build $(SANITIZE_DIR) -j $(JOBS)
	cd $(SANITIZE_DIR) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/lsan.supp \
	  ctest --output-on-failure -j $(JOBS)

tsan: deps
	cmake -S . -B $(TSAN_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVEX_TSAN=ON \
	  -DORVEX_BUILD_BENCH=OFF $(LAUNCHER)
	cmake --build $(TSAN_DIR) -j $(JOBS) --target orvex_tests orvex
	TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 suppressions=$(CURDIR)/scripts/tsan.supp" \
	  $(TSAN_DIR)/orvex_tests --gtest_filter='$(TSAN_FILTER)'

# libFuzzer needs clang and its runtime, which the normal build does not.
fuzz: deps
	@bash scripts/install-deps.sh clang libclang-rt-14-dev
	cmake -S . -B $(FUZZ_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
	  -DORVEX_FUZZ=ON -DORVEX_BUILD_TESTS=OFF -DORVEX_BUILD_BENCH=OFF $(LAUNCHER)
	cmake --build $(FUZZ_DIR) -j $(JOBS) --target orvex_fuzzers
	bash fuzz/run.sh $(FUZZ_DIR) $(FUZZ_SECONDS)

bench: build
	$(BUILD_DIR)/orvex_bench

# Side-by-side runs against other implementations; they install their own tools and print, never assert.
peers: build
	bash bench/peers/mermaid_parse.sh $(BUILD_DIR)/orvex
	bash bench/peers/mermaid_render.sh $(BUILD_DIR)/orvex
	bash bench/peers/mermaid_agreement.sh $(BUILD_DIR)/orvex
	bash bench/peers/mcp_throughput.sh $(BUILD_DIR)/orvex

format:
	@git ls-files -co --exclude-standard '*.h' '*.cpp' | xargs -r clang-format -i

# Fails, naming the files, when any source is not as `make format` leaves it.
format-check:
	@git ls-files '*.h' '*.cpp' | xargs -r clang-format --dry-run --Werror

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(TSAN_DIR) $(FUZZ_DIR)
