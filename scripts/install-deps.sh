#!/usr/bin/env bash
# Installs the Debian packages a task needs, only those missing. Usage: install-deps.sh build|run|test...
set -euo pipefail

packages=()
for need in "$@"; do
    case "$need" in
        # librsvg2-bin renders the PNG icons from the SVG.
        build) packages+=(cmake make g++ qtbase5-dev qtbase5-dev-tools librsvg2-bin) ;;
        run) packages+=(xvfb xauth) ;;
        # dpkg-dev computes the package's Depends; lintian, devscripts (hardening-check) and
        # mandoc check the package; x11-utils (xprop) names the window's class under Xvfb.
        test) packages+=(xvfb xauth x11-utils desktop-file-utils appstream dpkg-dev file lintian
                         devscripts mandoc) ;;
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
