# The help of every option has its default or "required"; the pages name every option of every
# command and no other.
. "$PROMISES/promises.sh"
root=$PROMISES/../..
bash "$root/scripts/commands" --check >out 2>err || complain 'run scripts/commands' help

# A name has one word or two.
"$TARNWICK" help | sed -nE 's/^  ([a-z][a-z-]*( [a-z]+)?)  .*/\1/p' >commands
have "$(wc -l <commands)" -gt 20
while read -r name; do
    command=$(echo "$name" | tr ' ' -)
    "$TARNWICK" help $name >$command.help || complain 'no help' help "$name"
    "$TARNWICK" $name --help | cmp -s - $command.help || complain 'another help' help "$name"
    # An option with a value has a placeholder; its text may go on in the next lines.
    awk '/^  -/ { if (row != "") print row; row = $0; next } /^   / { row = row $0; next } { if (row != "") print row; row = "" }
        END { if (row != "") print row }' $command.help >rows
    grep -E '^  -[a-zA-Z-]+ [A-Z]' rows | grep -Ev '; +required|default: ' >bare
    [ -s bare ] && complain "no default: $(cat bare)" help "$command"
done <commands

# Lines like "tarnwick export mine.metal --keys keys.json" of the other pages.
cat "$root"/README.md "$root"/docs/*.md | grep -oE 'tarnwick [a-z-]+ [^`|]*' >lines
met=0
while read -r _ command words; do
    [ -f "$command-${words%% *}.help" ] && command=$command-${words%% *}
    [ -f "$command.help" ] || continue
    for word in $words; do
        case $word in --?*) ;; *) continue ;; esac
        option=$(echo "$word" | grep -oE '^--[a-z-]+')
        grep -qE -e "^  $option( |\$)" $command.help || complain "pages name $option" help "$command"
        met=$((met + 1))
    done
done <lines
have $met -gt 20
finish
