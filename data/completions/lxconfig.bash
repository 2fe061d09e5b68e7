# bash completion for lxconfig. The words come from lxconfig itself (lxconfig --complete ...):
# commands and options from its command table, field names from the record's field table.

# The command word of the line: the first word that is neither an option nor an option's value.
_lxconfig_command()
{
    local i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            -o | --output | --format | --fields) ((i++)) ;;
            -*) ;;
            *)
                printf '%s %s\n' "${COMP_WORDS[i]}" "$i"
                return
                ;;
        esac
    done
}

_lxconfig()
{
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local found command at
    COMPREPLY=()
    case $prev in
        -o | --output)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            return
            ;;
        --format)
            mapfile -t COMPREPLY < <(compgen -W "text json" -- "$cur")
            return
            ;;
        --fields)
            mapfile -t COMPREPLY < <(compgen -W "$(lxconfig --complete fields)" -- "$cur")
            return
            ;;
    esac
    found=$(_lxconfig_command)
    command=${found% *}
    at=${found#* }
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
    for ((i = at + 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            -o | --output | --format | --fields) ((i++)) ;;
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
                compopt -o filenames 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            elif [[ $cur != *=* ]]; then
                compopt -o nospace 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -S = -W "$(lxconfig --complete fields)" -- "$cur")
            fi
            ;;
        defaults) ;;
        *)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            ;;
    esac
}
complete -F _lxconfig lxconfig
