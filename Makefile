# The project's commands. `make help` explains them.
PRESET ?= release
BUILD = build/$(PRESET)

.DEFAULT_GOAL := help
.PHONY: help deps build run tour test lint format asan tsan fuzz soak bench docs gallery kit artwork clean

help: ## this list
	@grep -hE '^[a-z]+:.*## ' $(MAKEFILE_LIST) | sed -E 's/^([a-z]+):.*## (.*)/  make \1\t\2/' | expand -t 16
	@echo "  PRESET=debug|release|asan|tsan chooses the build (now $(PRESET))"

deps:
	@tools/install-dependencies

build: deps ## build everything
	@[ -f $(BUILD)/build.ninja ] || cmake --preset $(PRESET) >/dev/null
	@cmake --build --preset $(PRESET)

run: build ## the reference host with the simulated services; without a display, its tour with pictures
	@tools/run $(BUILD)

tour: build ## the reference host's tour, also where there is a display
	@tools/run $(BUILD) tour

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

bench: build ## the measurements, each beside a peer or a floor
	@tools/bench $(BUILD)

docs: deps ## the API reference of the public headers, in build/docs/html
	@tools/docs build/docs

gallery: build ## docs/gallery.md, with the pictures of a tour
	@tools/install-dependencies pngquant
	@tools/gallery $(BUILD)

artwork: deps ## render the pictures from their SVG sources
	@tools/render-artwork

kit: build ## the archive for those who write a host
	@cpack --config $(BUILD)/CPackConfig.cmake -B $(BUILD)/kit

clean: ## remove everything that was built
	@rm -rf build
