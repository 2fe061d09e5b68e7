#!/usr/bin/env bash
# Installs the Debian packages a task needs, only those missing. Usage: install-deps.sh build|run|test...
set -euo pipefail

packages=()
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
              # The screen reader itself (its speech is read from its debug log, no speech
              # server needed) and xdotool, which gives the editor's window the keyboard focus
              # and types on the virtual display.
              packages+=(orca xdotool)
              # The shells whose completion of lxconfig is tested.
              packages+=(bash bash-completion zsh fish)
              # A real validator for the JSON Schema of lxconfig's form.
              packages+=(python3 python3-jsonschema)
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
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
echo "Installing: ${missing[*]}"
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
