#!/usr/bin/env bash
# The manual pages as `man` shows them: rendered without a single warning, and honest about the programs
# of today: every option a program's --help names, and every command and change glowdeckctl's help lists,
# has an entry in its page.
#
# Usage: manual_pages.sh <man folder> <glowdeck> <glowdeckctl> <glowdeck-simulator>
set -u
test_name=manual-pages
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
usage="usage: manual_pages.sh <man folder> <glowdeck> <glowdeckctl> <glowdeck-simulator>"
folder=${1:?$usage}
require_tools man col
work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-man.XXXXXX") || exit 1
trap 'rm -rf "$work"' EXIT

# Entries of a rendered page are indented by seven columns, their text by more.
has_entry() { grep -qE "^       ([-a-zA-Z]+, )*$2([ ,]|\$)" "$1"; }

shift
failures=0
for program in "$@"; do
    name=$(basename "$program")
    page="$folder/$name.1.gz"
    [ -f "$page" ] || fail "there is no manual page $page"
    # groff's warnings (-ww) on standard error, at a terminal's width and at one that breaks no line.
    LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>"$work/warnings" >/dev/null
    if [ -s "$work/warnings" ]; then
        say "$page renders with warnings:"
        cat "$work/warnings"
        failures=$((failures + 1))
    fi
    LC_ALL=C.UTF-8 MANWIDTH=1000 man -E UTF-8 -l "$page" 2>/dev/null | col -b >"$work/$name.txt"

    help=$(env -u DISPLAY -u WAYLAND_DISPLAY "$program" --help 2>&1) || fail "$name --help failed"
    documented=0
    for option in $(grep -oE -- '--[a-z][-a-z0-9]*' <<<"$help" | sort -u); do
        documented=$((documented + 1))
        has_entry "$work/$name.txt" "$option" || {
            say "$name's manual page has no entry for $option"
            failures=$((failures + 1))
        }
    done
    # glowdeckctl's commands and the changes of light and room: the words that start a line of its help.
    if [ "$name" = glowdeckctl ]; then
        for word in $(grep -oE '^  [a-z][-a-z]*' <<<"$help" | sort -u); do
            documented=$((documented + 1))
            has_entry "$work/$name.txt" "$word" || {
                say "$name's manual page has no entry for $word"
                failures=$((failures + 1))
            }
        done
    fi
    say "$name: $documented options and commands of --help checked"
done
[ "$failures" -eq 0 ] || fail "$failures problems"
say "PASS"
