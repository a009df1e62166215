# Bash completion of glowdeckctl: its commands, the changes of "light" and "room", and the options that go
# with the command given. Lamp, room and scene ids and names are not offered: finding them would ask the bridge.
# Installed as share/bash-completion/completions/glowdeckctl, where bash-completion loads it on first use.

_glowdeckctl()
{
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    # "--settings=FILE": bash splits the word at "=".
    if [[ $prev == "=" && $COMP_CWORD -ge 2 ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $cur == "=" ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 1]}
        cur=""
    fi

    local value_options="--bridge --bridge-id --key --settings --in --wait --discovery-url --pick --trust-root"
    case $prev in
    --settings | --trust-root)
        COMPREPLY=($(compgen -f -- "$cur"))
        compopt -o filenames 2>/dev/null
        return
        ;;
    --bridge | --bridge-id | --key | --in | --wait | --discovery-url | --pick)
        return # a value of the user's own
        ;;
    esac

    # The command and its operands: the words that are neither options nor their values.
    local i word command="" operands=0
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == "=" ]]; then
            ((i++)) # the value after "--option="
        elif [[ " $value_options " == *" $word "* ]]; then
            [[ ${COMP_WORDS[i + 1]} == "=" ]] || ((i++))
        elif [[ $word != -* ]]; then
            if [[ -z $command ]]; then
                command=$word
            else
                ((operands++))
            fi
        fi
    done

    local options="--settings --trust-root"
    case $command in
    lights | rooms | scenes) options+=" --json --direct --bridge --bridge-id --key" ;;
    status | watch) options+=" --json --bridge --bridge-id --key" ;;
    light | room | scene | all-on) options+=" --direct --bridge --bridge-id --key" ;;
    all-off) options+=" --in --direct --bridge --bridge-id --key" ;;
    discover) options+=" --discovery-url --pick --json" ;;
    pair) options+=" --wait --bridge --bridge-id --pick --discovery-url" ;;
    hotkeys) options+=" --json" ;;
    "") options="--bridge --bridge-id --key --settings --trust-root --json --direct --in --wait --discovery-url --pick --help --version" ;;
    esac
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        return
    fi

    local words=""
    case $command in
    "") words="lights rooms scenes light room scene all-on all-off discover pair status watch hotkeys" ;;
    light) [[ $operands -eq 1 ]] && words="on off brightness hue ct" ;;
    room) [[ $operands -eq 1 ]] && words="on off brightness hue ct brighter darker" ;;
    esac
    COMPREPLY=($(compgen -W "$words" -- "$cur"))
}
complete -F _glowdeckctl glowdeckctl
