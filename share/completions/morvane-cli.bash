# Completion of morvane-cli for bash. The program itself says what can come next.
_morvane_cli() {
    local kind line
    COMPREPLY=()
    {
        read -r kind
        while IFS= read -r line; do
            line=${line%%$'\t'*}
            COMPREPLY+=("${line%/}") # bash adds the slash of a folder
        done
    } < <(morvane-cli --complete-words "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    [[ $kind == files ]] && compopt -o filenames 2>/dev/null
    return 0
}
complete -F _morvane_cli morvane-cli
