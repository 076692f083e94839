# SPDX-License-Identifier: BSD-3-Clause
# Completion of the command "spanlet" for bash.

# The functions share the variables of _spanlet.

# Takes the words before the current one apart.
_spanlet_parse() {
    local word
    for word in "${words[@]:1}"; do
        if [[ $valued == *" $previous "* ]]; then
            [[ $previous == --config || $previous == --cameras ]] && chosen=("$previous" "$word")
            previous=""
            continue
        fi
        case $word in
            --config=* | --cameras=*) chosen=("$word") ;;
            -*) ;;
            *) if [[ $command ]]; then operands+=("$word"); else command=$word; fi ;;
        esac
        previous=$word
    done
    if [[ $current == --*=* ]]; then
        previous=${current%%=*}
        current=${current#*=}
    fi
}

# Prints what the program answers about the cameras that the command line chooses.
_spanlet_json() {
    "${words[0]}" "$@" "${chosen[@]}" --json 2> /dev/null
}

_spanlet_interfaces() {
    _spanlet_json list --names | sed -n 's/^ \{12\}"id": "\([^"\\]*\)",*$/\1/p'
}

_spanlet_cameras() {
    _spanlet_json list --names | sed -n 's/^ \{20\}"id": "\([^"\\]*\)",*$/\1/p'
}

# Prints the features of the camera among the operands: commands for "run", others for the rest.
_spanlet_features() {
    _spanlet_json features "${operands[0]}" | awk -F '"' -v command="$command" '
        /^            "module":/ { module = $4; gsub(/ /, "", module) }
        /^            "name":/ { name = $4 }
        /^            "type":/ && ($4 == "command") == (command == "run") {
            print (module == "Camera" ? "" : module ":") name
        }'
}

# Prints what the operands may be.
_spanlet_operands() {
    case $command:${#operands[@]} in
        features:0 | get:0 | set:0 | set-ip:0 | run:0) _spanlet_cameras ;;
        get:* | set:*[13579] | run:1) _spanlet_features ;;
        set-ip:1) echo "auto" ;;
        save:0 | restore:0) compgen -f -- "$current" ;;
        save:* | restore:*) _spanlet_cameras ;;
        help:0) printf '%s\n' $commands ;;
        # A command comes first.
        :0) printf '%s\n' $commands $common ;;
    esac
}

_spanlet_options() {
    case $command in
        list) echo "--names" ;;
        benchmark)
            echo "--interface --all --seconds --interval --adjust-packet-size --explain --fail-on-loss"
            ;;
        watch) echo "--interface --all --seconds --interval --adjust-packet-size --explain --prometheus" ;;
        observe) echo "--interface --pcap --seconds --interval --explain --prometheus" ;;
        autoset)
            echo "--interface --all --camera --interface-margin --camera-margin --lock"
            echo "--max-bandwidth --adjust-packet-size --benchmark"
            ;;
        plan)
            echo "--interface --all --interface-margin --camera-margin --lock --max-bandwidth"
            echo "--weight --rate --measure --apply --verify"
            ;;
        calibrate) echo "--interface --all --seconds --adjust-packet-size --save --forget" ;;
        features) echo "--filter" ;;
        set-ip) echo "--gateway --persistent --dry-run" ;;
        save) echo "--to-camera" ;;
        restore) echo "--dry-run --watch" ;;
        run) echo "--timeout" ;;
        doctor) echo "--all" ;;
        report)
            echo "--html --markdown --interface --all --seconds --interval --explain"
            echo "--adjust-packet-size --auto-set --plan --keep --interface-margin --camera-margin"
            echo "--lock --max-bandwidth"
            ;;
    esac
    echo "$common"
}

# Offers the lines of the standard input that continue the current word, behind $1. The names of
# cameras are not expanded, as compgen would do.
_spanlet_offer() {
    local line quoted
    while read -r line; do
        if [[ $1$line == "$current"* ]]; then
            printf -v quoted '%q' "$line"
            COMPREPLY+=("$1$quoted")
        fi
    done
    # bash splits words at ":" and completes the last part.
    if [[ $current == *:* && ${COMP_WORDBREAKS-} == *:* ]]; then
        COMPREPLY=("${COMPREPLY[@]#"${current%:*}:"}")
    fi
}

_spanlet_configurations() {
    if [[ $current == :* ]]; then
        _spanlet_offer "" <<< "$(printf ':%s\n' $scenarios)"
    else
        _spanlet_files
    fi
}

_spanlet_files() {
    # Adds a slash to folders and quotes special characters.
    compopt -o filenames 2> /dev/null || true
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}

_spanlet() {
    local common="--config --cameras --json --verbose --help --version"
    local commands="list benchmark watch observe autoset plan calibrate features get set set-ip run"
    commands+=" save restore doctor report help"
    local scenarios="default oversubscribed sixty-four empty faulty genicam"
    local valued=" --config --cameras --interface --camera --lock --seconds --interval --benchmark"
    valued+=" --timeout --interface-margin --camera-margin --max-bandwidth --gateway --weight"
    valued+=" --rate --measure --verify --to-camera --html --markdown --prometheus --pcap "
    local text=${COMP_LINE:0:COMP_POINT} words=() operands=() chosen=()
    local current="" command="" previous=""

    COMPREPLY=()
    # COMP_WORDS is split at "=" and ":", too.
    # shellcheck disable=SC2162 # A backslash quotes a blank.
    read -a words <<< "$text"
    if [[ $text != *[[:space:]] ]]; then
        current=${words[-1]}
        unset "words[-1]"
    fi
    _spanlet_parse
    case $previous in
        --config) _spanlet_configurations ;;
        --html | --markdown | --pcap) _spanlet_files ;;
        --cameras) _spanlet_offer "" <<< $'simulated\ngenicam' ;;
        --interface) _spanlet_offer "" < <(_spanlet_interfaces) ;;
        --camera) _spanlet_offer "" < <(_spanlet_cameras) ;;
        --weight | --rate)
            # A number follows.
            compopt -o nospace 2> /dev/null || true
            _spanlet_offer "" < <(_spanlet_cameras | sed 's/$/=/')
            ;;
        --lock)
            local others=""
            [[ $current == *,* ]] && others=${current%,*},
            _spanlet_offer "$others" < <(_spanlet_cameras)
            ;;
        *)
            [[ $valued == *" $previous "* ]] && return
            if [[ $current != -* ]]; then
                _spanlet_offer "" < <(_spanlet_operands)
            fi
            if [[ $current == -* || ${#COMPREPLY[@]} == 0 ]]; then
                _spanlet_offer "" < <(_spanlet_options | tr ' ' '\n')
            fi
            ;;
    esac
}

complete -F _spanlet spanlet
