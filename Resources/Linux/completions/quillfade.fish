# Completion of quillfade's commands for fish.

complete -c quillfade -f
complete -c quillfade -n __fish_is_first_arg -a toggle -d 'Hide annotations, or show them again'
complete -c quillfade -n __fish_is_first_arg -a peek -d 'Take the cover away for a moment'
complete -c quillfade -n __fish_is_first_arg -a whole-screen -d 'Cover the whole screen'
complete -c quillfade -n __fish_is_first_arg -a select-area -d 'Select the area to keep covered'
complete -c quillfade -n __fish_is_first_arg -a style -d 'Cover with a plain window, or with a live copy'
complete -c quillfade -n __fish_is_first_arg -a outline -d 'Draw a hairline around the cover'
complete -c quillfade -n __fish_is_first_arg -a status -d 'Tell what is covered, and how'
complete -c quillfade -n __fish_is_first_arg -a windows -d 'List the windows and which are left out'
complete -c quillfade -n __fish_is_first_arg -a quit -d 'End Quillfade'
complete -c quillfade -n __fish_is_first_arg -s h -l help -d 'Print a short description'
complete -c quillfade -n __fish_is_first_arg -l version -d 'Print the version'
complete -c quillfade -n '__fish_seen_subcommand_from style' -a 'solid live'
complete -c quillfade -n '__fish_seen_subcommand_from outline' -a 'on off'
complete -c quillfade -n '__fish_seen_subcommand_from status' -l json -d 'As one JSON object'
