#!/usr/bin/env bash
# glowdeckctl's bash completion against glowdeckctl itself: it offers the commands of --help and nothing
# else, the changes of light and room, and after each command exactly the options that glowdeckctl accepts
# with that command (a refused command line exits with 2 before anything is sent). The runs that are
# accepted have no stored bridge to use, or one on a closed loopback port, so nothing leaves this computer.
#
# Usage: completion.sh <completion script> <glowdeckctl>
set -u
test_name=completion
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
script=${1:?usage: completion.sh <completion script> <glowdeckctl>}
ctl=${2:?usage: completion.sh <completion script> <glowdeckctl>}
work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-completion.XXXXXX") || exit 1
trap 'rm -rf "$work"' EXIT
export GLOWDECK_DISCOVERY_URL="" GLOWDECK_MDNS_SERVICE="" GLOWDECK_ARP_COMMAND="" GLOWDECK_SETTINGS="$work/settings.json"
unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY

complete() { :; } # the script registers itself; here its function is called directly
. "$script"
# The words offered for the command line "$@", the last one being completed; one a line, sorted.
offered() {
    COMP_WORDS=(glowdeckctl "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _glowdeckctl
    printf '%s\n' "${COMPREPLY[@]}" | sed '/^$/d' | sort
}
same() { [ "$2" = "$3" ] || fail "$1: offered [$(echo $2)], expected [$(echo $3)]"; }

help=$("$ctl" --help) || fail "glowdeckctl --help failed"
options=$(grep -oE -- '--[a-z][-a-z]*' <<<"$help" | sort -u)
words=$(grep -oE '^  [a-z][-a-z]*' <<<"$help" | tr -d ' ' | sort -u)
commands=$(offered "")
changes=$(offered room 1 "")

same "the options before a command" "$(offered --)" "$options"
same "the commands and changes" "$(sort -u <<<"$commands"$'\n'"$changes")" "$words"
same "the changes of a light" "$(offered light 1 "")" "$(grep -vxE 'brighter|darker' <<<"$changes")"
same "completing a prefix" "$(offered disc)" "discover"
same "a value of --bridge" "$(offered --bridge "")" ""

operands() {
    case $1 in
    light | room) echo "$1 1 on" ;;
    scene) echo "scene 1" ;;
    *) echo "$1" ;;
    esac
}
value() {
    case $1 in
    --bridge) echo "127.0.0.1:9" ;; # the discard port: closed, on loopback
    --key) echo "key" ;;
    --settings) echo "$work/settings.json" ;;
    --in) echo 5 ;;
    --wait) echo 1 ;;
    --discovery-url) echo "" ;;
    --pick | --bridge-id) echo 001788FFFE6A3B2C ;;
    esac
}
# --bridge-id refuses an id that is not paired: the one it names is stored, on the closed port.
printf '{"bridges":[{"id":"001788FFFE6A3B2C","address":"127.0.0.1:9","key":"key","transport":"http"}]}' \
    >"$work/settings.json"
for command in $commands; do
    accepted=""
    for option in $(grep -vxE -- '--help|--version' <<<"$options"); do
        args=($(operands "$command") "$option")
        case $option in
        --json | --direct) ;;
        --with-key) args+=(--json) ;; # it only goes with --json
        *) args+=("$(value "$option")") ;;
        esac
        timeout 20 "$ctl" "${args[@]}" >/dev/null 2>&1
        [ $? -ne 2 ] && accepted+="$option"$'\n'
    done
    same "the options of $command" "$(offered $(operands "$command" | cut -d' ' -f1-2) --)" \
        "$(sed '/^$/d' <<<"$accepted" | sort)"
done
say "PASS: $(wc -w <<<"$commands") commands, $(wc -w <<<"$changes") changes, $(wc -w <<<"$options") options"
