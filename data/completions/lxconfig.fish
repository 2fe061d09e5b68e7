# fish completion for lxconfig. The words come from lxconfig itself (lxconfig --complete ...):
# commands and options from its command table, field names from the record's field table, the
# values after NAME= from the form's items.

# The command word and how many arguments follow it, options and their values left out.
function __lxconfig_command_and_count
    set -l tokens (commandline -opc)
    set -e tokens[1]
    set -l command
    set -l count 0
    set -l skip 0
    for token in $tokens
        if test $skip = 1
            set skip 0
            continue
        end
        switch $token
            case -o --output --format --fields --from --except
                set skip 1
            case '-*'
            case '*'
                if test -z "$command"
                    set command $token
                else
                    set count (math $count + 1)
                end
        end
    end
    test -n "$command"; and echo $command $count
end

# True when the word before the cursor is one of $argv.
function __lxconfig_after
    set -l tokens (commandline -opc)
    contains -- $tokens[-1] $argv
end

function __lxconfig_needs_command
    not __lxconfig_command_and_count >/dev/null
end

# True when the command is one of $argv and has as many arguments as the last of $argv.
function __lxconfig_at
    set -l found (string split ' ' -- (__lxconfig_command_and_count))
    test (count $found) = 2; or return 1
    contains -- $found[1] $argv[1..-2]; and test $found[2] = $argv[-1]
end

function __lxconfig_wants_files
    __lxconfig_after --format --fields --except; and return 1
    set -l found (string split ' ' -- (__lxconfig_command_and_count))
    test (count $found) = 2; or return 1
    switch $found[1]
        case help explain defaults
            return 1
        case set
            test $found[2] = 0
        case '*'
            return 0
    end
end

function __lxconfig_options
    set -l found (string split ' ' -- (__lxconfig_command_and_count))
    string match -q -- '-*' (commandline -ct); and lxconfig --complete options $found[1]
end

complete -c lxconfig -f
complete -c lxconfig -n __lxconfig_needs_command -a '(lxconfig --complete commands)'
complete -c lxconfig -n __lxconfig_needs_command -l help -l version
complete -c lxconfig -n 'not __lxconfig_needs_command' -a '(__lxconfig_options)'
complete -c lxconfig -n '__lxconfig_at help 0' -a '(lxconfig --complete commands)'
complete -c lxconfig -n '__lxconfig_at explain 0' -a '(lxconfig --complete fields)'
complete -c lxconfig -n 'not __lxconfig_needs_command; and not __lxconfig_at set 0; and __lxconfig_command_and_count | string match -q "set *"; and not string match -q -- "*=*" (commandline -ct)' -a '(lxconfig --complete fields | string replace -r \'$\' =)'
# NAME=VALUE after set FILE: the values the window offers for NAME, offered whole as fish
# matches the whole word (fish escapes the blanks and parentheses of item texts itself).
function __lxconfig_set_values
    set -l token (commandline -ct)
    set -l name (string split -m 1 = -- $token)[1]
    lxconfig --complete values $name | string replace -r '^' -- $name=
end
complete -c lxconfig -n 'not __lxconfig_at set 0; and __lxconfig_command_and_count | string match -q "set *"; and string match -qr -- "^[^-].*=" (commandline -ct)' -x -a '(__lxconfig_set_values)'
complete -c lxconfig -n __lxconfig_wants_files -F
# The values of options; the options themselves come with the command's own list above.
complete -c lxconfig -n '__lxconfig_after -o --output --from' -F
complete -c lxconfig -n '__lxconfig_after --format' -x -a 'text json'
complete -c lxconfig -n '__lxconfig_after --fields --except' -x -a '(lxconfig --complete fields)'
# A value joined to its option (--format=json), offered whole as fish matches the whole word.
function __lxconfig_joined_values
    set -l found (string split ' ' -- (__lxconfig_command_and_count))
    switch (commandline -ct)
        case '--format=*'
            string replace -r '^' -- --format= text json
        case '--fields=*'
            lxconfig --complete fields | string replace -r '^' -- --fields=
        case '--except=*'
            lxconfig --complete fields | string replace -r '^' -- --except=
        case '--backup=*'
            lxconfig --complete options $found[1] | string match -- '--backup=*'
    end
end
complete -c lxconfig -n 'string match -q -- "--*=*" (commandline -ct)' -x -a '(__lxconfig_joined_values)'
