#!/usr/bin/env bash
# Installs the Debian packages a task needs, only those missing. Usage: install-deps.sh build|run|test...
set -euo pipefail

packages=()
for need in "$@"; do
    case "$need" in
        build) packages+=(cmake make g++ qtbase5-dev qtbase5-dev-tools) ;;
        run) packages+=(xvfb xauth) ;;
        test) packages+=(xvfb xauth desktop-file-utils appstream dpkg-dev file)
              # The screen-reader test: accessibility bus and registry, the AT-SPI client
              # library, and a private D-Bus session to run them in.
              packages+=(at-spi2-core python3-pyatspi dbus dbus-bin) ;;
        bench) packages+=(libbenchmark-dev valgrind) ;;
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
