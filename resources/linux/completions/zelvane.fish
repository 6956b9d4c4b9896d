# Completion of zelvane's commands, options and rows for fish.
function __zelvane_rows
    set -l row 0
    zelvane list --json 2>/dev/null | sed -n 's/^ *"title": "\(.*\)",\{0,1\}$/\1/p' | while read -l title
        set row (math $row + 1)
        printf '%s\t%s\n' $row $title
    end
end
set -l commands list watch jump next ack pin title memo restore terminals connect disconnect status
complete -c zelvane -f
complete -c zelvane -n "not __fish_seen_subcommand_from $commands" -a "$commands" -l help -l version
complete -c zelvane -n "__fish_seen_subcommand_from list watch terminals status" -l json
complete -c zelvane -n "__fish_seen_subcommand_from restore" -l exact -l dry-run
complete -c zelvane -n "__fish_seen_subcommand_from jump ack pin title memo" -a "(__zelvane_rows)"
