# Movies of every preset in its own size, as other people's tools see them.
. "$PROMISES/promises.sh"
. "$PROMISES/movies.sh"
have_tools || exit 77
clicking_episode >e.metal
"$TARNWICK" presets >table
while read -r id size fps rest; do
    movie=$id.mp4
    case $rest in *' mov '*) movie=$id.mov ;; esac
    expect 0 '' export e.metal -o "$movie" --preset "$id" --duration 0.1
    check_movie "$movie" "$id" "${size%x*}" "${size#*x}" $((fps / 10))
    rm "$movie"
done <table
have -s table
finish
