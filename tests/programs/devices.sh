# The devices are listed, and one of them is marked as the one in use.
. "$PROMISES/promises.sh"
"$TARNWICK" devices >out 2>err || exit 77
[ "$(grep -c '^[0-9]* \* ' out)" = 1 ] || complain 'not one device is marked' devices
last=$(($(wc -l <out) - 1))
export TARNWICK_DEVICE=$last
expect 0 "^$last \* " devices
export TARNWICK_DEVICE='no such device'
unknown='^tarnwick: TARNWICK_DEVICE is "no such device", which is neither .*: 0 .*\.$'
expect 1 "$unknown" devices
episode >e.metal
expect 1 "$unknown" still e.metal -o e.png
finish
