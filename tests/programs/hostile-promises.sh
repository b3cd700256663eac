# `hostile` and `harmless`, after promises.sh.
HOSTILE=$folder
TMPDIR=$folder/tmp
export HOSTILE TMPDIR
mkdir "$TMPDIR"

# repeat COUNT TEXT
repeat() {
    awk -v count="$1" -v text="$2" 'BEGIN { while (count-- > 0) printf "%s", text }'
}

# body STATEMENTS: an episode whose shade has them.
body() {
    printf 'float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n%s\n' "$1"
    echo 'return float4(uv, 0.0, 1.0); }'
}

# unsafe FILE...: one has control characters, of ASCII or Unicode, or marks of writing direction.
unsafe() {
    cat "$@" | LC_ALL=C tr -d '\n\t' | LC_ALL=C grep -q -E "[[:cntrl:]]|$(printf \
        '\302[\200-\237]|\342\200[\216\217\250-\256]|\342\201[\246-\251]|\330\234')"
}

# harmless WORD...: tarnwick WORD... ends by itself within 11 seconds, or more where TARNWICK_PATIENCE
# says that checks make programs slow, prints neither control characters nor marks of writing
# direction, and leaves no process and no temporary file. Sets `met` to its status.
harmless() {
    timeout $((11 * ${TARNWICK_PATIENCE:-1})) "$TARNWICK" "$@" >out 2>err </dev/null
    met=$?
    [ "$met" -le 2 ] || complain "status $met" "$@"
    unsafe out err && complain 'control characters' "$@"
    [ -z "$(ls "$TMPDIR")" ] || complain "left: $(ls "$TMPDIR")" "$@"
    # The compiler ends after the command, by itself.
    for try in 1 2 3 4 5 6 7 8 9 10; do
        processes=$(grep -l -s -a "HOSTILE=$folder" /proc/[0-9]*/environ | grep -v -e "/$$/" | while read -r one; do
            [ -s "${one%environ}cmdline" ] && tr '\0' ' ' <"${one%environ}cmdline" | grep -a tarnwick
        done)
        [ -z "$processes" ] && return
        sleep 0.1
    done
    complain "left the process $processes" "$@"
}

# hostile STATUS PATTERN NAME: drawing NAME.metal is harmless and ends with STATUS; a line that matches
# PATTERN says why, in one sentence of the command; a failure leaves no picture.
hostile() {
    rm -f picture.png
    harmless still "$3.metal" -o picture.png --size 32x18
    [ "$met" = "$1" ] || complain "status $met, not $1" still "$3.metal"
    [ -z "$2" ] || grep -q -e "$2" err || complain "no line like: $2" still "$3.metal"
    [ "$(grep -c '^tarnwick: ' err)" -le 1 ] || complain 'more than one sentence' still "$3.metal"
    [ "$1" = 0 ] || [ ! -e picture.png ] || complain 'a picture in spite of the failure' still "$3.metal"
    [ "$1" != 0 ] || [ -s picture.png ] || complain 'no picture' still "$3.metal"
}
