# Runs lxconfig's bash completion for the words given, the last one being the word under the
# cursor, as bash's programmable completion calls it, and prints what it offers.
# Usage: bash bash-harness.sh COMPLETION-SCRIPT WORD...
source "$1"
shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
COMP_LINE="$*"
COMP_POINT=${#COMP_LINE}
_lxconfig
printf '%s\n' "${COMPREPLY[@]}"
