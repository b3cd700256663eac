# With the desktop's keyring the token is there, and in no file. Needs dbus-run-session and
# gnome-keyring-daemon.
. "$PROMISES/promises.sh"
. "$PROMISES/local-service.sh"
command -v dbus-run-session >out && command -v gnome-keyring-daemon >out || exit 77
serve
echo approved >service/polls
export XDG_RUNTIME_DIR="$folder/run" TARNWICK
mkdir -m 700 run
cat >session.sh <<'TEXT'
echo password | gnome-keyring-daemon --unlock --components=secrets >daemon 2>&1 || exit 77
"$TARNWICK" sign-in || exit
"$TARNWICK" whoami || exit
"$TARNWICK" sign-out || exit
"$TARNWICK" whoami
TEXT
dbus-run-session -- sh session.sh >out 2>err
status=$?
[ $status = 77 ] && exit 77
have $status = 1
have "$(grep tarnwick: err)" = 'tarnwick: You are not signed in; tarnwick sign-in does that.'
grep -q "The sign-in is kept in the desktop's keyring." out || complain 'not in the keyring' sign-in
grep -q 'ada@a.example$' out || complain 'not signed in' whoami
leaksNothing sign-in
have ! -e home/.local/state/tarnwick
finish
