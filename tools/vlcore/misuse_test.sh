#!/usr/bin/env bash
# The command-line tool on misuse.  Each row names itself, then gives the
# arguments as shell words ($digits and $letters stand for 100,000 of
# them); the tool must end with status 2 and say why on standard error,
# its first line "vlcore: REASON".
#   misuse_test.sh TOOL
set -u
tool=$1
digits=$(printf '%100000s' '' | tr ' ' 9)
letters=$(printf '%100000s' '' | tr ' ' x)
passed=0 failed=0
while IFS='|' read -r name words; do
  [[ -z $name || $name == \#* ]] && continue
  eval "args=($words)"
  said=$("$tool" "${args[@]}" 2>&1 >/dev/null)
  status=$?
  reason=${said%%$'\n'*}
  if [[ $status -eq 2 && $reason == "vlcore: "?* ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED: ${name% } - status $status, said: ${reason:0:160}"
  fi
done <<'ROWS'
no command                               |
unknown command                          | frobnicate
an empty command                         | ''
help with an argument                    | help me
tokens without TEXT                      | tokens
tokens with two TEXTs                    | tokens a b
tokens of an empty text                  | tokens ''
number of an empty text                  | number ''
eval without NAME                        | eval --deg
eval with an unknown option              | eval --rad SIN 1
eval of an unknown function              | eval NOSUCH 1
eval of a 100,000-letter name            | eval "$letters" 1
eval with an argument short              | eval TTABLE 0.9
eval with an argument extra              | eval SIN 1 2
eval of garbage                          | eval SIN 1x
eval of a number beyond double range     | eval SIN 1e999
eval of 100,000 digits                   | eval SIN "$digits"
random without COUNT                     | random 5
random with COUNT negative               | random 5 -1
random with COUNT not whole              | random 5 2.5
random with COUNT beyond a million       | random 5 1000001
random with COUNT of 100,000 digits      | random 5 "$digits"
random with SEED 0                       | random 0 3
random with an unknown stream            | random 5 3 cauchy
poisson without MEAN                     | random 5 3 poisson
uniform with a MEAN                      | random 5 3 uniform 2
poisson with a garbage MEAN              | random 5 3 poisson x
format without VALUE                     | format '*'
format of a 100,000-letter FORMAT        | format "$letters" 1
format of a garbage VALUE among good     | format '*' 1 x 2
format of an empty VALUE                 | format '*' 1 ''
sprintf with a width of 100,000 digits   | sprintf "%$digits.3f" 1
section without FILE                     | section
section with a NAME of 100,000 letters   | section vlcore.ini "$letters"
section with too many arguments          | section a b c d
package with a NAME of 17 letters        | package a.pkg ABCDEFGHIJKLMNOPQ
package with too many arguments          | package a b c
names without CLASS                      | names
names of CLASS 103                       | names 103
names of a CLASS that wraps to 7         | names 4294967303 PLOTXY
names of CLASS -1                        | names -1
names of a CLASS of 100,000 digits       | names "$digits"
date without VALUE                       | date
date of garbage                          | date 12abc
date with a FORMAT beyond 16 bits        | date 2460374.5 65536
date with a FORMAT below 0               | date 2460374.5 -1
date with too many arguments             | date 1 2 3
time of 100,000 digits                   | time "$digits"
time with a FORMAT of 100,000 digits     | time 0.5 "$digits"
parsedate without TEXT                   | parsedate
parsedate with a garbage FORMAT          | parsedate 3/5/2024 x
open with two FILTERs                    | open a b
save without NAME                        | save
save of a 100,000-letter NAME            | save "$letters"
printers with an argument                | printers x
print without FILE                       | print
print with two FILEs                     | print a b
ROWS
echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]
