# The formats of movies, as a table and as JSON.
. "$PROMISES/promises.sh"
expect 0 '^site  *1280x720  *30 fps  *6 Mb/s  *h264  *mp4  *Site capture · 1280×720 · 30 fps$' presets
rows=$(wc -l <out)
expect 0 '"codec": "hevcAlpha"' presets --json
have "$(grep -c '"id"' out)" = "$rows"
expect 2 '"web" is unexpected' presets web
finish
