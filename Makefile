# The two commands that do all the set-up: `make run` and `make test`. Both install what a fresh Debian 12
# machine lacks (as root, with apt-get), configure and build.

BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
JOBS ?= 2
PACKAGES := cmake g++ make libgtest-dev libbenchmark-dev

.PHONY: all deps build build-sanitize run test bench clean

all: build

# Installs only what is missing, so a second run asks nothing of apt.
deps:
	@missing=""; \
	for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  if [ "$$(id -u)" -ne 0 ]; then sudo=sudo; else sudo=; fi; \
	  $$sudo apt-get update -qq && DEBIAN_FRONTEND=noninteractive $$sudo apt-get install -y -qq $$missing; \
	fi

build: deps
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(BUILD_DIR) -j$(JOBS)

# AddressSanitizer and UndefinedBehaviorSanitizer, lightly optimised so the suite stays quick.
build-sanitize: deps
	cmake -S . -B $(SANITIZE_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1" \
	  -DTW_SANITIZE=ON -DTW_BUILD_BENCHMARKS=OFF
	cmake --build $(SANITIZE_DIR) -j$(JOBS)

run: build
	$(BUILD_DIR)/bench/bench_graph --benchmark_min_time=0.2

test: build build-sanitize
	ctest --test-dir $(BUILD_DIR) -j$(JOBS) --output-on-failure
	ctest --test-dir $(SANITIZE_DIR) -j$(JOBS) --output-on-failure

bench: build
	$(BUILD_DIR)/bench/bench_graph

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR)
