# The project's commands. `make help` explains them.
PRESET ?= release
BUILD = build/$(PRESET)
# `run`, `tour`, `kit` and `deb` use the preset if it has been configured or if PRESET is given, otherwise the preset
# `kit`, which builds no tests.
HOST_PRESET := $(if $(wildcard $(BUILD)/build.ninja)$(filter command line,$(origin PRESET)),$(PRESET),kit)
HOST_BUILD = build/$(HOST_PRESET)
# Configures the preset $(1) if it has not been configured, or if NELVO_CLOSED_SDK is set to a new value.
configure = [ -f build/$(1)/build.ninja ] $(if $(NELVO_CLOSED_SDK),&& grep -qx 'NELVO_CLOSED_SDK:PATH=$(NELVO_CLOSED_SDK)' \
	build/$(1)/CMakeCache.txt) || cmake --preset $(1) $(if $(NELVO_CLOSED_SDK),-DNELVO_CLOSED_SDK='$(NELVO_CLOSED_SDK)') >/dev/null

.DEFAULT_GOAL := help
.PHONY: help deps build run tour test lint format asan tsan fuzz soak bench mutate docs gallery kit deb artwork clean

help: ## print this list
	@grep -hE '^[a-z]+:.*## ' $(MAKEFILE_LIST) | sed -E 's/^([a-z]+):.*## (.*)/  make \1\t\2/' | expand -t 16
	@echo "  PRESET=debug|release|asan|tsan chooses the build (now $(PRESET))"

deps:
	@tools/install-dependencies

build: deps ## build everything
	@$(call configure,$(PRESET))
	@cmake --build --preset $(PRESET)

run: ## run the reference host with simulated services; without a display, run its tour
	@tools/install-dependencies build run
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_run
	@tools/run $(HOST_BUILD)

tour: ## run the reference host's tour, even if there is a display
	@tools/install-dependencies build run tour
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_run
	@tools/run $(HOST_BUILD) tour

test: build lint ## run all checks and all tests
	@ctest --preset $(PRESET)

lint: build ## check the formatting, the sources, the QML files and the layers
	@tools/lint $(BUILD)

format: deps ## format the C++ sources
	@git ls-files -co --exclude-standard '*.cpp' '*.h' | xargs clang-format-14 -i

asan: ## run all tests with AddressSanitizer and UndefinedBehaviorSanitizer
	@$(MAKE) --no-print-directory build PRESET=asan
	@ctest --preset asan

tsan: ## run the tests that start threads, with ThreadSanitizer
	@$(MAKE) --no-print-directory build PRESET=tsan
	@ctest --preset tsan

fuzz: ## run each fuzz target for FUZZ_SECONDS seconds (60), built with clang
	@tools/install-dependencies clang-14 libclang-rt-14-dev
	@$(MAKE) --no-print-directory build PRESET=fuzz
	@tools/fuzz build/fuzz

soak: build ## measure memory, handles and threads after repeated use; takes six minutes
	@ctest --preset soak

mutate: deps ## try N (60) one-line changes of the library, chosen by SEED (1), and print those that pass all tests
	@tools/mutate --number $(or $(N),60) --seed $(or $(SEED),1)

bench: build ## run the benchmarks, each next to a reference value
	@tools/bench $(BUILD)

docs: deps ## create the API reference of the public headers in build/docs/html
	@tools/docs build/docs

gallery: build ## create docs/gallery.md with the pictures of a tour
	@tools/install-dependencies pngquant
	@tools/gallery $(BUILD)

artwork: deps ## render the pictures from their SVG sources
	@tools/render-artwork

kit: ## create the kit for host developers as an archive
	@tools/install-dependencies build doxygen
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_kit
	@cpack --config $(HOST_BUILD)/CPackConfig.cmake -B $(HOST_BUILD)/kit

deb: ## create the kit as Debian packages, with debug symbols and checksums
	@tools/install-dependencies build doxygen dpkg-dev
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_kit
	@cpack --config $(HOST_BUILD)/CPackConfig.cmake -G DEB -B $(HOST_BUILD)/deb

clean: ## remove the build directories
	@rm -rf build
