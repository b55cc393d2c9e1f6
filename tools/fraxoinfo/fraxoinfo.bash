# Completion of fraxoinfo's commands, options and operations for bash; what it offers is what the program's help lists.
_fraxoinfo()
{
    local word=${COMP_WORDS[COMP_CWORD]} commands command='' name
    commands=$(fraxoinfo --help | sed -n '/^Subcommands/,/^$/s/^  \([a-z]*\) .*/\1/p')
    for name in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ -z $command && " ${commands//$'\n'/ } " == *" $name "* ]] && command=$name
    done
    local words=''
    case $word in -*) words=$(fraxoinfo ${command:+"$command"} --help | grep -oE -e '--[a-z]+') ;; esac
    case $command in
    '') words+=" $commands $(fraxoinfo names)" ;;
    why | watch) words+=" $(fraxoinfo names)" ;;
    log | report | diff | ini) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    esac
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -o filenames -F _fraxoinfo fraxoinfo
