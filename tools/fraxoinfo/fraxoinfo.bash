# Completion of fraxoinfo's commands, options and operations for bash.
_fraxoinfo()
{
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands='why features applications log report diff doctor names'
    local options='--help --version --json --provision'
    case $previous in
    fraxoinfo) mapfile -t COMPREPLY < <(compgen -W "$commands $options $(fraxoinfo names)" -- "$word") ;;
    why) mapfile -t COMPREPLY < <(compgen -W "$(fraxoinfo names)" -- "$word") ;;
    *) case ${COMP_WORDS[1]} in log | report | diff) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;; esac ;;
    esac
}
complete -F _fraxoinfo fraxoinfo
