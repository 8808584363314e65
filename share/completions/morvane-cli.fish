# Completion of morvane-cli for fish. The program itself says what can come next.
function __morvane_cli
    set -l words (commandline -opc)
    morvane-cli --complete-words $words[2..] (commandline -ct) 2>/dev/null | tail -n +2
end
complete -c morvane-cli -f -a '(__morvane_cli)'
