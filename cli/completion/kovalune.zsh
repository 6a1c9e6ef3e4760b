#compdef kovalune
# Completion of the command `kovalune` in zsh. Sub-commands and options come from the command's own help, labels, views and
# choices from its table of parameters, so they are always those of the command that is called.

# The lines of a section of the command's help, without their margin, into `reply`. Takes the section and the sub-command.
_kovalune_help() {
    local section=$1 line inside=
    shift
    reply=()
    for line in "${(@f)$("$program" "$@" --help 2>/dev/null)}"; do
        if [[ $line == "$section:" ]]; then
            inside=1
        elif [[ -z $line ]]; then
            inside=
        elif [[ -n $inside && $line == '  '[^\ ]* ]]; then
            reply+=("${line#  }")
        fi
    done
}

# Offers what such lines begin with, "-o,--output" being two, with the text beside it.
_kovalune_offer_help() {
    local line name text
    local -a names shown
    _kovalune_help "$@"
    for line in "${reply[@]}"; do
        text=${line#*  }
        text=${text##[[:space:]]#}
        for name in "${(@s:,:)line%% *}"; do
            names+=("$name")
            shown+=("$name  $text")
        done
    done
    (( ${#names} )) && compadd -l -d shown -a names
}

_kovalune_takes_value() {
    local sub=$1 option=$2 line
    _kovalune_help Options "$sub"
    for line in "${reply[@]}"; do
        [[ ,${line%% *}, == *",$option,"* && $line == [^\ ]#\ [^\ ]* ]] && return 0
    done
    return 1
}

# What can be given to --set: the labels, or behind a label the choices that it has.
_kovalune_settings() {
    local typed=$1 line label kind
    reply=()
    for line in "${(@f)$("$program" params 2>/dev/null | tail -n +2)}"; do
        line=${line##[[:space:]]#}
        [[ $line == *'  '* ]] || continue
        label=${line%%  *}
        kind=${${line#*  }##[[:space:]]#}
        if [[ $typed != *=* ]]; then
            reply+=("$label=")
        elif [[ $label == "${typed%%=*}" && $kind == (popup|check box)\ \ * ]]; then
            reply+=("$label="${^${(@s:, :)${line##*  }}})
        fi
    done
}

_kovalune_pictures() {
    _files -g '(#i)*.(png|tif|tiff|exr|tga|bmp|webp|jpg|jpeg)(-.)' "$@"
}

_kovalune_value() {
    local sub=$1 option=$2
    case $option in
        # Settings are written under any name.
        -o | --output) if [[ $sub == suggest ]]; then _files; else _kovalune_pictures; fi ;;
        --alpha) compadd straight premultiplied ;;
        --missing) compadd error skip hold ;;
        --mask-by) compadd alpha grey ;;
        --depth) compadd 8 16 32 auto ;;
        --out-depth) compadd 8 16 half float ;;
        --format) compadd png tif exr tga ;;
        --in-format) compadd tga ;;
        --compression) compadd none lzw deflate packbits lzma zstd rle zips zip piz pxr24 b44 b44a dwaa dwab ;;
        --png-level) compadd {0..9} ;;
        --key) compadd remove only ;;
        --view | --views)
            _kovalune_settings View=
            reply=("${reply[@]#View=}")
            compadd -a reply
            ;;
        --set)
            _kovalune_settings "${(Q)PREFIX}"
            if [[ $PREFIX == *=* ]]; then compadd -a reply; else compadd -S '' -a reply; fi
            ;;
        --from | --diff | --flag-map | --mask) _kovalune_pictures ;;
        --params | --pass | --save-params | --log) _files ;;
        --plugin) _files -g '*.so(-.)' ;;
    esac
}

_kovalune() {
    setopt localoptions extendedglob
    local program=${~words[1]} sub= word
    local -a reply subs
    _kovalune_help Subcommands
    subs=("${reply[@]%% *}")
    for word in "${(@)words[2,CURRENT-1]}"; do
        if (( ${subs[(Ie)$word]} )); then
            sub=$word
            break
        fi
    done
    local before=${words[CURRENT-1]}
    if [[ -z $sub && $PREFIX != -* ]]; then
        _kovalune_offer_help Subcommands
    elif [[ -z $sub ]]; then
        _kovalune_offer_help Options
    elif [[ $before == -* && $before != *=* ]] && _kovalune_takes_value "$sub" "$before"; then
        _kovalune_value "$sub" "$before"
    elif [[ $PREFIX == --*=* ]]; then
        local option=${PREFIX%%=*}
        compset -P '*='
        _kovalune_value "$sub" "$option"
    elif [[ $PREFIX == -* ]]; then
        _kovalune_offer_help Options "$sub"
    elif [[ $sub == defaults ]]; then
        compadd save forget show
    elif [[ $sub == help ]]; then
        _kovalune_offer_help Subcommands
    else
        _kovalune_help Positionals "$sub"
        (( ${#reply} )) && _kovalune_pictures
    fi
}

_kovalune "$@"
