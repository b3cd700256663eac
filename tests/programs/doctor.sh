# The doctor's table and JSON agree, and a fault is found, named and gives status 1.
. "$PROMISES/promises.sh"
export HOME="$folder" XDG_CACHE_HOME="$folder/cache"
"$TARNWICK" doctor --json >json 2>err
status=$?
[ $status -le 1 ] && [ ! -s err ] || complain "status $status" doctor --json
expect $status '' doctor
have "$(grep -c '"result"' json)" = "$(grep -cE '^(works|absent|fails)  ' out)"
for subject in compiler encoder decoder fonts display sound keyring folder part; do
    grep -qE "^(works|absent|fails) +$subject " out || complain "no line of $subject" doctor
done
grep -q '^works *compiler .*clang version' out || complain 'no compiler' doctor
# A cache that is a file; a compiler and a driver that do not exist.
: >file
export XDG_CACHE_HOME="$folder/file" TARNWICK_MSL_WORKER="$folder/none" VK_ICD_FILENAMES="$folder/none"
"$TARNWICK" doctor >out 2>err
have $? = 1
grep -q '^fails *folder *.*/file/tarnwick .*Cannot be written to' out || complain 'no fault of a folder' doctor
grep -q "^fails *compiler .*Debian's package: libtarnwick-msl1" out || complain 'no fault of the compiler' doctor
grep -q "^fails *device *none .*Debian's package: mesa-vulkan-drivers" out || complain 'no fault of the device' doctor
finish
