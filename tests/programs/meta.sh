# Prints the data of an episode, for people and as JSON.
. "$PROMISES/promises.sh"
(echo '// @episode 7 Waves
// @variations 3, 5
// @variation 12.5
// @still 4
// @final Thanks | see you
// @particles 9000000' && episode && echo 'float2 sound(float t, constant Params& p) {') >e.metal
expect 0 '^episode     7 Waves$' meta e.metal
for line in 'kind        particles, 4000000, with sound' 'length      60 s' \
    'variations  3, 5; 12.5 s each' 'still       4 s' 'final       Thanks | see you' \
    'parameter  default  min  max' 'red        0.25     0    1    How red' \
    'green      0.5      0    1'; do
    grep -qx -e "$line" out || complain "no line: $line" meta e.metal
done
expect 0 '"title": "Waves"' meta e.metal --json
for word in '"kind": "particles"' '"particles": 4000000' '"variationLength": 12.5' \
    '"finalSummary": "see you"' '"default": 0.25' '"sound": true' '"inputs": false'; do
    grep -q -e "$word" out || complain "no $word" meta --json
done
for key in number title length variationLength variations still teaches category tags \
    finalTitle finalSummary; do
    grep -q "^  \"$key\": " out || complain "no $key" meta --json
done
echo '// @still inf' >endless.metal
expect 0 '"still": null' meta endless.metal --json
expect 0 '^kind        fragment$' meta endless.metal
# What the author wrote cannot change the terminal.
printf '// @episode 1 A\033]0;x\007b\n// @param a 0 0 1 c\033[2Jd\n' >escapes.metal
expect 0 '^episode     1 A?]0;x?b$' meta escapes.metal
grep -q 'c?\[2Jd$' out || complain 'an escape sequence' meta escapes.metal
expect 2 'missing.metal cannot be read' meta missing.metal
finish
