#!/usr/bin/env bash
# scripts/install-deps.sh against stand-ins for apt-get, sudo, dpkg-query and id: the demo asks for what
# building and running the demos need and none of the test, fuzz and package tools; the test suite asks for
# those too; root runs apt-get itself; a user without sudo is told the apt-get line to run and nothing is
# installed. PATH holds only the stand-ins and the few real tools the script uses, so no real apt-get or sudo
# can be reached: nothing is installed and nothing goes to the network.
#
# Usage: install_deps.sh <install-deps.sh>
set -u
test_name=install_deps
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
script=${1:?usage: install_deps.sh <install-deps.sh>}
work=$(mktemp -d "${TMPDIR:-/tmp}/glowdeck-install-deps.XXXXXX") || exit 1
trap 'rm -rf "$work"' EXIT

bash=$(command -v bash)
bin=$work/bin
mkdir "$bin"
for tool in bash grep env; do
    ln -s "$(command -v "$tool")" "$bin/$tool" || fail "$tool is missing"
done
stub() {
    printf '#!%s\n%s\n' "$bash" "$2" >"$bin/$1"
    chmod +x "$bin/$1"
}
# Installed: the packages named in $FAKE_INSTALLED; every other one is unknown, as dpkg-query reports it.
stub dpkg-query 'case " $FAKE_INSTALLED " in *" ${!#} "*) echo -n "install ok installed" ;; *) exit 1 ;; esac'
stub id '[ "$1" = -u ] && echo "$FAKE_UID"'
stub sudo 'echo sudo >>"$FAKE_LOG"; FAKE_VIA_SUDO=1 exec "$@"'
stub apt-get 'echo "${FAKE_VIA_SUDO:+sudo }apt-get $*" >>"$FAKE_LOG"'

# Runs install-deps.sh with the mode $1 as user id $2, with sudo or without ($3: yes/no) and the packages
# $4 installed; sets status, out (both outputs) and log (one line a call of sudo or apt-get).
run() {
    rm -f "$work/log" "$bin/sudo.off"
    [ "$3" = yes ] || mv "$bin/sudo" "$bin/sudo.off"
    out=$(PATH=$bin FAKE_UID=$2 FAKE_INSTALLED=$4 FAKE_LOG=$work/log "$bash" "$script" $1 2>&1)
    status=$?
    [ -e "$bin/sudo.off" ] && mv "$bin/sudo.off" "$bin/sudo"
    log=$(cat "$work/log" 2>/dev/null)
    installed=$(grep ' install ' <<<"$log")
}
asks_for() { grep -qw -- "$2" <<<"$1"; }

# What each mode asks for, as root: the demo's tools in both, the test, fuzz and package tools in test only.
demo_tools="cmake g++ qt6-base-dev qt6-svg-dev qt6-l10n-tools qt6-tools-dev libsimdjson-dev libssl-dev"
test_tools="clang libclang-rt-14-dev lintian xvfb dpkg-dev appstream ruby"
for mode in demo test; do
    run "$mode" 0 yes ""
    [ $status -eq 0 ] || fail "$mode as root: exit $status: $out"
    [ -n "$installed" ] || fail "$mode as root installed nothing: $log"
    for package in $demo_tools; do
        asks_for "$installed" "$package" || fail "$mode does not install $package: $installed"
    done
    for package in $test_tools; do
        if [ "$mode" = test ]; then
            asks_for "$installed" "$package" || fail "test does not install $package: $installed"
        else
            ! asks_for "$installed" "$package" || fail "the demo installs $package: $installed"
        fi
    done
    ! grep -q sudo <<<"$log" || fail "$mode as root called sudo: $log"
    grep -qx 'apt-get update -qq' <<<"$log" || fail "$mode as root did not update the package lists: $log"
    everything=${installed##*--no-install-recommends }
done
run "" 0 yes ""
asks_for "$installed" lintian || fail "without a mode, the test tools are not installed: $installed"

# Only what is missing; nothing at all when everything is there.
run demo 0 yes "cmake qt6-base-dev"
! asks_for "$installed" cmake && ! asks_for "$installed" qt6-base-dev ||
    fail "installed packages are asked for again: $installed"
asks_for "$installed" g++ || fail "a missing package is not asked for: $installed"
for mode in demo test; do
    run $mode 0 yes "$everything"
    [ $status -eq 0 ] && [ -z "$log" ] || fail "$mode with everything installed, yet: exit $status, $log"
done

# Not root: through sudo when it is there.
run demo 1000 yes ""
[ $status -eq 0 ] || fail "demo through sudo: exit $status: $out"
grep -q '^sudo apt-get install ' <<<"$log" || fail "not root, apt-get install did not go through sudo: $log"
! grep -q '^apt-get' <<<"$log" || fail "not root, apt-get ran without sudo: $log"

# Not root and no sudo: the line to run as root, an error, and nothing run.
run test 1000 no ""
[ $status -ne 0 ] || fail "no sudo and not root, yet exit 0: $out"
[ -z "$log" ] || fail "no sudo and not root, yet: $log"
line=$(grep -o 'apt-get install .*' <<<"$out") || fail "no apt-get line in: $out"
for package in cmake qt6-base-dev clang lintian; do
    asks_for "$line" "$package" || fail "the apt-get line lacks $package: $line"
done

run nonsense 0 yes ""
[ $status -ne 0 ] && [ -z "$log" ] || fail "an unknown mode ran: exit $status, $log"
say "PASS"
