# Completion of velmoire for fish: its subcommands and options, as its own help lists them.

# __velmoire_listed LIST WORD...: the items of a list in the help that the words print, each with what it is.
function __velmoire_listed --argument-names list
    $argv[2..] 2>/dev/null | awk -v list="^$list" '
        function tell() { if (name != "") print name "\t" text; name = "" }
        $0 ~ list { listed = 1; next }
        !NF { tell(); listed = 0 }
        !listed { next }
        match($0, /^  (    |-., )?[a-z-]+/) {
            tell()
            name = substr($0, 1, RLENGTH)
            text = substr($0, RLENGTH + 1)
            sub(/^ *(-., )?/, "", name)
            if (sub(/^=[^ ]*/, "", text)) name = name "="
            sub(/^ +/, "", text)
            next
        }
        { sub(/^ +/, ""); text = text " " $0 }
        END { tell() }'
end

function __velmoire_names_subcommand
    set --local words (commandline --tokenize --current-process --cut-at-cursor)
    test (count $words) -eq 1; or test (count $words) -eq 2 -a "$words[2]" = aide
end

function __velmoire_words
    set --local words (commandline --tokenize --current-process --cut-at-cursor)
    if __velmoire_names_subcommand
        __velmoire_listed Sous-commandes $words[1] --aide
    else
        __velmoire_listed Options $words[1] $words[2] --aide
    end
end

function __velmoire_begins_option
    string match --quiet -- '-*' (commandline --current-token)
    and not string match --quiet -- '*=*' (commandline --current-token)
end

complete --command velmoire --condition __velmoire_names_subcommand --no-files --arguments '(__velmoire_words)'
complete --command velmoire --condition 'test (count (commandline -opc)) -eq 1' --no-files --arguments 'aide --aide --version'
complete --command velmoire --condition 'not __velmoire_names_subcommand; and __velmoire_begins_option' --no-files \
    --arguments '(__velmoire_words)'
