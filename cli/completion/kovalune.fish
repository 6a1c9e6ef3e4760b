# Completion of the command `kovalune` in fish. Sub-commands and options come from the command's own help, labels, views and
# choices from its table of parameters, so they are always those of the command that is called.

# The command as it is typed; not a function or an alias of that name.
function __kovalune_run
    set -l words (commandline -opc)
    set -l program (string replace -r '^~/' "$HOME/" -- $words[1])
    command $program $argv 2>/dev/null
end

# The lines of a section of the command's help, without their margin. Takes the section and the sub-command.
function __kovalune_help
    set -l section $argv[1]
    set -l inside 0
    __kovalune_run $argv[2..] --help | while read -l line
        if test "$line" = "$section:"
            set inside 1
        else if test -z "$line"
            set inside 0
        else if test $inside = 1; and string match -qr '^  [^ ]' -- $line
            string sub -s 3 -- $line
        end
    end
end

# What such lines begin with, "-o,--output" being two, each with the text beside it.
function __kovalune_offer_help
    __kovalune_help $argv | while read -l line
        set -l words (string match -r '^([^ ]+)(?: [^ ]+)*(?: {2,}(.*))?$' -- $line)
        for name in (string split , -- $words[2])
            printf '%s\t%s\n' $name $words[3]
        end
    end
end

function __kovalune_sub
    set -l subs (__kovalune_help Subcommands | string replace -r ' .*' '')
    set -l words (commandline -opc)
    for word in $words[2..]
        if contains -- $word $subs
            echo $word
            return
        end
    end
end

function __kovalune_takes_value
    for line in (__kovalune_help Options $argv[1])
        set -l names (string split , -- (string replace -r ' .*' '' -- $line))
        if contains -- $argv[2] $names; and string match -qr '^[^ ]+ [^ ]' -- $line
            return 0
        end
    end
    return 1
end

# What can be given to --set: the labels, or behind a label the choices that it has.
function __kovalune_settings
    set -l typed $argv[1]
    __kovalune_run params | tail -n +2 | string trim | string match -r '.*  .*' | while read -l line
        set -l label (string replace -r '  .*' '' -- $line)
        if not string match -q '*=*' -- $typed
            echo "$label="
        else if test "$label" = (string replace -r '=.*' '' -- $typed); and string match -qr '  (popup|check box)  ' -- $line
            for choice in (string split ', ' -- (string replace -r '.*  ' '' -- $line))
                echo "$label=$choice"
            end
        end
    end
end

# Folders, and the files with one of these ends.
function __kovalune_files
    set -l ends (string join '|' -- $argv[2..])
    __fish_complete_path $argv[1] | string match -ri "(?:/|\.(?:$ends))(?:\t.*)?\$" --entire
end

function __kovalune_pictures
    __kovalune_files $argv[1] png tif tiff exr tga bmp webp jpg jpeg
end

function __kovalune_value
    set -l typed $argv[3]
    switch $argv[2]
        case -o --output
            # Settings are written under any name.
            if test $argv[1] = suggest
                __fish_complete_path $typed
            else
                __kovalune_pictures $typed
            end
        case --alpha
            printf '%s\n' straight premultiplied
        case --missing
            printf '%s\n' error skip hold
        case --mask-by
            printf '%s\n' alpha grey
        case --depth
            printf '%s\n' 8 16 32 auto
        case --out-depth
            printf '%s\n' 8 16 half float
        case --format
            printf '%s\n' png tif exr tga
        case --in-format
            echo tga
        case --compression
            printf '%s\n' none lzw deflate packbits lzma zstd rle zips zip piz pxr24 b44 b44a dwaa dwab
        case --png-level
            seq 0 9
        case --key
            printf '%s\n' remove only
        case --view --views
            __kovalune_settings View= | string replace View= ''
        case --set
            __kovalune_settings $typed
        case --from --diff --flag-map --mask
            __kovalune_pictures $typed
        case --params --pass --save-params --log
            __fish_complete_path $typed
        case --plugin
            __kovalune_files $typed so
    end
end

function __kovalune_complete
    set -l sub (__kovalune_sub)
    set -l words (commandline -opc)
    set -l before $words[-1]
    set -l typed (commandline -ct | string unescape)
    if test -z "$sub"
        if string match -q -- '-*' $typed
            __kovalune_offer_help Options
        else
            __kovalune_offer_help Subcommands
        end
    else if string match -qr '^-[^=]*$' -- $before; and __kovalune_takes_value $sub $before
        __kovalune_value $sub $before $typed
    else if string match -qr '^--.*=' -- $typed
        set -l option (string replace -r '=.*' '' -- $typed)
        printf "$option=%s\n" (__kovalune_value $sub $option (string replace -r '^[^=]*=' '' -- $typed))
    else if string match -q -- '-*' $typed
        __kovalune_offer_help Options $sub
    else if test $sub = defaults
        printf '%s\n' save forget show
    else if test $sub = help
        __kovalune_offer_help Subcommands
    else if test -n "$(__kovalune_help Positionals $sub)"
        __kovalune_pictures $typed
    end
end

complete -c kovalune -f -a '(__kovalune_complete)'
