# Help goes to standard output with status 0; a wrong command line is one sentence and status 2.
. "$PROMISES/promises.sh"
expect 0 '^usage: tarnwick COMMAND' --help
for command in new meta swiftui check assemble msl still sheet sound spectrum devices sign-in whoami release; do
    expect 0 "^usage: tarnwick $command" "$command" --help
    expect 0 "^  $command " help
done
expect 2 'No command is given'
expect 2 '"chek" is not a command' chek
expect 2 'episode is missing' check
expect 2 '"--jsn" is not an option here' check --jsn e.metal
expect 2 'follows it' assemble a.metal b.metal
expect 2 '^tarnwick: --entry wants NAME after it.$' msl a.metal --entry
expect 2 'takes no value' check --json=yes a.metal
finish
