# The project's commands. `make help` explains them.
PRESET ?= release
BUILD = build/$(PRESET)
# What `run` and `kit` use: the build of the preset if there is one or somebody asks for it, otherwise one without tests.
HOST_PRESET := $(if $(wildcard $(BUILD)/build.ninja)$(filter command line,$(origin PRESET)),$(PRESET),kit)
HOST_BUILD = build/$(HOST_PRESET)
# Configures preset $(1) if it is new, or if NELVO_CLOSED_SDK is set and differs.
configure = [ -f build/$(1)/build.ninja ] $(if $(NELVO_CLOSED_SDK),&& grep -qx 'NELVO_CLOSED_SDK:PATH=$(NELVO_CLOSED_SDK)' \
	build/$(1)/CMakeCache.txt) || cmake --preset $(1) $(if $(NELVO_CLOSED_SDK),-DNELVO_CLOSED_SDK='$(NELVO_CLOSED_SDK)') >/dev/null

.DEFAULT_GOAL := help
.PHONY: help deps build run tour test lint format asan tsan fuzz soak bench mutate docs gallery kit deb artwork clean

help: ## this list
	@grep -hE '^[a-z]+:.*## ' $(MAKEFILE_LIST) | sed -E 's/^([a-z]+):.*## (.*)/  make \1\t\2/' | expand -t 16
	@echo "  PRESET=debug|release|asan|tsan chooses the build (now $(PRESET))"

deps:
	@tools/install-dependencies

build: deps ## build everything
	@$(call configure,$(PRESET))
	@cmake --build --preset $(PRESET)

run: ## the reference host with the simulated services; without a display, its tour with pictures
	@tools/install-dependencies build run
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_run
	@tools/run $(HOST_BUILD)

tour: ## the reference host's tour, also where there is a display
	@tools/install-dependencies build run tour
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_run
	@tools/run $(HOST_BUILD) tour

test: build lint ## every check and every test
	@ctest --preset $(PRESET)

lint: build ## formatting, static analysis, QML and layering checks
	@tools/lint $(BUILD)

format: deps ## format the C++ sources
	@git ls-files -co --exclude-standard '*.cpp' '*.h' | xargs clang-format-14 -i

asan: ## every test under AddressSanitizer and UndefinedBehaviorSanitizer
	@$(MAKE) --no-print-directory build PRESET=asan
	@ctest --preset asan

tsan: ## the tests that start threads, under ThreadSanitizer
	@$(MAKE) --no-print-directory build PRESET=tsan
	@ctest --preset tsan

fuzz: ## the fuzz targets by clang, one after the other, each for FUZZ_SECONDS (60)
	@tools/install-dependencies clang-14 libclang-rt-14-dev
	@$(MAKE) --no-print-directory build PRESET=fuzz
	@tools/fuzz build/fuzz

soak: build ## what a long day of use leaves in memory, handles and threads; takes six minutes
	@ctest --preset soak

mutate: deps ## which one-line changes of the library no test notices: N changes (60), chosen by SEED (1)
	@tools/mutate --number $(or $(N),60) --seed $(or $(SEED),1)

bench: build ## the measurements, each beside a peer or a floor
	@tools/bench $(BUILD)

docs: deps ## the API reference of the public headers, in build/docs/html
	@tools/docs build/docs

gallery: build ## docs/gallery.md, with the pictures of a tour
	@tools/install-dependencies pngquant
	@tools/gallery $(BUILD)

artwork: deps ## render the pictures from their SVG sources
	@tools/render-artwork

kit: ## the archive for those who write a host
	@tools/install-dependencies build doxygen
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_kit
	@cpack --config $(HOST_BUILD)/CPackConfig.cmake -B $(HOST_BUILD)/kit

deb: ## the same as Debian packages, with packages of debug symbols and checksums
	@tools/install-dependencies build doxygen dpkg-dev
	@$(call configure,$(HOST_PRESET))
	@cmake --build --preset $(HOST_PRESET) --target nelvo_kit
	@cpack --config $(HOST_BUILD)/CPackConfig.cmake -G DEB -B $(HOST_BUILD)/deb

clean: ## remove everything that was built
	@rm -rf build
