# The commands a newcomer needs: `make demo` and `make test`. Everything builds into build/ (Release with
# debug info); the sanitizer build lives apart in build-sanitize/ so the two never share objects.
BUILD_DIR     ?= build
SANITIZE_DIR  ?= build-sanitize
JOBS          ?= $(shell nproc)
CCACHE        := $(shell command -v ccache 2>/dev/null)
LAUNCHER      := $(if $(CCACHE),-DCMAKE_CXX_COMPILER_LAUNCHER=$(CCACHE))
GENERATOR     := $(if $(shell command -v ninja 2>/dev/null),-G Ninja)

.PHONY: all deps configure build test demo sanitize bench format clean

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

bench: build
	$(BUILD_DIR)/orvex_bench

format:
	@git ls-files -co --exclude-standard '*.h' '*.cpp' | xargs -r clang-format -i

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR)
