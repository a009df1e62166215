#!/usr/bin/env bash
# Every text the sources mark for translation is in each translation file, translated: lupdate reads the
# sources into a copy of each file as the update_translations target does, and a text new to it comes out
# unfinished. The English file holds only plural forms, so only its plural texts must be finished.
# Usage: translations_complete.sh LUPDATE SOURCE_DIR TS_FILE...
set -euo pipefail
lupdate=$1
source=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failed=0
for ts in "$@"; do
    copy=$work/$(basename "$ts")
    cp "$ts" "$copy"
    "$lupdate" -silent -locations none -no-obsolete -I "$source/src" -I "$source/tools" -extensions cpp,h \
        "$source/src" "$source/tools" -ts "$copy" >/dev/null
    case "$ts" in
    *_en.ts) only_plurals=1 ;;
    *) only_plurals=0 ;;
    esac
    # The source texts of unfinished messages (of plural ones only for English), one per line.
    missing=$(awk -v only_plurals=$only_plurals '
        /<message/ { plural = /numerus="yes"/; source = ""; unfinished = 0 }
        /<source>/ { source = $0; sub(/.*<source>/, "", source); sub(/<\/source>.*/, "", source) }
        /type="unfinished"/ { unfinished = 1 }
        /<\/message>/ { if (unfinished && (plural || !only_plurals)) print "  " source }
    ' "$copy")
    if [ -n "$missing" ]; then
        echo "$(basename "$ts") lacks these texts (cmake --build build --target update_translations, then" \
            "translate them in Qt Linguist):" >&2
        echo "$missing" >&2
        failed=1
    fi
done
exit $failed
