# Completion of mirelctl for fish.

set --local commands status sync list show

complete -c mirelctl -f
complete -c mirelctl -l data-dir -x -a '(__fish_complete_directories)' -d 'Directory of the library'
complete -c mirelctl -l json -d 'Print one JSON document'
complete -c mirelctl -l demo -d 'Use a simulated account in memory'
complete -c mirelctl -l help -d 'Show how to call mirelctl'
complete -c mirelctl -l version -d 'Show the version'

complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a status -d 'Counts of the library and the last sync'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a sync -d 'Fetch bookmarks from X'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a list -d 'List bookmarks'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a show -d 'Show one bookmark'

complete -c mirelctl -n '__fish_seen_subcommand_from sync' -l full -d 'Read all bookmarks, not only the new ones'
complete -c mirelctl -n '__fish_seen_subcommand_from list' -l filter -x -a 'all inbox read favorites archive' -d 'Which bookmarks'
complete -c mirelctl -n '__fish_seen_subcommand_from list' -l sort -x -a 'newest oldest author' -d 'In which order'
complete -c mirelctl -n '__fish_seen_subcommand_from list' -l limit -x -d 'At most so many'
complete -c mirelctl -n '__fish_seen_subcommand_from list' -l offset -x -d 'Leave out so many first'
