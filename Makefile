# Quick start: `make demo` and `make test`. Both install what is missing first.
WERROR ?= OFF
CONFIGURE_FLAGS = -DPROTOFIX_WERROR=$(WERROR)
STAGE = $(CURDIR)/build/stage

.PHONY: deps build build-asan demo test test-default test-asan test-package clean

deps:
	bash scripts/install-deps

build: deps
	cmake --preset default $(CONFIGURE_FLAGS)
	cmake --build --preset default

build-asan: deps
	cmake --preset asan $(CONFIGURE_FLAGS)
	cmake --build --preset asan

demo: build
	bash scripts/demo build/default/protofix

test-default: build
	ctest --preset default

test-asan: build-asan
	ctest --preset asan

# Installs the default build into a staging prefix and builds a consumer project against it.
test-package: build
	rm -rf $(STAGE) build/package
	cmake --install build/default --prefix $(STAGE)
	cmake -S tests/package -B build/package -G Ninja -DCMAKE_PREFIX_PATH=$(STAGE) $(CONFIGURE_FLAGS)
	cmake --build build/package
	build/package/consumer
	PKG_CONFIG_PATH=$$(dirname $$(find $(STAGE) -name protofix.pc)) bash tests/package/pkgconfig.sh

test: test-default test-asan test-package

clean:
	rm -rf build
