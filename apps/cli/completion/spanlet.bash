# SPDX-License-Identifier: BSD-3-Clause
# Completion of the command "spanlet" for bash.

# Prints the command among the words before the cursor; values of options do not count.
_spanlet_command() {
    local word previous=""
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ " $1 " == *" $word "* && " $2 = " != *" $previous "* ]]; then
            echo "$word"
            return
        fi
        previous=$word
    done
}

_spanlet() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local common="--config --cameras --json --verbose --help --version"
    local commands="list benchmark watch autoset features get set run help"
    local scenarios="default oversubscribed sixty-four empty faulty genicam"
    local valued="--config --cameras --interface --camera --lock --seconds --interval --benchmark"
    valued+=" --timeout --interface-margin --camera-margin --max-bandwidth"
    local options=""

    COMPREPLY=()
    # bash splits words at "=" and ":".
    local colon=""
    case "$previous $current" in
        [=:]*) colon=${previous#=} previous=${COMP_WORDS[COMP_CWORD - 2]} ;;
        *" "[=:]*) colon=${current#=} current="" ;;
    esac

    case $previous in
        --config)
            if [[ $colon ]]; then
                mapfile -t COMPREPLY < <(compgen -W "$scenarios" -- "$current")
            else
                # Adds a slash to folders and quotes special characters.
                compopt -o filenames 2> /dev/null || true
                mapfile -t COMPREPLY < <(compgen -f -- "$current")
            fi
            return
            ;;
        --cameras)
            mapfile -t COMPREPLY < <(compgen -W "simulated genicam" -- "$current")
            return
            ;;
        --*)
            [[ " $valued " == *" $previous "* ]] && return
            ;;
    esac
    case $(_spanlet_command "$commands" "$valued") in
        "") options=$commands ;;
        benchmark) options="--interface --seconds --adjust-packet-size --fail-on-loss" ;;
        watch) options="--interface --seconds --interval --adjust-packet-size" ;;
        autoset)
            options="--interface --camera --interface-margin --camera-margin --lock"
            options+=" --max-bandwidth --adjust-packet-size --benchmark"
            ;;
        features) options="--filter" ;;
        run) options="--timeout" ;;
        help) options=$commands ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options $common" -- "$current")
}

complete -F _spanlet spanlet
