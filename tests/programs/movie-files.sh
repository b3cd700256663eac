# Small movies of every codec and frame rate, as other people's tools see them.
. "$PROMISES/promises.sh"
. "$PROMISES/movies.sh"
have_tools || exit 77
clicking_episode >e.metal
"$TARNWICK" presets --json | tr -d ' ",' | awk -F: '
    { value[$1] = $2 }
    $1 == "fileExtension" && !seen[value["codec"], value["fps"]]++ {
        print value["id"], value["fps"], value["fileExtension"]
    }' >presets
while read -r id fps extension; do
    expect 0 '' export e.metal -o "$id.$extension" --preset "$id" --size 128x96 --duration 0.1
    check_movie "$id.$extension" "$id" 128 96 $((fps / 10))
done <presets
have -s presets
# Long enough for a second key frame.
expect 0 '' export e.metal -o site.mp4 --preset site --size 64x48 --duration 2.5
check_movie site.mp4 site 64 48 75
finish
