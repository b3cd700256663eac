# Help goes to standard output with status 0; a wrong command line is one sentence and status 2.
. "$PROMISES/promises.sh"
expect 0 '^usage: tarnwick COMMAND' --help
for command in new meta swiftui check assemble msl still sheet sound spectrum devices sign-in whoami release; do
    expect 0 "^usage: tarnwick $command" "$command" --help
    cp out described
    expect 0 '' help "$command"
    cmp -s out described || complain 'another help' help "$command"
    expect 0 "^  $command " help
done
expect 2 '"chek" is not a command' help chek
expect 0 '^Tarnwick [0-9.]* (build [0-9]*)$' --version
cp out version
expect 0 '' saver --version
cmp -s out version || complain 'another release' saver --version
expect 2 'No command is given'
expect 2 '"chek" is not a command' chek
expect 2 'episode is missing' check
expect 2 '"--jsn" is not an option here; write --' check --jsn e.metal
expect 2 'follows it' assemble a.metal b.metal
expect 2 '^tarnwick: --entry wants NAME after it.$' msl a.metal --entry
expect 2 'takes no value' check --json=yes a.metal
finish
