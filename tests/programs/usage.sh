# Help goes to standard output with status 0; a wrong command line is one sentence and status 2.
. "$PROMISES/promises.sh"
expect 0 '^usage: tarnwick COMMAND' --help
expect 2 '"chek" is not a command' help chek
expect 0 '^Compiler: .*clang version' --version
expect 0 '^Device: ' --version
expect 0 '^Tarnwick [0-9.]* (build [0-9]*)$' --version
head -n 1 out >version
expect 0 '' saver --version
cmp -s out version || complain 'another release' saver --version
expect 2 'No command is given'
expect 2 '"chek" is not a command' chek
expect 2 '^tarnwick: EPISODE is required.$' check
expect 2 '"--jsn" is not an option; write --' check --jsn e.metal
expect 2 '"b.metal" is unexpected: one operand is allowed.' assemble a.metal b.metal
expect 2 '^tarnwick: --entry requires a value, NAME.$' msl a.metal --entry
expect 2 'takes no value' check --json=yes a.metal
finish
