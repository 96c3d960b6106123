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
same "what is lost is said" "1 unknown.kvt:5:5: unknown-key:" "$status ${err%% \'*}"

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
same "what is wrong is said with its line" '1 some_bad.json:2: end_job.job_id: "x" is not a whole number of at most 64 bits
some_bad.json:4:' "$status ${err%%:4: *}:4:"
same "the others are converted" "2" "$(grep -c job_id <<<"$out")"
printf '%s' '{"type":"JOB_ERROR","job_error":{"job_id":5,"description":"a\"\n  }\n}\nmsg {\n  type: JOB_ERROR\n  job_error {\n    job_id: 7\n    error: 0\n    type: 0\n    description: \"b"}}' >two_in_one.json
printf '{"type":"JOB_ERROR","job_error":{"description":"a\\"b"}}' >quote.json
for file in quote.json two_in_one.json; do
    run kvt from-json "$file"
    same "what could not be read back is left out, and said: $file" \
        "1 $file:1: the message could not be read back: " "$status ${err%%back: *}back: $out"
done
for share in "12.3456789 12.345679 12.3457" "16777217 16777216 16777200" "3.4028235e38 3.4028235e+38 3.40282e+38"; do
    read -r number kept written <<<"$share"
    run bash -c "echo '{\"type\":\"BEGIN_JOB\",\"begin_job\":{\"quota_percentage\":$number}}' | kvt from-json"
    same "a float with more digits than are written: $number" \
        "1 (standard input):1: the message could not be read back: begin_job.quota_percentage: $kept would be $written" \
        "$status $err$out"
done
run bash -c "echo '{\"type\":\"BEGIN_JOB\",\"begin_job\":{\"quota_percentage\":1e-46}}' | kvt from-json"
same "a float that is too small" "1 (standard input):1: begin_job.quota_percentage: 1e-46 does not fit into 32 bits" "$status $err"
for text in '[' '[{"type":"END_JOB","end_job":{"job_id":1}},'; do
    run bash -c "printf '%s' '$text' | kvt from-json"
    same "a list that is cut off: $text" 1 "$status"
done
