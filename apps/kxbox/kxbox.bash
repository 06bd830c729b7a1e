# Completion of kxbox for bash: commands, options, libraries, and the nodes of the library that the
# line names.

# The words that a help page lists: the commands, or the options.
_kxbox_commands() {
    "$@" --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/s/^  \([a-z-]*\) .*/\1/p'
}

_kxbox_options() {
    "$@" --help 2>/dev/null | grep -o -- '--[a-z-]*'
}

# The root, and the addresses of all nodes; "$3" is --file-names or nothing.
_kxbox_nodes() {
    echo /
    "$1" find "$2" '' --in name ${3:+"$3"} 2>/dev/null | grep -v '^  '
}

# The words of the line up to the cursor, one a line. Readline takes names apart at colons.
_kxbox_words() {
    local word joined=
    for word in "$@"; do
        if [[ -n $joined && ($word == :* || $joined == *:) ]]; then
            joined+=$word
        else
            [[ -z $joined ]] || printf '%s\n' "$joined"
            joined=$word
        fi
    done
    printf '%s\n' "$joined"
}

# What stands on the line before the cursor: the command, and its arguments that are no options.
# Options of which the value follows are skipped with it.
_kxbox_arguments() {
    local word skip=
    for word in "$@"; do
        if [[ -n $skip ]]; then
            skip=
        elif [[ $word == --@(to|at|into|from|resource|bitmap|tooltip|expanded|format|title|depth|in|lang) ]]; then
            skip=1
        elif [[ $word != -* ]]; then
            printf '%s\n' "$word"
        fi
    done
}

_kxbox_unquoted() {
    sed -e "s/^[\"']//" -e 's/\\\(.\)/\1/g' <<<"$1"
}

# The library whose nodes the word after option $1 names: that of --into for copy --to.
_kxbox_library() {
    local option=$1 i
    shift
    if [[ $option == --to ]]; then
        for ((i = 1; i < $#; ++i)); do
            if [[ ${!i} == --into ]]; then
                i=$((i + 1))
                printf '%s\n' "${!i}"
                return
            fi
        done
    fi
    _kxbox_arguments "$@" | sed -n 1p
}

_kxbox() {
    local -a words
    mapfile -t words < <(_kxbox_words "${COMP_WORDS[@]:0:COMP_CWORD+1}")
    local program=${words[0]} current previous=${words[-2]}
    local command candidates candidate library taken names=
    local -a before=("${words[@]:1:${#words[@]}-2}") call
    COMPREPLY=()
    current=$(_kxbox_unquoted "${words[-1]}")
    [[ " ${before[*]} " != *" --file-names "* ]] || names=--file-names
    call=("$program" "${before[0]}")
    command=${before[0]}
    before=("${before[@]:1}")
    if [[ $command == tr && ${#before[@]} -gt 0 ]]; then
        command="tr ${before[0]}"
        call+=("${before[0]}")
        before=("${before[@]:1}")
    fi
    local -a arguments
    mapfile -t arguments < <(_kxbox_arguments "${before[@]}")
    library=$(_kxbox_unquoted "$(_kxbox_library "$previous" "${before[@]}")")

    if [[ -z $command ]]; then
        candidates=$(_kxbox_commands "$program")
    elif [[ $command == tr ]]; then
        candidates=$(_kxbox_commands "$program" tr)
    elif [[ $previous == --format ]]; then
        candidates=$'directory\narchive'
    elif [[ $previous == --expanded ]]; then
        candidates=$'yes\nno'
    elif [[ $previous == --in ]]; then
        candidates=$'name\ntooltip\nio'
    elif [[ $previous == --@(into|from|resource) ]]; then
        return # files
    elif [[ $previous == --to ]]; then
        candidates=$(_kxbox_nodes "$program" "$library" "$names")
    elif [[ $current == -* ]]; then
        candidates=$(_kxbox_options "${call[@]}")
    elif ((${#arguments[@]} == 0)); then
        return # the library
    elif [[ $command == @(remove|move|copy) ]] ||
        { [[ $command == @(tree|show|set|add-folder|add-box|rename|reorder|tr get|tr set) ]] &&
            ((${#arguments[@]} == 1)); }; then
        candidates=$(_kxbox_nodes "$program" "$library" "$names")
    else
        return
    fi
    # Readline then quotes what has blanks, and shows only what follows the last slash.
    compopt -o filenames 2>/dev/null
    # Of a word with colons it replaces what follows the last one.
    taken=${current%"${current##*:}"}
    while IFS= read -r candidate; do
        [[ -n $candidate && $candidate == "$current"* ]] && COMPREPLY+=("${candidate#"$taken"}")
    done <<<"$candidates"
}

shopt -s extglob
complete -o default -F _kxbox kxbox
