# lanefill.bash - completion of lanefill's command line for bash.
# SPDX-License-Identifier: Apache-2.0

_lanefill_switches='-a -bd -bf -bm -bt -bx -bytewidth -d -dataset -D -f -fill -h -i -I -image -log -md -mf -mm -msg -msgc
    -mx -o -p -pg -pp -q -split -u -w -workflow --help --version --param --params'

# Files with one of the extensions, and folders. Without extensions: all files.
_lanefill_files() {
    local word=$1 extension
    shift
    compopt -o filenames 2>/dev/null
    if [ $# -eq 0 ]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
    fi
    mapfile -t COMPREPLY < <(
        compgen -d -- "$word"
        for extension in "$@"; do compgen -f -X "!*.$extension" -- "$word"; done
    )
}

_lanefill_words() {
    mapfile -t COMPREPLY < <(compgen -W "$2" -- "$1")
}

# The first column of the table, which a blank line ends.
_lanefill_devices() {
    "$1" devices --all 2>/dev/null | awk 'NR > 1 { if (NF == 0) exit; print $1 }'
}

_lanefill_parameters() {
    "$1" --params 2>/dev/null | sed -n 's/^\([^ =]*\)=.*/\1=/p'
}

# What follows a switch; false where nothing special does.
_lanefill_operand() {
    local program=$1 switch=$2 word=$3
    case $switch in
        -bm | -mm | -pp | map) _lanefill_files "$word" bmm xml ;;
        -bd | -md) _lanefill_files "$word" elf drf mem vmf vmem coe mif xml ;;
        -bt | check) _lanefill_files "$word" bit rbt ;;
        -dataset) _lanefill_files "$word" xml ;;
        -f) _lanefill_files "$word" opt ;;
        -log) _lanefill_files "$word" log ;;
        -image) _lanefill_files "$word" bif ;;
        -msg | -msgc) _lanefill_files "$word" ;;
        -bx | -I)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            ;;
        -o) _lanefill_words "$word" 'a b d i p' ;;
        -p) _lanefill_words "$word" "$(_lanefill_devices "$program")" ;;
        -a | -w) _lanefill_words "$word" 'on off' ;;
        -q) _lanefill_words "$word" 'S I W E' ;;
        -split) _lanefill_words "$word" 'bin coe hex mcs mem mif' ;;
        -h | help) _lanefill_words "$word" "${_lanefill_switches//[[:space:]]-/ } devices check map help" ;;
        --param)
            compopt -o nospace 2>/dev/null
            _lanefill_words "$word" "$(_lanefill_parameters "$program")"
            ;;
        devices) _lanefill_words "$word" "--all --json $(_lanefill_devices "$program")" ;;
        *) return 1 ;;
    esac
}

_lanefill() {
    local program=$1 word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} before=''
    [ "$COMP_CWORD" -gt 1 ] && before=${COMP_WORDS[COMP_CWORD - 2]}
    COMPREPLY=()
    if [[ $word != -* || $previous == devices ]]; then
        if [ "$before" = -o ]; then
            _lanefill_files "$word"
            return
        fi
        # A sub-command is the first word.
        if [[ $previous == -* || $COMP_CWORD -eq 2 ]] && _lanefill_operand "$program" "$previous" "$word"; then
            [ ${#COMPREPLY[@]} -gt 0 ] && return
        fi
        case $before in
            -bd | -md) _lanefill_words "$word" 'tag boot start' ;;
            -bm | -mm | -mx) _lanefill_words "$word" 'root' ;;
        esac
        [ ${#COMPREPLY[@]} -gt 0 ] && return
    fi
    if [ "$COMP_CWORD" -eq 1 ]; then
        _lanefill_words "$word" "$_lanefill_switches check devices help map"
    else
        _lanefill_words "$word" "$_lanefill_switches"
    fi
}

complete -F _lanefill lanefill
