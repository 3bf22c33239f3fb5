# Quick start: `make demo` and `make test`. Both install what is missing first.
WERROR ?= OFF
CONFIGURE_FLAGS = -DPROTOFIX_WERROR=$(WERROR)
STAGE = $(CURDIR)/build/stage

.PHONY: deps configure build build-tool build-asan demo test test-default test-asan test-tsan test-package \
        package-static package-shared catalog lint format format-check clean

deps:
	bash scripts/install-deps

configure: deps
	cmake --preset default $(CONFIGURE_FLAGS)

# The library and the tool only: what the demo runs.
build-tool: configure
	cmake --build --preset default --target protofix_tool

build: configure
	cmake --build --preset default

build-asan: deps
	cmake --preset asan $(CONFIGURE_FLAGS)
	cmake --build --preset asan

demo: build-tool
	bash scripts/demo build/default/protofix

test-default: build
	ctest --preset default

test-asan: build-asan
	ctest --preset asan

# The threads test under ThreadSanitizer (only the unit tests are built there).
test-tsan: deps
	cmake --preset tsan $(CONFIGURE_FLAGS)
	cmake --build --preset tsan
	ctest --preset tsan

# Installs the library (static, then shared) into a staging prefix and builds a consumer project
# against each install, with find_package and with pkg-config.
package-static: build
	bash tests/package/check-install.sh static $(STAGE)/static build/default "$(CONFIGURE_FLAGS)"

package-shared: deps
	cmake -S . -B build/shared -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_SHARED_LIBS=ON \
	  -DPROTOFIX_BUILD_TESTS=OFF -DPROTOFIX_BUILD_BENCH=OFF $(CONFIGURE_FLAGS)
	cmake --build build/shared
	bash tests/package/check-install.sh shared $(STAGE)/shared build/shared "$(CONFIGURE_FLAGS)"

test-package: package-static package-shared

# The section catalog, written again from the section table, the descriptors and the examples.
catalog: build-tool
	build/default/protofix sections --markdown --examples examples >docs/sections.md

# Static analysis of the library and the tool, with the checks of .clang-tidy; no finding is left.
lint: deps
	cmake --preset default $(CONFIGURE_FLAGS) -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
	run-clang-tidy -p build/default -quiet -j 2 "$(CURDIR)/(src|tools)/.*\.cpp" >build/lint.log 2>&1 || \
	  { grep -E 'warning:|error:' build/lint.log; exit 1; }
	@echo "lint: no finding"

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h' '*.c')

format-check: deps
	clang-format --dry-run --Werror $$(git ls-files '*.cpp' '*.h' '*.c')

test: format-check lint test-default test-asan test-tsan test-package

clean:
	rm -rf build
