# Completion of zelvane's commands, options and rows for fish.
function __zelvane_rows
    zelvane list 2>/dev/null | sed -n 's/^ *\([0-9][0-9]*\)  *\(.*\)$/\1\t\2/p'
end
set -l commands list watch jump next ack pin title memo restore terminals connect disconnect status
complete -c zelvane -f
complete -c zelvane -n "not __fish_seen_subcommand_from $commands" -a "$commands"
complete -c zelvane -n "not __fish_seen_subcommand_from $commands" -l version
complete -c zelvane -l help
complete -c zelvane -n "__fish_seen_subcommand_from list watch terminals status" -l json
complete -c zelvane -n "__fish_seen_subcommand_from restore" -l exact -l dry-run
complete -c zelvane -n "__fish_seen_subcommand_from jump ack pin title memo" -a "(__zelvane_rows)"
