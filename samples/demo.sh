#!/usr/bin/env bash
# The tool at work on a copy of the sample library, every step shown as a command with its output.
#
# usage: demo.sh DIRECTORY     DIRECTORY is made anew; kxbox must be in the PATH
set -euo pipefail

samples=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
directory=$1
rm -rf "$directory"
mkdir -p "$directory"
cp -r "$samples/standard.bxl" "$directory"

say() {
    printf '\n# %s\n' "$*"
}

# Shows a command as it would be typed, and runs it where the copy is.
run() {
    printf '\n$ %s\n' "$1"
    (cd "$directory" && eval "$1")
}

say "A library: a directory with folders, boxes, and translations of their texts"
run "kxbox info standard.bxl"
run "kxbox tree standard.bxl --depth 1"
run "kxbox tree standard.bxl Motion"
run "kxbox check standard.bxl"

say "A box is renamed: its directory follows, and its messages in every language"
box="Motion/Posture/Stand up"
text="Gets up from any posture and stands still."
run "kxbox tr get standard.bxl '$box' fr '$text'"
run "grep -A 3 '<name>Library:/$box' standard.bxl/translations/translation_fr.ts"
run "kxbox rename standard.bxl '$box' 'Get up!'"
run "grep -A 3 '<name>Library:/Motion/Posture/Get up' standard.bxl/translations/translation_fr.ts"
run "kxbox tr get standard.bxl 'Motion/Posture/Get up!' fr '$text'"

say "The first two boxes of a folder are put behind the third"
run "kxbox tree standard.bxl Logic"
run "kxbox reorder standard.bxl Logic 0 1 3"
run "kxbox tree standard.bxl Logic"

say "A box moves to another folder; a dry run says beforehand what will happen"
run "kxbox move standard.bxl 'Logic/On \\/ off' --to 'Flow control' --at 0 --dry-run"
run "kxbox move standard.bxl 'Logic/On \\/ off' --to 'Flow control' --at 0"
run "kxbox tree standard.bxl 'Flow control'"

say "A folder is copied into a new library, with resources and translations"
run "kxbox new mine.bxl --title 'My boxes'"
run "kxbox copy standard.bxl Motion/Dances --into mine.bxl"
run "kxbox tree mine.bxl"
run "kxbox find mine.bxl dreiviertel"

say "The library becomes one archive, and a directory again: the same, bit for bit"
run "kxbox convert standard.bxl standard.kbl --format archive"
run "kxbox info standard.kbl | grep -v size"
run "kxbox convert standard.kbl again.bxl --format directory"
run "diff -r standard.bxl again.bxl && echo 'no difference'"

say "How much is translated"
run "kxbox tr status standard.bxl"

say "The behaviours become projects of their own; one of them"
run "kxbox export standard.bxl behaviours"
run "ls -A behaviours/Motion/Gestures/Nod"
run "head -n 12 behaviours/Motion/Gestures/Nod/behavior.bhx"

say "Nothing was broken on the way"
run "kxbox check standard.bxl"

printf '\nThe results lie in %s: the library standard.bxl as edited, mine.bxl with the copies,\n' \
    "$directory"
printf 'the archive standard.kbl, again.bxl made of it, and the exported behaviours.\n'
