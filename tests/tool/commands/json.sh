#!/usr/bin/env bash
# kvt json and kvt from-json, as their users try them. Usage: json.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"
schema=$(dirname "$examples")/docs/message.schema.json

run kvt json good.kvt
same "messages are a list for people" '0 [
  {
    "type": "END_JOB",
    "end_job": {
      "job_id": "5"
    }
  }
]' "$status $out"
run bash -c ": | kvt json"
same "no messages, an empty list" "0 []" "$status $out"
run kvt json --lines good.kvt untidy.kvt
same "or one on a line" '{"type":"END_JOB","end_job":{"job_id":"5"}}
{"type":"END_JOB","end_job":{"job_id":"5"}}' "$out"
run kvt json --lines --plain-numbers good.kvt
same "numbers as numbers" '{"type":"END_JOB","end_job":{"job_id":5}}' "$out"
run kvt json --lines unknown.kvt
same "that something is lost is said" '1 unknown.kvt: 1 finding: "kvt check unknown.kvt" shows it' \
    "$status $err"

for options in "" "--lines" "--lines --plain-numbers --guid hex" "--guid hex -j 3"; do
    for example in "$examples"/*.kvt; do
        # shellcheck disable=SC2086 # options are words
        run bash -c "kvt json $options '$example' | kvt from-json -j 2"
        same "there and back: $options $(basename "$example")" "$(cat "$example")" "$out"
    done
done

run kvt json --schema
same "the schema of the documentation is fresh" "$(cat "$schema")" "$out"
kvt json --lines "$examples"/*.kvt >all.json
kvt json --lines --plain-numbers --guid hex "$examples"/*.kvt >>all.json
run python3 - "$schema" all.json <<'PYTHON'
import json, sys, warnings
warnings.simplefilter("ignore")
import jsonschema
schema = json.load(open(sys.argv[1]))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
messages = [json.loads(line) for line in open(sys.argv[2])]
for message in messages:
    validator.validate(message)
wrong = [{}, {"type": "END_JOB"}, {"type": "END_JOB", "end_job": {"job": 1}},
         {"type": "END_JOB", "end_job": {"job_id": -1}}, {"type": "NONE"},
         {"type": "JOB_ERROR", "job_error": {"tree_id": 65536}}]
print(len(messages), sum(validator.is_valid(message) for message in wrong))
PYTHON
same "every message is valid by it, and nothing else" "$(wc -l <all.json) 0" "$out"

printf '{"type":"END_JOB","end_job":{"job_id":1}}\n{"type":\n"END_JOB","end_job":{"job_id":"x"}}\n{broken\n{"type":"END_JOB","end_job":{"job_id":2}}\n' >some_bad.json
run kvt from-json some_bad.json
same "what is wrong is said with its line and column" '1 some_bad.json:3:31: end_job.job_id: "x" is not a whole number; a string holds digits, or 0x and hexadecimal digits
some_bad.json:4:2: a key in double quotes belongs here' "$status $err"
same "the others are converted" "2" "$(grep -c job_id <<<"$out")"

# from_json WHAT EXPECTED JSON: what is said of it and printed, after the exit status
from_json() {
    printf '%s' "$3" >some.json
    run kvt from-json -j "$((RANDOM % 2 + 1))" some.json
    same "$1" "$2" "$status $err$out"
}
# job_error DESCRIPTION, begin_job PERCENTAGE
job_error() {
    printf '{"type":"JOB_ERROR","job_error":{"job_id":5,"description":%s}}' "$1"
}
begin_job() {
    printf '{"type":"BEGIN_JOB","begin_job":{"quota_percentage":%s}}' "$1"
}
at="some.json:1:59: job_error.description: a text cannot hold"
from_json "a quote" "1 $at a double quote, which is its byte 2; replace it" "$(job_error '"a\"b"')"
from_json "a quote in hexadecimal" "1 $at a double quote, which is its byte 1; replace it" \
    "$(job_error '{"hex":"22"}')"
from_json "a newline" "1 $at a newline, which is its byte 1; replace it" "$(job_error '"\nb"')"
from_json "a brace" "1 $at a brace, which is its byte 3; replace it" "$(job_error '"ab}"')"
from_json "two messages in one" "1 $at a double quote, which is its byte 2; replace it" \
    "$(job_error '"a\"\n  }\n}\nmsg {\n  type: JOB_ERROR\n  job_error {\n    description: \"b"')"
for share in "12.3456789 12.3457" "16777217 1.67772e+07" "3.4028235e38 3.40282e+38"; do
    read -r number written <<<"$share"
    from_json "a float with more digits than are written: $number" \
        "1 some.json:1:53: begin_job.quota_percentage: $number would be written as $written; six digits are kept, so round it" \
        "$(begin_job "$number")"
done
from_json "a float that is too small" \
    "1 some.json:1:53: begin_job.quota_percentage: 1e-46 does not fit into a float of 32 bits" \
    "$(begin_job 1e-46)"
printf '%s' "$(begin_job '"12.5"')" >some.json
run kvt from-json some.json
same "a float in a string" "    quota_percentage: 12.5" "$(grep quota_percentage <<<"$out")"

two='msg {
  type: END_JOB
  end_job {
    job_id: 1
  }
}

msg {
  type: RELEASE_GROUPS
  release_groups {
    num_groups: 1
    groups {
      group_id: 2
      tree_id: 3
    }
  }
}'
first='{"type":"END_JOB","end_job":{"job_id":1}}'
second=$'{"type":"RELEASE_GROUPS","release_groups":{"groups":[\n{"group_id":2,\n"tree_id":3}]}}'
for list in "$first$second" "[$first,$second]" $'[\n'"$first"$'\n,\n'"$second"$'\n]\n' \
    $'[\r\n'"$first,"$'\r\n\t'"$second"$'\r\n]' "[$first][$second]" $'\xEF\xBB\xBF'"$first $second"; do
    from_json "any layout of white space" "0 $two" "$list"
done
from_json "a list that is not closed" '1 some.json:1:2: this list is not closed: "]" is missing' '['
printf '[%s,\n' "$first" >some.json
run kvt from-json some.json
same "a list that is cut off" '1 some.json:2:1: this list is not closed: "]" is missing' "$status $err"
run kvt from-json /dev/null
same "no messages" "0 " "$status $out$err"
