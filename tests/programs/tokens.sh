# A source comes out as it is, with colours on a terminal, and its tokens as JSON.
. "$PROMISES/promises.sh"
printf '// @param é 0.5 0 1 \360\237\230\200\nfloat x = 1; \033[2J' >e.metal
expect 0 '' tokens e.metal
cmp -s out e.metal || complain 'not the source itself' tokens
expect 0 '' tokens e.metal --json
tr -d ' \n' <out >flat
printf '%s' '[{"kind":"header","location":0,"length":22},{"kind":"headerKey","location":3,"length":6},' \
    '{"kind":"type","location":23,"length":5},{"kind":"number","location":33,"length":1},' \
    '{"kind":"number","location":38,"length":2}]' | cmp -s - flat || complain 'other tokens' tokens
printf '' >empty.metal
expect 0 '^\[\]$' tokens empty.metal --json
expect 2 'missing.metal cannot be read' tokens missing.metal
command -v script >/dev/null || finish
on_terminal() { # ASSIGNMENT: what a terminal is sent, escapes as ^[
    env -u NO_COLOR TERM=xterm "$@" script -qec "$TARNWICK tokens e.metal" /dev/null </dev/null |
        tr -d '\r' | cat -v
}
on_terminal A=b | grep -qF '^[[36m// ^[[1;36m@param^[[0m^[[36m M-CM-) 0.5 0 1 ' ||
    complain 'no colours' tokens
on_terminal A=b | grep -qF '^[[34mfloat^[[0m x = ^[[33m1^[[0m; ?[' ||
    complain 'no colours, or control characters' tokens
on_terminal NO_COLOR=1 | grep -qF 'float x = 1' || complain 'colours that nobody wants' tokens
on_terminal NO_COLOR= | grep -qF '^[[34mfloat' || complain 'an empty NO_COLOR counts' tokens
finish
