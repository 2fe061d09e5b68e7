# bash completion for lxconfig. The words come from lxconfig itself (lxconfig --complete ...):
# commands and options from its command table, field names from the record's field table, the
# values after NAME= from the form's items.
# bash-completion loads this file, so its helpers are at hand: _init_completion puts back
# together the words that bash splits at "=" (--backup=numbered, gpsReceiver=0), without which
# the arguments after such a word would be miscounted.

# The command word of the line and its index: the first word that is neither an option nor an
# option's value.
_lxconfig_command()
{
    local i
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            -o | --output | --format | --fields | --from | --except) ((i++)) ;;
            -*) ;;
            *)
                printf '%s %s\n' "${words[i]}" "$i"
                return
                ;;
        esac
    done
}

# The values of the setting in NAME=VALUE under the cursor, as the window offers them (item
# texts hold blanks, commas, parentheses): bash replaces only what follows the "=", so the
# replies are the values alone, each with a backslash before the characters the shell reads.
_lxconfig_values()
{
    local typed=${cur#*=} value
    typed=${typed//\\/} # the backslashes of a value typed so far
    local -a values=()
    while IFS= read -r value; do
        [[ ${value,,} == "${typed,,}"* ]] && values+=("$value") # set ignores letter case
    done < <(lxconfig --complete values "${cur%%=*}")
    ((${#values[@]})) || return
    mapfile -t COMPREPLY < <(printf '%s\n' "${values[@]}" |
        sed 's/[][ !"#$&'\''()*;:<=>?\\^`{|}~]/\\&/g')
}

_lxconfig()
{
    local cur prev words cword split
    _init_completion -s || return
    local found command at
    found=$(_lxconfig_command)
    command=${found% *}
    at=${found#* }
    case $prev in
        -o | --output | --from)
            _filedir
            return
            ;;
        --format)
            mapfile -t COMPREPLY < <(compgen -W "text json" -- "$cur")
            return
            ;;
        --fields | --except)
            mapfile -t COMPREPLY < <(compgen -W "$(lxconfig --complete fields)" -- "$cur")
            return
            ;;
        --backup)
            # --backup=KIND: the kinds as the command's own option list spells them.
            if [[ $split == true ]]; then
                local kinds
                kinds=$(lxconfig --complete options "$command" | sed -n 's/^--backup=//p')
                mapfile -t COMPREPLY < <(compgen -W "$kinds" -- "$cur")
                return
            fi
            ;;
    esac
    $split && return # the value of an option that takes none
    if [[ -z $found ]]; then
        if [[ $cur == -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W "--help --version" -- "$cur")
        else
            mapfile -t COMPREPLY < <(compgen -W "$(lxconfig --complete commands)" -- "$cur")
        fi
        return
    fi
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(lxconfig --complete options "$command")" -- "$cur")
        return
    fi
    # The arguments after the command word, options and their values left out.
    local i arguments=0
    for ((i = at + 1; i < cword; i++)); do
        case ${words[i]} in
            -o | --output | --format | --fields | --from | --except) ((i++)) ;;
            -*) ;;
            *) ((arguments++)) ;;
        esac
    done
    case $command in
        help)
            ((arguments == 0)) &&
                mapfile -t COMPREPLY < <(compgen -W "$(lxconfig --complete commands)" -- "$cur")
            ;;
        explain)
            ((arguments == 0)) &&
                mapfile -t COMPREPLY < <(compgen -W "$(lxconfig --complete fields)" -- "$cur")
            ;;
        set)
            if ((arguments == 0)); then
                _filedir
            elif [[ $cur != *=* ]]; then
                compopt -o nospace 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -S = -W "$(lxconfig --complete fields)" -- "$cur")
            else
                _lxconfig_values
            fi
            ;;
        defaults) ;;
        *) _filedir ;;
    esac
}
complete -F _lxconfig lxconfig
