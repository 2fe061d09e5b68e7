#!/usr/bin/env bash
# Installs the Debian packages a task needs, only those missing. Usage: install-deps.sh build|run|test...
set -euo pipefail

packages=()
ajv=0
for need in "$@"; do
    case "$need" in
        # nlohmann-json3-dev: lxconfig's JSON (header-only, nothing to install at run time).
        # librsvg2-bin renders the PNG icons from the SVG.
        build) packages+=(cmake make g++ qtbase5-dev qtbase5-dev-tools nlohmann-json3-dev
                          librsvg2-bin) ;;
        run) packages+=(xvfb xauth) ;;
        # dpkg-dev computes the package's Depends; lintian, devscripts (hardening-check) and
        # mandoc check the package; x11-utils (xprop) names the window's class under Xvfb.
        # strace kills lxconfig at every call of a write; util-linux gives unshare and mount for
        # the full-filesystem and read-only-folder tests.
        test) packages+=(xvfb xauth x11-utils desktop-file-utils appstream dpkg-dev file lintian
                         devscripts mandoc strace util-linux)
              # The screen-reader test: accessibility bus and registry, the AT-SPI client
              # library, and a private D-Bus session to run them in.
              packages+=(at-spi2-core python3-pyatspi dbus dbus-bin)
              # The shells whose completion of lxconfig is tested.
              packages+=(bash bash-completion zsh fish)
              # Two real validators for the JSON Schema of lxconfig's form: python3-jsonschema,
              # and Ajv on Node.js (from npm, below).
              packages+=(python3 python3-jsonschema nodejs)
              # Debian's npm, unless some other npm came with the Node.js installed.
              command -v npm >/dev/null || packages+=(npm)
              ajv=1
              # The settings sheet printed by a real browser, and its PDF read back.
              packages+=(chromium poppler-utils) ;;
        # The picture of a printed settings sheet in docs/.
        docs) packages+=(chromium poppler-utils) ;;
        # diffutils gives cmp, the floor of lxconfig's start-up figure.
        bench) packages+=(libbenchmark-dev valgrind diffutils) ;;
        # llvm-14 brings llvm-symbolizer: suppressions name functions, so reports need symbols.
        asan) packages+=(g++ libasan8 libubsan1 llvm-14) ;;
        fuzz) packages+=(clang-14 libclang-rt-14-dev llvm-14) ;;
        valgrind) packages+=(valgrind) ;;
        *) echo "install-deps.sh: unknown need '$need'" >&2; exit 2 ;;
    esac
done

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done

sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
if [ ${#missing[@]} -ne 0 ]; then
    echo "Installing: ${missing[*]}"
    "${sudo[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
        "${missing[@]}"
fi

# Ajv (five small packages) for tst_jsonoutput, in the folder the test names; pinned, so that a
# run tomorrow validates as one today.
ajv_prefix=/usr/local/lib/lumarex-test
if [ "$ajv" -eq 1 ] && [ ! -f "$ajv_prefix/node_modules/ajv/package.json" ]; then
    echo "Installing: ajv (npm) in $ajv_prefix"
    "${sudo[@]}" npm install --prefix "$ajv_prefix" --no-audit --no-fund --loglevel=error \
        ajv@8.17.1
fi
