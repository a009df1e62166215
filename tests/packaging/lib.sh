# Shared by the packaging tests: messages, and skipping (exit 77) where a tool is missing. Every tool named
# here is installed by scripts/install-deps.sh. Each script sets test_name first.

# The programs' help and messages are checked in English, whatever language the developer's session has.
export LC_ALL=C.UTF-8 LANGUAGE=

say() { echo "${test_name}: $*"; }
fail() {
    say "FAIL: $*"
    exit 1
}
skip() {
    say "SKIP: $*"
    exit 77
}
require_tools() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null 2>&1 ||
            skip "$tool is not installed (Debian: see scripts/install-deps.sh)"
    done
}
