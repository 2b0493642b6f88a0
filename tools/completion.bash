# SPDX-License-Identifier: MIT
# Completion of the tools for bash: their options, as their help names them, and files.
_qrndom_tool() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    # bash takes "--indent=4" for three words.
    if [[ $word == = ]]; then
        word=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()
    case $before in
    --indent) mapfile -t COMPREPLY < <(compgen -W '0 1 2 3 4 8' -- "$word") ;;
    --encoding)
        mapfile -t COMPREPLY < <(compgen -W 'UTF-8 UTF-16 US-ASCII ISO-8859-1 windows-1252' -- "$word")
        ;;
    *)
        if [[ $word == -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W \
                "$("$1" --help 2>/dev/null | grep -oE '(^|[ ,])--?[A-Za-z][a-z-]*' |
                    LC_ALL=C sort -u)" -- "$word")
        fi
        ;;
    esac
}
complete -o default -F _qrndom_tool qrndom-check qrndom-edit
