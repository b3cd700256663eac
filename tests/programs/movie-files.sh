# Small movies of every codec, as other people's tools see them.
. "$PROMISES/promises.sh"
. "$PROMISES/movies.sh"
have_tools || exit 77
clicking_episode >e.metal
for movie in uhd120.mp4 prores422.mov prores4444.mov hevcalpha.mov; do
    id=${movie%.*}
    expect 0 '' export e.metal -o "$movie" --preset "$id" --size 128x96 --duration 0.1
    check_movie "$movie" "$id" 128 96 "$([ "$id" = uhd120 ] && echo 12 || echo 6)"
done
# Long enough for a second key frame.
expect 0 '' export e.metal -o site.mp4 --preset site --size 64x48 --duration 2.5
check_movie site.mp4 site 64 48 75
finish
