# Runs lxconfig's bash completion for the words given, the last one being the word under the
# cursor, as bash's programmable completion calls it, and prints what it offers.
# Usage: bash bash-harness.sh COMPLETION-SCRIPT WORD...
# bash-completion is loaded first, as in an interactive shell, and the line is cut into
# COMP_WORDS as bash cuts it: also at the characters of COMP_WORDBREAKS, each run of them a
# word of its own ("--backup=numbered" is "--backup", "=", "numbered").
source /usr/share/bash-completion/bash_completion
source "$1"
shift
COMP_LINE="$*"
COMP_POINT=${#COMP_LINE}
breaks=${COMP_WORDBREAKS//[[:space:]]/}
COMP_WORDS=()
for word in "$@"; do
    piece=
    kind= # of the piece: "break" or "text"
    for ((i = 0; i < ${#word}; i++)); do
        c=${word:i:1}
        [[ $breaks == *"$c"* ]] && now=break || now=text
        if [[ -n $piece && $now != "$kind" ]]; then
            COMP_WORDS+=("$piece")
            piece=
        fi
        piece+=$c
        kind=$now
    done
    # An empty word (the cursor after a blank) stays a word.
    [[ -n $piece || -z $word ]] && COMP_WORDS+=("$piece")
done
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
_lxconfig
printf '%s\n' "${COMPREPLY[@]}"
