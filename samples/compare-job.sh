#!/bin/sh
# Compares the captures of a job before and after a change, in the folder that it is called in.
#   compare-job.sh BEFORE.rvf AFTER.rvf [OPTION...]
# Ends with 0 if they are the same, 1 if they differ, and 2 if there is no answer. Only a run that
# wrote its closing report, with the very status that it ended with, counts as an answer.
report=PlenarixMessages.dat
no_answer() {
  echo "compare-job: no answer: $*" >&2
  exit 2
}

[ $# -ge 2 ] || no_answer "usage: compare-job.sh BEFORE.rvf AFTER.rvf [OPTION...]"
pair=$1,$2
shift 2
rm -f "$report" Differenced.dat || no_answer "the old outputs cannot be removed"

status=0
rvfcompare "-COMPARE=$pair" "$@" || status=$?
[ "$status" -ne 255 ] || no_answer "rvfcompare failed, see its messages and $report"
bits=$(sed -n 's/^ \*\*\* *--- Return Code *\([0-9][0-9]*\) ---.*/\1/p' "$report" 2>/dev/null)
[ -n "$bits" ] || no_answer "rvfcompare ended with $status and no closing report: killed or missing"
[ $(((bits | bits >> 17) & 255)) -eq "$status" ] ||
  no_answer "rvfcompare ended with $status, but its report says $bits"

[ "$bits" -ne 0 ] || { echo "identical"; exit 0; }
tell() { if [ $((bits & $1)) -ne 0 ]; then echo "$2"; fi; }
tell 2097152 "the files have different resolutions, nothing was compared"
tell 1048576 "the customers are not the same"
tell 524288 "a customer has another number of pages"
tell 2048 "texts differ"
tell 256 "colours differ"
tell 96 "positions or line widths are out of tolerance"
[ "$bits" -ne 129 ] || echo "nothing but order, tolerance, markers or added parts"
exit 1
