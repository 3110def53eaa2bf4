# Completion of mirelctl for fish.

set --local commands status sync history list show open thread metrics delete search count label folder rule highlight authors preferences connect disconnect purge

complete -c mirelctl -f
complete -c mirelctl -l data-dir -x -a '(__fish_complete_directories)' -d 'Directory of the library'
complete -c mirelctl -l json -d 'Print one JSON document'
complete -c mirelctl -l demo -d 'Use a simulated account in memory'
complete -c mirelctl -l help -d 'Show how to call mirelctl'
complete -c mirelctl -l version -d 'Show the version'

complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a status -d 'Counts of the library and the last sync'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a sync -d 'Fetch bookmarks from X'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a history -d 'The syncs and what happened in them'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a list -d 'List bookmarks'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a show -d 'Show one bookmark'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a open -d 'Read one bookmark'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a thread -d 'Fetch the thread around a bookmark'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a metrics -d 'Fetch the counters of a bookmark'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a delete -d 'Delete a bookmark'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a search -d 'Find bookmarks by an expression'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a count -d 'Count what an expression finds'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a label -d 'Labels and what carries them'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a folder -d 'Folders and what is in them'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a rule -d 'Searches that file what they find'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a highlight -d 'Marked texts'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a authors -d 'List authors'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a preferences -d 'The settings'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a connect -d 'Connect an X account'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a disconnect -d 'Remove all secrets from the keyring'
complete -c mirelctl -n "not __fish_seen_subcommand_from $commands" -a purge -d 'Delete the library and all secrets'

# Whether the command line holds the command of the two words given.
function __mirelctl_command --argument-names group action
    __fish_seen_subcommand_from $group; and __fish_seen_subcommand_from $action
end

# Whether the command line holds the first word and none of those behind it.
function __mirelctl_lacks_action --argument-names group
    __fish_seen_subcommand_from $group; and not __fish_seen_subcommand_from $argv[2..]
end

for words in 'label list create rename merge delete add remove' \
        'folder list create update delete assign unassign' \
        'rule list create preview run enable disable delete' \
        'highlight add list delete' 'preferences get set'
    set --local split (string split ' ' $words)
    complete -c mirelctl -n "__mirelctl_lacks_action $words" -a "$split[2..]"
end

complete -c mirelctl -n '__fish_seen_subcommand_from sync' -l full -d 'Read all bookmarks, not only the new ones'
complete -c mirelctl -n '__fish_seen_subcommand_from history' -l limit -x -d 'At most so many'
complete -c mirelctl -n "__fish_seen_subcommand_from delete; and not __fish_seen_subcommand_from label folder rule highlight" -l keep-on-x -d 'Not on X'
complete -c mirelctl -n '__fish_seen_subcommand_from connect' -l client-id -x -d 'Of the developer app'
complete -c mirelctl -n '__fish_seen_subcommand_from connect' -l client-secret-stdin -d 'The secret is the first line of standard input'
complete -c mirelctl -n '__fish_seen_subcommand_from connect' -l redirect-uri -x -a 'mirel://oauth/x' -d 'The address registered with X'
complete -c mirelctl -n '__fish_seen_subcommand_from purge' -l yes -d 'It is meant'
complete -c mirelctl -n '__fish_seen_subcommand_from show' -l presentation -d 'What its reader shows, as JSON'

# "label list" and the like are other commands than "list".
set --local listing "__fish_seen_subcommand_from list search; and not __fish_seen_subcommand_from label folder rule highlight"
complete -c mirelctl -n "$listing" -l sort -x -a 'newest oldest author' -d 'In which order'
complete -c mirelctl -n "$listing" -l limit -x -d 'At most so many'
complete -c mirelctl -n "$listing" -l offset -x -d 'Leave out so many first'
complete -c mirelctl -n "$listing; or __fish_seen_subcommand_from count" -l filter -x -a 'all inbox read favorites archive' -d 'Which bookmarks'
complete -c mirelctl -n '__fish_seen_subcommand_from search' -l ids -d 'Only the ids, of all matches'
complete -c mirelctl -n '__fish_seen_subcommand_from search' -l why -d 'Where each condition matched'

complete -c mirelctl -n '__mirelctl_command label create' -l color -x -d 'A color such as #3E6BF5'
complete -c mirelctl -n '__mirelctl_command label rename' -l color -x -d 'A color such as #3E6BF5'
complete -c mirelctl -n '__mirelctl_command label merge' -l into -x -d 'The label that is left'
complete -c mirelctl -n '__mirelctl_command folder create' -l description -x -d 'What it is for'
complete -c mirelctl -n '__mirelctl_command folder create' -l parent -x -d 'The folder that holds it'
complete -c mirelctl -n '__mirelctl_command folder update' -l name -x -d 'Its new name'
complete -c mirelctl -n '__mirelctl_command folder update' -l description -x -d 'What it is for'
complete -c mirelctl -n '__mirelctl_command folder update' -l no-description -d 'Without a description'
complete -c mirelctl -n '__mirelctl_command folder update' -l parent -x -d 'The folder that holds it'
complete -c mirelctl -n '__mirelctl_command folder update' -l no-parent -d 'In no folder'
complete -c mirelctl -n '__mirelctl_command rule create' -l query -x -d 'What it finds'
complete -c mirelctl -n '__mirelctl_command rule create' -l label -x -d 'The label that it adds'
complete -c mirelctl -n '__mirelctl_command rule create' -l folder -x -d 'The folder that it moves into'
complete -c mirelctl -n '__mirelctl_command rule create' -l disabled -d 'Not run with the others'
complete -c mirelctl -n '__mirelctl_command highlight add' -l context -x -d 'The text around it'
complete -c mirelctl -n '__mirelctl_command highlight add' -l start -x -d 'Where it starts'
complete -c mirelctl -n '__mirelctl_command highlight add' -l end -x -d 'Where it ends'
complete -c mirelctl -n '__mirelctl_command highlight add' -l color -x -d 'A color such as #3E6BF5'
