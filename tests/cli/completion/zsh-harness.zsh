# Runs lxconfig's zsh completion function for the words given, the last one being the word under
# the cursor. compadd and _files stand in for the completion system and print what they would
# offer (_files: "(files)"), as the word would stand on the line (IPREFIX, the part the function
# keeps in front, included, and the word quoted as compadd quotes what it inserts unless told -Q:
# "Custom\ settings"); the function itself runs in zsh as compinit loads it.
# Usage: zsh -f zsh-harness.zsh COMPLETION-FOLDER WORD...
compadd() {
  local suffix= quote=1
  while (( $# )); do
    case $1 in
      (-S) suffix=$2; shift 2 ;;
      (-Q) quote=0; shift ;;
      (--) shift; break ;;
      (-*) shift ;;
      (*) break ;;
    esac
  done
  local word
  for word in "$@"; do
    [[ $word == ${PREFIX}* ]] || continue
    (( quote )) && word=${(q)word}
    print -r -- "$IPREFIX$word$suffix"
  done
}
_files() { print -r -- "(files)" }
# Loaded as compinit loads it: the file's body is the function's first call.
fpath=($1 $fpath)
autoload -Uz _lxconfig
shift
words=("$@")
CURRENT=$#
PREFIX=$words[CURRENT]
IPREFIX=
_lxconfig || true # a completion that offers nothing is not a failure
