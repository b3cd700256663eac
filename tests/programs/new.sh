# A new episode compiles, bears its title, and never takes the place of a file.
. "$PROMISES/promises.sh"
expect 0 '^Vol. 2- Light-Water.metal$' new 'Vol. 2: Light/Water'
expect 0 '^// Vol. 2: Light/Water$' assemble 'Vol. 2- Light-Water.metal'
expect 0 '' check 'Vol. 2- Light-Water.metal'
expect 0 '^Vol. 2- Light-Water 2.metal$' new 'Vol. 2: Light/Water' --inputs
expect 0 'Inputs in' assemble 'Vol. 2- Light-Water 2.metal'
expect 0 '' check 'Vol. 2- Light-Water 2.metal'
for kind in particles grid sound; do
    expect 0 "^A $kind.metal$" new "A $kind" --$kind
    expect 0 '' check "A $kind.metal"
    expect 0 "\"title\": \"A $kind\"" meta --json "A $kind.metal"
done
expect 2 '^tarnwick: --particles and --grid exclude each other.$' new Both --grid --particles
expect 0 '^a.metal$' new A -o a.metal
ln -s nowhere B.metal
expect 0 '^B 2.metal$' new B
# No title leads out of the folder or reads as an option.
mkdir inner && cd inner || exit 1
expect 0 '^x.metal$' new ../x
expect 0 '^x 2.metal$' new -- -x
expect 0 '^shader.metal$' new -- ---
cd ..
have ! -e x.metal
echo old >old.metal
expect 2 '^tarnwick: old.metal already exists and is not replaced.$' new Old -o old.metal
[ "$(cat old.metal)" = old ] || complain 'old.metal changed' new
expect 1 '^tarnwick: none/a.metal cannot be written: No such file' new A -o none/a.metal
expect 2 'TITLE is required' new
expect 2 'title is empty' new ' '
expect 2 'more than one line' new 'one
two'
expect 2 'not text in UTF-8' new "$(printf '\377')"
finish
