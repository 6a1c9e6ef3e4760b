# Completion of the command `kovalune` in bash. Sub-commands and options come from the command's own help, labels,
# views and choices from its table of parameters, so they are always those of the command that is called.

# Splits the line up to the cursor as the shell would. Sets `words`, without their quotes, the last of them the one
# that is typed, and `quote`, the quote that is still open in it.
_kovalune_split() {
    local line=${COMP_LINE:0:COMP_POINT} char word='' any='' escaped='' i
    words=()
    quote=
    for ((i = 0; i < ${#line}; i++)); do
        char=${line:i:1}
        if [[ $escaped ]]; then
            word+=$char
            escaped=
        elif [[ $char == \\ && $quote != \' ]]; then
            any=1
            escaped=1
        elif [[ $quote ]]; then
            if [[ $char == "$quote" ]]; then quote=; else word+=$char; fi
        elif [[ $char == [\'\"] ]]; then
            any=1
            quote=$char
        elif [[ $char == [[:blank:]] ]]; then
            if [[ $any ]]; then words+=("$word"); fi
            word=
            any=
        else
            any=1
            word+=$char
        fi
    done
    words+=("$word")
}

# The lines of a section of the command's help, without their margin. Takes the section and the sub-command.
_kovalune_help() {
    local section=$1 line inside=''
    shift
    while IFS= read -r line; do
        if [[ $line == "$section:" ]]; then
            inside=1
        elif [[ ! $line ]]; then
            inside=
        elif [[ $inside && $line == '  '[^\ ]* ]]; then
            printf '%s\n' "${line#  }"
        fi
    done < <("$program" "$@" --help 2>/dev/null)
}

# The names that stand first in such lines, "-o,--output" being two.
_kovalune_names() {
    local line
    while IFS= read -r line; do
        line=${line%% *}
        printf '%s\n' "${line//,/$'\n'}"
    done < <(_kovalune_help "$@")
}

_kovalune_takes_value() {
    local sub=$1 option=$2 line
    while IFS= read -r line; do
        [[ ,${line%% *}, == *",$option,"* && $line =~ ^[^\ ]+\ [^\ ] ]] && return 0
    done < <(_kovalune_help Options "$sub")
    return 1
}

# What can be given to --set: the labels, or behind a label the choices that it has.
_kovalune_settings() {
    local typed=$1 line label choices
    while IFS= read -r line; do
        line=${line#"${line%%[! ]*}"}
        label=${line%%  *}
        choices=${line##*  }
        if [[ $line != *'  '* ]]; then
            continue
        elif [[ $typed != *=* ]]; then
            printf '%s\n' "$label="
        elif [[ $label == "${typed%%=*}" && $line =~ \ \ (popup|check\ box)\ \  ]]; then
            printf '%s\n' "$label=${choices//, /$'\n'$label=}"
        fi
    done < <("$program" params 2>/dev/null | tail -n +2)
}

_kovalune_views() {
    local line
    while IFS= read -r line; do
        printf '%s\n' "${line#*=}"
    done < <(_kovalune_settings View=)
}

# Readline replaces what stands behind the last of its separators: the others have to go from a reply.
_kovalune_reply() {
    local reply=$1 typed=$2
    if [[ ! $quote ]]; then
        while [[ $typed == *[=:]* ]]; do
            reply=${reply#*[=:]}
            typed=${typed#*[=:]}
        done
    fi
    COMPREPLY+=("$reply")
}

# Offers those of the lines on the standard input that begin with what is typed.
_kovalune_offer() {
    local typed=$1 line
    while IFS= read -r line; do
        [[ $line == "$typed"* ]] || continue
        [[ $quote ]] || printf -v line %q "$line"
        _kovalune_reply "$line" "$typed"
    done
}

# Folders, and the files with one of these ends; no end stands for all files.
_kovalune_files() {
    local typed=$1 file end
    shift
    while IFS= read -r file; do
        for end in "${@:-}"; do
            if [[ -d ${file/#~\//$HOME/} || ${file,,} == *"$end" ]]; then
                _kovalune_reply "$file" "$typed"
                break
            fi
        done
    done < <(compgen -f -- "$typed")
    compopt -o filenames 2>/dev/null
}

_kovalune_pictures() {
    _kovalune_files "$1" .png .tif .tiff .exr .tga .bmp .webp .jpg .jpeg
}

_kovalune_value() {
    local sub=$1 option=$2 typed=$3
    case $option in
        -o | --output)
            # Settings are written under any name.
            if [[ $sub == suggest ]]; then _kovalune_files "$typed"; else _kovalune_pictures "$typed"; fi
            ;;
        --alpha) _kovalune_offer "$typed" <<<$'straight\npremultiplied' ;;
        --missing) _kovalune_offer "$typed" <<<$'error\nskip\nhold' ;;
        --mask-by) _kovalune_offer "$typed" <<<$'alpha\ngrey' ;;
        --depth) _kovalune_offer "$typed" <<<$'8\n16\n32\nauto' ;;
        --out-depth) _kovalune_offer "$typed" <<<$'8\n16\nhalf\nfloat' ;;
        --format) _kovalune_offer "$typed" <<<$'png\ntif\nexr\ntga' ;;
        --in-format) _kovalune_offer "$typed" <<<tga ;;
        --compression) _kovalune_offer "$typed" <<<$'none\nlzw\ndeflate\npackbits\nlzma\nzstd\nrle\nzips\nzip\npiz\npxr24\nb44\nb44a\ndwaa\ndwab' ;;
        --png-level) _kovalune_offer "$typed" < <(printf '%s\n' {0..9}) ;;
        --key) _kovalune_offer "$typed" <<<$'remove\nonly' ;;
        --view | --views) _kovalune_offer "$typed" < <(_kovalune_views) ;;
        --set)
            _kovalune_offer "$typed" < <(_kovalune_settings "$typed")
            [[ $typed == *=* ]] || compopt -o nospace 2>/dev/null
            ;;
        --from | --diff | --flag-map | --mask) _kovalune_pictures "$typed" ;;
        --params | --pass | --save-params | --log) _kovalune_files "$typed" ;;
        --plugin) _kovalune_files "$typed" .so ;;
    esac
}

