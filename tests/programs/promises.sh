# What every script here begins with: a folder of its own, and `expect`.
set -u
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failures=0

# expect STATUS PATTERN WORD...: tarnwick WORD... ends with STATUS, and a line on standard error (on
# standard output if STATUS is 0) matches PATTERN. A usage error is one line, without other output.
expect() {
    status=$1 pattern=$2
    shift 2
    "$TARNWICK" "$@" >out 2>err
    met=$?
    said=err
    [ "$status" = 0 ] && said=out
    [ "$met" = "$status" ] || complain "status $met, not $status" "$@"
    [ -z "$pattern" ] || grep -q -e "$pattern" "$said" || complain "no line like: $pattern" "$@"
    if [ "$status" = 2 ]; then
        [ "$(wc -l <err)" = 1 ] && [ ! -s out ] || complain "more than one sentence" "$@"
    fi
}

complain() {
    echo "$1"
    shift
    echo "    tarnwick $*"
    head -n 20 err out
    failures=$((failures + 1))
}

# have WORD...: the test of that name holds.
have() {
    test "$@" || complain "not so: test $*"
}

finish() {
    [ "$failures" = 0 ]
    exit
}

episode() {
    cat <<'TEXT'
// @param red 0.25 0 1 How red
// @param green 0.5 0 1
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(p.red, p.green, 0.0, 1.0);
}
TEXT
}
