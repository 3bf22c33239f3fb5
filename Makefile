# Quick start: `make demo` and `make test`. Both install what is missing first.
WERROR ?= OFF
CONFIGURE_FLAGS = -DPROTOFIX_WERROR=$(WERROR)
STAGE = $(CURDIR)/build/stage

.PHONY: deps configure build build-tool build-asan build-shared demo test test-default test-asan test-tsan \
        test-package package-static package-shared package-library package package-deb catalog lint \
        format format-check clean

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

# Installs the library (static, then shared) into a staging prefix and uses each install with no
# environment: its tool, manual page and completion, and a consumer project built with
# find_package and with pkg-config; the shared library exports every function of the headers.
package-static: build
	bash tests/package/check-install.sh static $(STAGE)/static build/default "$(CONFIGURE_FLAGS)"

# The shared build is also the one packaged, so its prefix is /usr (the multiarch library
# directory); the checks install it elsewhere with --prefix.
build-shared: deps
	cmake -S . -B build/shared -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_SHARED_LIBS=ON \
	  -DCMAKE_INSTALL_PREFIX=/usr -DPROTOFIX_BUILD_TESTS=OFF -DPROTOFIX_BUILD_BENCH=OFF $(CONFIGURE_FLAGS)
	cmake --build build/shared -j 2

package-shared: build-shared
	bash tests/package/check-install.sh shared $(STAGE)/shared build/shared "$(CONFIGURE_FLAGS)"

# README's install sequence for the library alone: only JsonCpp may be needed, so the finding of
# the test, benchmark and tool packages is disabled, and a consumer builds against the install.
package-library: deps
	cmake -S . -B build/library -G Ninja -DCMAKE_BUILD_TYPE=Release -DPROTOFIX_BUILD_TESTS=OFF \
	  -DPROTOFIX_BUILD_BENCH=OFF -DPROTOFIX_BUILD_TOOL=OFF -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON \
	  -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON $(CONFIGURE_FLAGS)
	cmake --build build/library -j 2
	rm -rf $(STAGE)/library build/library/consumer
	cmake --install build/library --prefix $(STAGE)/library >/dev/null
	cmake -S tests/package -B build/library/consumer -G Ninja -DCMAKE_PREFIX_PATH=$(STAGE)/library \
	  $(CONFIGURE_FLAGS) >/dev/null
	cmake --build build/library/consumer >/dev/null
	build/library/consumer/consumer

# Debian packages of the tool, the library and its development files, in build/shared/packages.
package: build-shared
	rm -rf build/shared/packages
	cd build/shared && cpack
	@ls build/shared/packages/*.deb build/shared/packages/*.ddeb

# The packages inspected, unpacked into a temporary root and used from there.
package-deb: package
	bash tests/package/check-deb.sh build/shared/packages "$(CONFIGURE_FLAGS)"

test-package: package-static package-shared package-library package-deb

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
