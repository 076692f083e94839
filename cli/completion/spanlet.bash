# SPDX-License-Identifier: BSD-3-Clause
# Completion of the command "spanlet" for bash.

_spanlet() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local common="--config --cameras --json --verbose --help --version"
    local commands="list benchmark watch autoset features get set run"
    local command="" options="" word

    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ " $commands " == *" $word "* ]]; then
            command=$word
            break
        fi
    done
    case $previous in
        --config)
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        --cameras)
            mapfile -t COMPREPLY < <(compgen -W "simulated genicam" -- "$current")
            return
            ;;
        --interface | --camera | --lock | --seconds | --interval | --benchmark | --timeout | \
            --interface-margin | --camera-margin | --max-bandwidth)
            return
            ;;
    esac
    case $command in
        "") options=$commands ;;
        benchmark) options="--interface --seconds --adjust-packet-size --fail-on-loss" ;;
        watch) options="--interface --seconds --interval --adjust-packet-size" ;;
        autoset)
            options="--interface --camera --interface-margin --camera-margin --lock"
            options+=" --max-bandwidth --adjust-packet-size --benchmark"
            ;;
        features) options="--filter" ;;
        run) options="--timeout" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options $common" -- "$current")
}

complete -F _spanlet spanlet
