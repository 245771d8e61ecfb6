#!/usr/bin/env bash
# check-latex.sh FILE: whether LaTeX sets the report, with all its references.
#
# Ends with status 77, which counts as skipped, where LaTeX or a package of the preamble is missing (Debian:
# texlive-latex-base, texlive-latex-recommended, texlive-fonts-recommended).
set -euo pipefail
file=$(realpath "$1")
name=$(basename "$file" .tex)

skip() {
    printf 'SKIPPED: %s, so nobody has set %s\n' "$1" "$file" >&2
    exit 77
}

command -v latex >/dev/null 2>&1 || skip "latex is not installed"
command -v kpsewhich >/dev/null 2>&1 || skip "kpsewhich is not installed"
for part in article.cls a4.sty fontenc.sty times.sty graphicx.sty inputenc.sty psfrag.sty listings.sty verbatim.sty \
    ptmr8t.tfm; do
    kpsewhich "$part" >/dev/null || skip "LaTeX has no $part"
done

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
# References take a second run.
for run in 1 2; do
    if ! latex -interaction=nonstopmode -halt-on-error "$file" >"run$run" 2>&1; then
        printf 'Run %s of latex failed:\n' "$run" >&2
        tail -n 30 "run$run" >&2
        exit 1
    fi
done
if grep -E '^LaTeX( Font)? Warning|multiply defined' "$name.log" >&2; then
    exit 1
fi
grep -qE "^Output written on $name\.dvi \([0-9]+ pages?, " "$name.log"
