# Each shell completes commands, options, presets, parameters of the episode and files by kind. The
# scripts run as installed; a shell that is missing is named and left out.
. "$PROMISES/promises.sh"
scripts=$BUILD/desktop/completion
# It prints the words that it gets, one line each.
mkdir bin
cat >bin/tarnwick <<TEXT
#!/bin/sh
[ "\$1" != --complete ] || exec "$TARNWICK" "\$@"
printf got; printf ' <%s>' "\$@"; echo
TEXT
chmod +x bin/tarnwick
ln -s tarnwick bin/tarnwick-saver
PATH="$folder/bin:$PATH"
export PATH HOME="$folder" TERM=dumb
episode >e.metal
episode >'two words.metal'
echo '{}' >keys.json
mkdir below

# offers INDEX WORD... reads lines of words, all of which and no others are offered at that place.
offers() {
    sort >wanted
    tarnwick --complete "$@" | cut -f 1 | sort >out
    : >err
    cmp -s wanted out || complain "wanted: $(cat wanted)" --complete "$@"
}

printf '%s\n' still | offers 1 tarnwick sti
printf '%s\n' red= green= | offers 3 tarnwick still --set '' e.metal
printf '%s\n' --set=green= | offers 5 tarnwick still e.metal --set red=1 --set=
printf '%s\n' red=0.25 red=0 red=1 | offers 4 tarnwick still e.metal --set red=
printf '%s\n' --preset=prores422 --preset=prores4444 | offers 2 tarnwick export --preset=pro
printf '%s\n' 256 | offers 3 tarnwick thumbnail --size ''
printf '%s\n' --osc | offers 1 tarnwick-player --o
printf '%s\n' --offscreen | offers 1 /usr/bin/tarnwick-saver --of
: | offers 3 tarnwick msl --constant '' e.metal
: | offers 1 tarnwick-saver --no-such
: | offers 9 tarnwick still
mkfifo pipe
: | offers 4 tarnwick still pipe --set ''

# Lines as they are typed, > for the tab key, and the words that the program gets.
cat >cases <<'TEXT'
tarnwick sti>: <still>
tarnwick still e.> --set re>1: <still> <e.metal> <--set> <red=1>
tarnwick still e.> --set=red=0.>: <still> <e.metal> <--set=red=0.25>
tarnwick still tw>--keys k>: <still> <two words.metal> <--keys> <keys.json>
tarnwick still --keys=k>: <still> <--keys=keys.json>
tarnwick export --preset=squ>: <export> <--preset=square>
tarnwick swiftui -o bel>: <swiftui> <-o> <below>
tarnwick-saver --offs>9: <--offscreen> <9>
tarnwick play --channel 0=two>: <play> <--channel> <0=two words.metal>
tarnwick still ~/e.> --set gr>1: <still> <HOME/e.metal> <--set> <green=1>
TEXT
sed 's/: <.*//' cases | tr '>' '\t' >typed
echo exit >>typed
sed 's/^.*: </got </' cases >wanted

# typedInto SHELL...: an interactive shell completes the lines.
typedInto() {
    while IFS= read -r line; do
        sleep "${pause:-0}"
        printf '%s\n' "$line"
    done <typed | timeout 60 script -qec "$*" /dev/null >screen 2>err
    tr -d '\r' <screen | grep -a -o 'got <.*' | sed "s#<below/>#<below>#; s#$folder#HOME#" >out
    cmp -s wanted out || { diff wanted out >err; complain "completed in another way by: $*"; }
}

if command -v script >out; then
    {
        echo "PS1='% '; bind 'set enable-bracketed-paste off'"
        echo ". $scripts/bash/tarnwick; . $scripts/bash/tarnwick-saver"
    } >plain.bash
    typedInto "bash --rcfile plain.bash -i"
    if [ -f /usr/share/bash-completion/bash_completion ]; then
        { echo '. /usr/share/bash-completion/bash_completion'; cat plain.bash; } >full.bash
        typedInto "bash --rcfile full.bash -i"
    else
        echo 'bash-completion is not installed; only plain bash is tried.'
    fi
    if command -v zsh >out; then
        echo "PS1='% '; fpath=($scripts/zsh \$fpath); autoload -U compinit; compinit -u -D; unset zle_bracketed_paste" >.zshrc
        pause=0.3 typedInto "zsh -d -i"
    else
        echo 'zsh is not installed and is left out.'
    fi
else
    echo 'script is not installed; bash and zsh are left out.'
fi

# fish prints what it offers.
if command -v fish >out; then
    fish() {
        printf '%s\n' "$2" >wanted
        command fish -c "source $scripts/fish/tarnwick.fish; source $scripts/fish/tarnwick-saver.fish
            complete -C '$1'" 2>err | cut -f 1 >out
        cmp -s wanted out || complain "fish offers something else than $2 for $1"
    }
    fish 'tarnwick sti' still
    fish 'tarnwick still e.metal --set re' red=
    fish 'tarnwick still ~/e.metal --set=gr' --set=green=
    fish 'tarnwick still tw' 'two words.metal'
    fish 'tarnwick still --keys=k' --keys=keys.json
    fish 'tarnwick swiftui -o be' below/
    fish 'tarnwick-saver --offs' --offscreen
    fish 'tarnwick play --channel 0=tw' '0=two words.metal'
else
    echo 'fish is not installed and is left out.'
fi
finish