_kovalune() {
    local program=${1/#~\//$HOME/} words quote sub='' subs typed before i
    COMPREPLY=()
    _kovalune_split
    typed=${words[-1]}
    subs=$'\n'$(_kovalune_names Subcommands)$'\n'
    for ((i = 1; i < ${#words[@]} - 1; i++)); do
        if [[ ${words[i]} && $subs == *$'\n'"${words[i]}"$'\n'* ]]; then
            sub=${words[i]}
            break
        fi
    done
    before=
    ((${#words[@]} > 2)) && before=${words[-2]}
    if [[ ! $sub && $typed != -* ]]; then
        _kovalune_offer "$typed" < <(_kovalune_names Subcommands)
    elif [[ ! $sub ]]; then
        _kovalune_offer "$typed" < <(_kovalune_names Options)
    elif [[ $before == -* && $before != *=* ]] && _kovalune_takes_value "$sub" "$before"; then
        _kovalune_value "$sub" "$before" "$typed"
    elif [[ $typed == --*=* ]]; then
        _kovalune_value "$sub" "${typed%%=*}" "${typed#*=}"
    elif [[ $typed == -* ]]; then
        _kovalune_offer "$typed" < <(_kovalune_names Options "$sub")
    elif [[ $sub == defaults ]]; then
        _kovalune_offer "$typed" <<<$'save\nforget\nshow'
    elif [[ $sub == help ]]; then
        _kovalune_offer "$typed" < <(_kovalune_names Subcommands)
    elif [[ $(_kovalune_help Positionals "$sub") ]]; then
        _kovalune_pictures "$typed"
    fi
}

complete -F _kovalune kovalune
