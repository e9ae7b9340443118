# Completion of rvfinspect for fish. Commands and options are taken from its help.
function __rvfinspect_words
    set -l command (commandline -opc)[2]
    if test -z "$command"
        echo --help
        echo --version
        rvfinspect --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p'
    else
        rvfinspect $command --help | sed -nE 's/^  (--[a-z-]+).*/\1/p'
    end
end
complete -c rvfinspect -a '(__rvfinspect_words)'
