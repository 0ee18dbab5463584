# The two commands that do all the set-up: `make run` and `make test`. Both install what a fresh Debian 12
# machine lacks (as root, with apt-get), configure and build.

BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
JOBS ?= 2
# openimageio-tools: Debian's CMake package file of OpenImageIO refuses to load without its programs.
PACKAGES := cmake g++ make libgtest-dev libbenchmark-dev libopenimageio-dev openimageio-tools

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

# The bundled portrait through "Balance". At float depth, since the effect's gamma works on the values
# of the depth it renders at, which makes it a curve over 0..1 only there.
run: build
	mkdir -p out
	$(BUILD_DIR)/tools/twfx/twfx render Balance -i samples/astronaut.png -o out/astronaut-balance.png \
	  --depth 32 --set "From Low=5" --set "From High=95" --set "Gamma=1.2"

test: build build-sanitize
	ctest --test-dir $(BUILD_DIR) -j$(JOBS) --output-on-failure
	ctest --test-dir $(SANITIZE_DIR) -j$(JOBS) --output-on-failure

bench: build
	$(BUILD_DIR)/bench/bench_graph

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR)
