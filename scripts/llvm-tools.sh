# Sourced by the scripts that need LLVM's tools: finds them by what the release installed, the
# default names of the clang and llvm packages first, else the newest versioned ones. Sets
# LUMAREX_CLANG, LUMAREX_CLANGXX and LUMAREX_SYMBOLIZER (empty where none is installed).

# lumarex_llvm_tool NAME: the path of NAME, or of the newest installed NAME-N.
lumarex_llvm_tool() {
    local found
    if found=$(command -v "$1"); then
        echo "$found"
        return
    fi
    found=$(compgen -c "$1-" | grep -E "^$1-[0-9]+$" | sort -t- -k2 -n -r | head -n 1) || true
    [ -z "$found" ] || command -v "$found"
}

LUMAREX_CLANG=$(lumarex_llvm_tool clang)
LUMAREX_CLANGXX=$(lumarex_llvm_tool clang++)
LUMAREX_SYMBOLIZER=$(lumarex_llvm_tool llvm-symbolizer)
if [ -z "$LUMAREX_SYMBOLIZER" ]; then
    # Versioned packages install it only in their own folder.
    LUMAREX_SYMBOLIZER=$(ls -d /usr/lib/llvm-*/bin/llvm-symbolizer 2>/dev/null | sort -V | tail -n 1) || true
fi
