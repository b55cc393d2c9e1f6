# Completion for bash of fraxoreg's operations and switches, which its help lists, and of keys, types and files.
_fraxoreg()
{
    local operation=${COMP_WORDS[1]} previous=$3 word=$2 parent tail below
    case $COMP_CWORD,$operation,$previous in
    1,*) mapfile -t COMPREPLY < <(compgen -W "$(fraxoreg /? | sed -n 's/^  \([a-z]*\)  .*/\1/p')" -- "$word") ;;
    *,add,[/-]t) mapfile -t COMPREPLY < <(compgen -W "$(fraxoreg add /? | grep -o 'REG_[A-Z_]*')" -- "$word") ;;
    2,import,* | 3,export,*) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    2,*) # a key, in a quote that was begun: what is below the one before the last backslash
        parent=${word%\\*} tail=${word##*\\}
        case $word in
        *\\*) mapfile -t COMPREPLY < <(fraxoreg query "$parent" 2>/dev/null | sed -n 's/^HKEY_.*\\//p' |
            while read -r below; do [[ ${below,,} == "${tail,,}"* ]] && printf '%s\\%s\n' "$parent" "$below"; done) ;;
        *) mapfile -t COMPREPLY < <(compgen -W 'HKLM HKCU HKCR' -- "$word") ;;
        esac ;;
    esac
    mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <([ "$COMP_CWORD" -eq 1 ] ||
        compgen -W "$(fraxoreg "$operation" /? | sed -nE 's/^  (\/[a-z]+|--[a-z-]+).*/\1/p')" -- "$word")
}
complete -F _fraxoreg fraxoreg
