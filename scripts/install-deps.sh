#!/usr/bin/env bash
# Installs the Debian packages a task needs, only those missing. Usage: install-deps.sh build|run|test...
set -euo pipefail

packages=()
npm_checkers=0
newer_qemu=0
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
              # Real FAT32 and exFAT cards for lxconfig's file tests: images made by mkfs.vfat
              # and mkfs.exfat, mounted with FUSE (the kernel has no FAT driver) by fusefat and
              # exfat-fuse, which bring fuse's fusermount.
              packages+=(dosfstools exfatprogs fusefat exfat-fuse fuse)
              # Cards that lie, for lxconfig write's read-back (tests/cli/lyingcard.py).
              packages+=(python3-fusepy)
              # Two real validators for the JSON Schema of lxconfig's form: python3-jsonschema,
              # and Ajv on Node.js (tests/html, below).
              packages+=(python3 python3-jsonschema)
              # The settings sheet printed by a real browser, and its PDF read back.
              packages+=(chromium poppler-utils)
              # git, which diffs configuration files through lxconfig's text form (textconv).
              packages+=(git)
              # The sheet's checkers and Ajv (tests/html): the Nu HTML Checker on Java, axe-core
              # and puppeteer-core on Node, installed from the lockfile by npm ci below.
              # A Node or Java installed otherwise (not by Debian's packages) is used as it is.
              command -v npm >/dev/null || packages+=(nodejs npm)
              command -v java >/dev/null || packages+=(default-jre-headless)
              npm_checkers=1 ;;
        # The picture of a printed settings sheet in docs/.
        docs) packages+=(chromium poppler-utils) ;;
        # diffutils gives cmp, the floor of lxconfig's start-up figure.
        # time (GNU time) gives lxconfig report's peak memory.
        bench) packages+=(libbenchmark-dev valgrind diffutils time) ;;
        # The release's default compilers and tools, never a fixed version, so that the same
        # names serve Debian 12 and Debian 13: g++ brings the sanitizer run-time libraries of
        # its own version, and llvm brings llvm-symbolizer (suppressions name functions, so
        # reports need symbols); scripts/llvm-tools.sh finds them as installed.
        asan) packages+=(g++ llvm) ;;
        fuzz) packages+=(clang libclang-rt-dev llvm) ;;
        valgrind) packages+=(valgrind) ;;
        # The arm64 build (scripts/package-arm64.sh): Debian's cross compilers, the arm64 Qt
        # development packages beside the build machine's own (multiarch, same versions from
        # the same archive), and qemu-user to run the arm64 programs without binfmt.
        arm64) packages+=(crossbuild-essential-arm64 qemu-user-static qtbase5-dev:arm64
                          dpkg-dev lintian)
               newer_qemu=1 ;;
        # A fresh Debian 13 root into which the package is installed (tests/packaging).
        debootstrap) packages+=(debootstrap debian-archive-keyring) ;;
        *) echo "install-deps.sh: unknown need '$need'" >&2; exit 2 ;;
    esac
done

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -ne 0 ]; then
    sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    # A package of another architecture needs that architecture known to dpkg first; apt then keeps
    # the build machine's own packages at the same versions.
    for package in "${missing[@]}"; do
        case "$package" in
            *:*)
                arch=${package##*:}
                if [ "$arch" != "$(dpkg --print-architecture)" ] &&
                    ! dpkg --print-foreign-architectures | grep -qx "$arch"; then
                    echo "Adding the architecture $arch to dpkg"
                    "${sudo[@]}" dpkg --add-architecture "$arch"
                fi
                ;;
        esac
    done
    echo "Installing: ${missing[*]}"
    "${sudo[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The npm packages of tests/html, exactly as its lockfile names them, when they are not there yet
# or the lockfile changed since: a copy of the lockfile that npm ci installed from stays beside
# them. No install scripts run: puppeteer-core drives Debian's chromium and fetches no browser.
html_checks="$(cd "$(dirname "$0")/.." && pwd)/tests/html"
installed_lock=$html_checks/node_modules/.installed-from-package-lock.json
if [ "$npm_checkers" -eq 1 ] && ! cmp -s "$html_checks/package-lock.json" "$installed_lock"; then
    echo "Installing the npm packages of tests/html"
    (cd "$html_checks" && npm ci --no-audit --no-fund --ignore-scripts --loglevel=error)
    cp "$html_checks/package-lock.json" "$installed_lock"
fi

# The arm64 suites start lxconfig from a test, and QProcess starts it with clone(CLONE_PIDFD),
# which qemu-user emulates from 8.0 on. Debian 13 has 10.0; Debian 12 has 7.2, and its own
# backports archive (Debian's, signed by the same keys) has a newer one, taken for that one
# package only: apt never prefers backports over the release for anything else.
if [ "$newer_qemu" -eq 1 ]; then
    qemu_major=$(qemu-aarch64-static --version | sed -n 's/^qemu-aarch64 version \([0-9]*\).*/\1/p')
    . /etc/os-release
    if [ "${qemu_major:-0}" -lt 8 ] && [ "${VERSION_CODENAME:-}" = bookworm ]; then
        sudo=()
        [ "$(id -u)" -eq 0 ] || sudo=(sudo)
        echo "Installing qemu-user-static from bookworm-backports (this has qemu $qemu_major)"
        echo "deb http://deb.debian.org/debian bookworm-backports main" |
            "${sudo[@]}" tee /etc/apt/sources.list.d/bookworm-backports.list >/dev/null
        "${sudo[@]}" apt-get update -qq
        DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
            -t bookworm-backports qemu-user-static
    fi
fi
