# A fragment episode becomes a Swift package in a new folder; an error leaves nothing behind.
. "$PROMISES/promises.sh"
(echo '// @episode 3 Two colours' && episode) >e.metal
expect 0 '^pack/Package.swift$' swiftui e.metal -o pack/
for file in Package.swift Sources/TwoColoursShader/TwoColours.metal \
    Sources/TwoColoursShader/TwoColoursView.swift; do
    have -s "pack/$file"
done
have "$(find pack -type f | wc -l)" = 3
grep -q 'ShaderLibrary.bundle(.module).twoColours(.float2' pack/Sources/*/*View.swift ||
    complain 'another view' swiftui
expect 2 '^tarnwick: pack already exists and is not empty.$' \
    swiftui e.metal -o pack
mkdir empty
ln -s empty link
expect 0 'Sources/TitleShader/Title.metal' swiftui e.metal --title '4. title' -o link
have -s empty/Package.swift -a -L link
umask 027
cp e.metal 'my waves.metal' && sed -i 1d 'my waves.metal'
expect 0 'MyWavesView.swift' swiftui 'my waves.metal' -o private
have "$(stat -c %a private private/Sources private/Package.swift | tr '\n' ' ')" = '750 750 640 '
(echo '// @grid 4' && episode) >grid.metal
expect 1 '^tarnwick: A grid shader keeps state' swiftui grid.metal -o none
expect 2 'e.metal already exists and is not a folder' swiftui e.metal -o e.metal
expect 1 '^tarnwick: none/out cannot be written: No such file' swiftui e.metal -o none/out
expect 1 '^tarnwick: none.*cannot be written: File name too long' \
    swiftui e.metal --title "$(head -c 300 /dev/zero | tr '\0' a)" -o none
expect 2 '-o FOLDER is required' swiftui e.metal
expect 2 'title is empty' swiftui e.metal --title ' ' -o none
(cat e.metal && echo 'float x = y;') >bad.metal
expect 1 '^tarnwick: bad.metal does not compile.$' swiftui bad.metal -o none
have ! -e none -a "$(find . -name '*.partial' | wc -l)" = 0
mkdir here
(cd here && "$TARNWICK" swiftui ../e.metal -o "$PWD/" 2>../err >../out)
grep -q 'is the current folder' err || complain 'the current folder is replaced' swiftui
finish
