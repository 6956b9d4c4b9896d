# Run by Claude Code at its events, with the event on standard input. Hands over to the program
# beside it: Claude Code waits for this.
exec "${0:h}/zelvane" hook
