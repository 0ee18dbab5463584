# The two commands that do all the set-up: `make run` and `make test`. Both install what a fresh Debian 12
# machine lacks (as root, with apt-get), configure and build.

BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
TSAN_DIR ?= build-tsan
JOBS ?= 2
# What the command-line tool needs. openimageio-tools: Debian's CMake package file of OpenImageIO refuses to
# load without its programs.
RUN_PACKAGES := cmake g++ make libopenimageio-dev openimageio-tools
# And what the tests and benchmarks need: libgtest-dev does not bring GoogleMock. ffmpeg and melt are the
# frei0r hosts the plug-ins' tests run.
PACKAGES := $(RUN_PACKAGES) libgtest-dev libgmock-dev libbenchmark-dev ffmpeg melt
# The architectures besides this machine's that the bundle is built for, as Debian's cross compilers
# name them (cmake/toolchains/): 32-bit x86 runs here natively, arm64 under qemu-user. Debian's
# g++-multilib would do for 32-bit x86 but cannot be installed beside an arm64 cross compiler.
CROSS_TARGETS := i686-linux-gnu aarch64-linux-gnu
CROSS_PACKAGES := g++-i686-linux-gnu g++-aarch64-linux-gnu qemu-user googletest
# Where `make install` puts the frei0r plug-ins: $(PREFIX)/lib/frei0r-1.
PREFIX ?= /usr/local

# The fuzz targets of tests/fuzz, built with clang and libFuzzer in a tree of their own: `make fuzz` runs
# each for FUZZ_SECONDS. What a run finds goes to FUZZ_DIR. `make test` replays their corpora in its
# sanitised build, without clang.
FUZZ_DIR ?= build-fuzz
FUZZ_SECONDS ?= 60
FUZZ_TARGETS := preset command_line image_file arbitrary_data
FUZZ_PACKAGES := clang-14 libclang-rt-14-dev

.PHONY: all deps build build-run build-sanitize build-tsan build-fuzz run test test-cross fuzz bench install clean

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

# The tool, the plug-ins and the tests; the benchmarks are `make bench`'s.
build: deps
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release -DTW_BUILD_TESTS=ON -DTW_BUILD_BENCHMARKS=OFF
	cmake --build $(BUILD_DIR) -j$(JOBS)

# Only the command-line tool and the libraries under it, in the same build tree as `build`: a first run
# needs neither the tests' packages nor their compile time.
build-run:
	@$(MAKE) --no-print-directory deps PACKAGES="$(RUN_PACKAGES)"
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release -DTW_BUILD_TESTS=OFF -DTW_BUILD_BENCHMARKS=OFF
	cmake --build $(BUILD_DIR) -j$(JOBS) --target twfx

