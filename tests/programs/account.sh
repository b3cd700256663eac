# Signing in, the account, signing out, against a service on this machine.
. "$PROMISES/promises.sh"
. "$PROMISES/local-service.sh"
serve
kept=home/.local/state/tarnwick
expect 1 'You are not signed in; tarnwick sign-in does that' whoami
expect 0 '^null$' whoami --json
expect 0 'You are not signed in' sign-out
expect 2 '"now" is unexpected' sign-in now
# A service that has too much to do is asked again.
echo 503 nameless >service/polls
expect 0 'You are signed in as ada@a.example. The sign-in is kept in .*/home/.local/state/tarnwick/' sign-in
leaksNothing sign-in
grep -q -x 'Your code is ABCD-?\[31m1234?' out || complain 'no code' sign-in
grep -q "Confirm it on $TARNWICK_SERVER/link" out || complain 'no page' sign-in
grep -q 'no handle yet; tarnwick handle NAME chooses one' out || complain 'no hint' sign-in
awk '/poll/ { if (before && $1 - before < 990) exit 1; before = $1 } /link$/ { before = $1 }' service/log ||
    complain 'polls faster than asked' sign-in
have "$(stat -c %a $kept $kept/* | tr '\n' ' ')" = '700 600 '
grep -q -x "$token" $kept/* || complain 'another token'
expect 0 'ada@a.example' whoami
expect 0 '"handle": "ada"' whoami --json
leaksNothing whoami
asked 'GET /api/me token'
for handle in ab Abc abc_d 'a b' aaaaaaaaaaaaaaaaaaaaaaaaa; do
    expect 2 'A handle has 3 to 24 characters' handle "$handle"
done
expect 0 'Your handle is a-b-c' handle a-b-c
leaksNothing handle
asked 'POST /api/account/handle token'
# The service's text is printed without control characters.
printf '409 {"error":"Taken.\\u001b[2J"}' >service/refusal
expect 1 '^tarnwick: Taken.?\[2J$' handle abc
echo '401 ' >service/refusal
expect 1 '^tarnwick: You are signed out. Sign in again.$' whoami
# Another service has a sign-in of its own.
expect 1 'You are not signed in' whoami --server "$TARNWICK_SERVER/other"
for server in http://a.example ftp://127.0.0.1 https://ada@a.example 'https://a.example/?x' nothing; do
    expect 2 "^tarnwick: The service's address is not " whoami --server "$server"
done
chmod 640 $kept/*
expect 1 'can be read or written by others, so that what it holds is not used' whoami
chmod 600 $kept/*
# The token is removed even if the service does not revoke it.
echo '500 {"error":"Broken."}' >service/refusal
expect 1 'You are signed out here, but the service may still accept the sign-in: Broken' sign-out
leaksNothing sign-out
asked 'POST /api/auth/signout token'
have -z "$(ls $kept)"
rm service/refusal
echo pending gone >service/polls
expect 1 'The code is no longer valid' sign-in
echo pending >service/polls
echo 0.3 >service/expires
expect 1 'The code is no longer valid' sign-in
rm service/expires
# The browser is started, away from this terminal, and never with anything but the page.
mkdir bin
printf '#!/bin/sh\necho "$#" "$1" >"%s/shown"\n' "$folder" >bin/xdg-open
chmod +x bin/xdg-open
PATH="$folder/bin:$PATH" DISPLAY=:77 "$TARNWICK" sign-in >out 2>err &
process=$!
tries=0
until [ -s shown ] && grep -q Confirm out || [ $tries = 100 ]; do
    sleep 0.05
    tries=$((tries + 1))
done
[ "$(cat shown)" = "1 $TARNWICK_SERVER/link" ] || complain 'another page is shown' sign-in
# Ctrl-C ends it in one sentence, and nobody else may look into it meanwhile.
tr '\0' ' ' </proc/$process/cmdline | grep -q -e "$token" -e device-77 && complain 'a secret in the command line'
have "$(awk '/^Max core file size/ { print $5 $6 }' /proc/$process/limits)" = 00
kill -TERM $process # a shell keeps SIGINT from what runs beside it
wait $process
have $? = 143 # by the signal, as a shell expects
grep -q -x 'tarnwick: It was cancelled.' err || complain 'not cancelled in a sentence' sign-in
have -z "$(ls $kept)"
finish
