# What an episode of a stranger cannot do to the command line: each of these ends by itself, with one
# sentence that says why, without control characters, and leaves no file and no process.
. "$PROMISES/promises.sh"
. "$PROMISES/hostile-promises.sh"

# Control characters, in a message, a file name, a title, a parameter, a line of the source.
printf '#line 1 "\033[31m\033]0;x\007"\nfloat \033[2J;\n' >renamed.metal
hostile 1 'does not compile: ?\[31m?\]0;x?:1:7: error: ' renamed
{ printf '// @title \033]0;x\007\342\200\256\302\2332J\r\n// @param a 1 0 1 \033[2J\n' && episode; } >titled.metal
for command in meta 'meta --json' check walkthrough 'walkthrough --json'; do
    # shellcheck disable=SC2086
    harmless $command titled.metal
done
# A terminal gets no text as it is; its lines end with CR LF.
if command -v script >/dev/null; then
    for command in tokens assemble; do
        NO_COLOR=1 script -qec "'$TARNWICK' $command titled.metal" /dev/null </dev/null | tr -d '\r' >out
        : >err
        grep -q 'How red' out || complain 'no text' $command titled.metal
        unsafe out && complain 'control characters on a terminal' $command titled.metal
    done
fi
printf '#error \033]0;owned\007\302\233\n' >error.metal
hostile 1 '^error.metal:1:2: error: ' error
harmless msl renamed.metal
harmless msl error.metal
harmless msl --batch renamed.metal
# Depth.
body "$(repeat 50000 'if (uv.x > 0.0) ') uv.y = 1.0;" >ifs.metal
hostile 1 '^ifs.metal: error: the program nests too deeply for the compiler' ifs
body "$(repeat 100000 '(') 1.0 $(repeat 100000 ')');" >brackets.metal
hostile 1 '^brackets.metal:.*: error: bracket nesting level exceeded maximum of 256$' brackets
grep -q 'use -f' err && complain 'an option that is not there' still brackets.metal
# Functions of the system are not there.
{ echo 'extern "C" int system(const char*);' && body 'uv.x = system("touch owned");'; } >system.metal
hostile 1 "error: The function 'system' is called but not defined" system
echo '#include __FILE__' >self.metal
hostile 1 'file not found' self
finish