# AddressSanitizer and UndefinedBehaviorSanitizer, lightly optimised so the suite stays quick, with one
# kernel variant per vector width: the variants of one width read and write the same memory.
build-sanitize: deps
	cmake -S . -B $(SANITIZE_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1" \
	  -DTW_SANITIZE=ON -DTW_BUILD_BENCHMARKS=OFF -DTW_ONE_KERNEL_VARIANT_PER_WIDTH=ON
	cmake --build $(SANITIZE_DIR) -j$(JOBS)

# ThreadSanitizer, for the one test of many frames rendered at once through the plug-in bundle: only what
# that test needs is built, unoptimised, which takes 40% off its compile time; the test runs in a second.
build-tsan: deps
	cmake -S . -B $(TSAN_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O0 -g1" \
	  -DTW_THREAD_SANITIZE=ON -DTW_BUILD_BENCHMARKS=OFF -DTW_BASELINE_KERNELS_ONLY=ON
	cmake --build $(TSAN_DIR) -j$(JOBS) --target ae_concurrency_tests

build-fuzz:
	@$(MAKE) --no-print-directory deps PACKAGES="$(RUN_PACKAGES) $(FUZZ_PACKAGES)"
	cmake -S . -B $(FUZZ_DIR) -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1" -DTW_FUZZ=ON -DTW_BUILD_TESTS=OFF -DTW_BUILD_BENCHMARKS=OFF \
	  -DTW_BASELINE_KERNELS_ONLY=ON
	cmake --build $(FUZZ_DIR) -j$(JOBS) --target $(addprefix fuzz_,$(FUZZ_TARGETS))

# New inputs go to $(FUZZ_DIR)/found, never into the corpus in the tree; a failing input is written to
# $(FUZZ_DIR) and ends the run. OpenImageIO's readers allocate what a file's header claims before anything
# can look at it (2.6 GB for one DPX file of the corpus), hence the memory limit above libFuzzer's 2 GB.
fuzz: build-fuzz
	@for target in $(FUZZ_TARGETS); do \
	  mkdir -p $(FUZZ_DIR)/found/$$target; \
	  echo "fuzz_$$target for $(FUZZ_SECONDS) s"; \
	  $(FUZZ_DIR)/tests/fuzz/fuzz_$$target -max_total_time=$(FUZZ_SECONDS) -timeout=60 -rss_limit_mb=4096 \
	    -artifact_prefix=$(FUZZ_DIR)/fuzz_$$target- $(FUZZ_DIR)/found/$$target tests/fuzz/corpus/$$target \
	    || exit 1; \
	done

# The bundled portrait through the whole skin retouch at its defaults, and the portrait before and after
# side by side (oiiotool comes with openimageio-tools).
run: build-run
	mkdir -p out
	$(BUILD_DIR)/tools/twfx/twfx retouch -i samples/astronaut.png -o out/astronaut-retouch.png
	oiiotool samples/astronaut.png out/astronaut-retouch.png --mosaic 2x1 -o out/astronaut-before-after.png
	@echo "Wrote out/astronaut-retouch.png and out/astronaut-before-after.png (before left, after right)"

test: build build-sanitize build-tsan
	ctest --test-dir $(BUILD_DIR) -j$(JOBS) --output-on-failure
	ctest --test-dir $(SANITIZE_DIR) -j$(JOBS) --output-on-failure
	$(TSAN_DIR)/tests/ae/ae_concurrency_tests

# The core, the filters, the bundle and their tests built for each of CROSS_TARGETS and run there; every
# effect's renders must have the same bits as on this machine.
test-cross: build
	@$(MAKE) --no-print-directory deps PACKAGES="$(CROSS_PACKAGES)"
	$(BUILD_DIR)/tests/registry/effect_digests > $(BUILD_DIR)/effect-digests.txt
	for target in $(CROSS_TARGETS); do \
	  cmake -S . -B build-$$target -DCMAKE_BUILD_TYPE=Release -DTW_BUILD_BENCHMARKS=OFF \
	    -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/$$target.cmake \
	    -DTW_REFERENCE_DIGESTS=$(abspath $(BUILD_DIR))/effect-digests.txt && \
	  cmake --build build-$$target -j$(JOBS) && \
	  ctest --test-dir build-$$target -j$(JOBS) --output-on-failure || exit 1; \
	done

# The benchmarks: ours beside OpenCV's filters and a plain copy, timed in alternation. OpenCV's development
# packages are installed here only, so that building and testing never need them; the configure step runs
# again to find them.
bench: build
	@$(MAKE) --no-print-directory deps PACKAGES="libopencv-dev libopencv-contrib-dev"
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release -DTW_BUILD_TESTS=ON -DTW_BUILD_BENCHMARKS=ON
	cmake --build $(BUILD_DIR) -j$(JOBS) --target bench_pairs bench_sequence
	$(BUILD_DIR)/bench/bench_pairs
	$(BUILD_DIR)/bench/bench_sequence

# The frei0r plug-ins into $(PREFIX)/lib/frei0r-1, where ffmpeg, MLT, Kdenlive and Shotcut look.
install: build
	cmake --install $(BUILD_DIR) --prefix $(PREFIX) --component frei0r

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(TSAN_DIR) $(FUZZ_DIR) $(addprefix build-,$(CROSS_TARGETS))
