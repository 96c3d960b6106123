#!/usr/bin/env bash
# kvt diff, as its users try it. Usage: diff.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

sed 's/job_id: 5/job_id: 6/' good.kvt >six.kvt
{ cat good.kvt "$examples/job_data.kvt"; } >a.kvt
{ sed '0,/tree_id: /s/tree_id: .*/tree_id: 9/' "$examples/job_data.kvt"; cat six.kvt; } >b.kvt
run kvt diff a.kvt a.kvt
same "no differences, no output" "0 " "$status $out$err"
run kvt diff a.kvt b.kvt
same "differences by message and path" 1 "$status"
same "a message that is gone" 1 "$(grep -c '^only in a.kvt:1: END_JOB job_id 5$' <<<"$out")"
same "a message that is new" 1 "$(grep -c '^only in b.kvt:.*: END_JOB job_id 6$' <<<"$out")"
sed '0,/ sl: /s/ sl: .*/ sl: 13/' "$examples/job_data.kvt" >c.kvt
run kvt diff "$examples/job_data.kvt" c.kvt
same "a value" 1 "$(grep -cE '^  [a-z_0-9.]*(\[[0-9]+\])?[a-z_.]*sl: [0-9]+ -> 13$' <<<"$out")"
run kvt diff a.kvt missing.kvt
same "a missing file" "2 kvt: missing.kvt: No such file or directory" "$status $err"

# --- How it is told ------------------------------------------------------------------------------

cat >before.kvt <<'END'
msg {
  type: RESOURCE_DATA
  resource_message {
    links {
      agg_node_guid: 783964675510836
      port_num: 1
      priority: 2
    }
    agg_nodes {
      agg_node_guid: 783964675510836
      ts: "12:00"
    }
  }
}
END
sed 's/priority: 2/priority: 3/; s/12:00/12:05/' before.kvt >after.kvt
cat good.kvt >>after.kvt
run kvt diff before.kvt after.kvt
same "a changed element is named by its guid in both forms, and a last line sums up" \
    '1 RESOURCE_DATA: before.kvt:1, after.kvt:1
  links[0].priority: 2 -> 3 (agg_node_guid 0x0002c90300001234 = 783964675510836, port_num 1)
  agg_nodes[0].ts: "12:00" -> "12:05" (agg_node_guid 0x0002c90300001234 = 783964675510836)
only in after.kvt:15: END_JOB job_id 5
messages: 1 differs in 2 places, 1 only in after.kvt, 0 equal' "$status $out"
run kvt diff good.kvt /dev/null
same "a message that only one has is a difference" "1 only in good.kvt:1: END_JOB job_id 5
messages: 1 only in good.kvt, 0 equal" "$status $out"
run kvt diff --guid hex before.kvt after.kvt
same "a guid in hexadecimal" 2 "$(grep -c 'agg_node_guid 0x0002c90300001234[,)]' <<<"$out")"
run kvt diff --guid dec before.kvt after.kvt
same "a guid in decimal" 2 "$(grep -c 'agg_node_guid 783964675510836[,)]' <<<"$out")"
run kvt diff --guid octal before.kvt after.kvt
same "no other form" "2 " "$status $out"

run kvt diff --brief before.kvt after.kvt
same "--brief names the messages" "1 RESOURCE_DATA: before.kvt:1, after.kvt:1: 2 differences
only in after.kvt:15: END_JOB job_id 5
messages: 1 differs in 2 places, 1 only in after.kvt, 0 equal" "$status $out"

# --- What is left out ----------------------------------------------------------------------------

run kvt diff --ignore 'links[*].priority' --ignore end_job before.kvt after.kvt
same "--ignore leaves out fields of all elements, and whole messages" \
    '1 RESOURCE_DATA: before.kvt:1, after.kvt:1
  agg_nodes[0].ts: "12:00" -> "12:05" (agg_node_guid 0x0002c90300001234 = 783964675510836)
messages: 1 differs in 1 place, 0 equal' "$status $out"
run kvt diff --ignore links --ignore agg_nodes[0].ts --ignore end_job before.kvt after.kvt
same "nothing is left" "0 " "$status $out$err"
run kvt diff --ignore agg_nods before.kvt after.kvt
same "a path that no message has" '2 1' "$status $(grep -c 'did you mean "agg_nodes"' <<<"$err")"

# --- For programs --------------------------------------------------------------------------------

run kvt diff --json before.kvt after.kvt
same "--json has an object a line for each difference" \
    '1 {"what":"changed","type":"RESOURCE_DATA","identity":{},"a":{"file":"before.kvt","line":1,"path":"links[0].priority","value":2},"b":{"file":"after.kvt","line":1,"path":"links[0].priority","value":3},"within":[{"list":"links","identity":{"agg_node_guid":"783964675510836","port_num":1}}]}
{"what":"changed","type":"RESOURCE_DATA","identity":{},"a":{"file":"before.kvt","line":1,"path":"agg_nodes[0].ts","value":"12:00"},"b":{"file":"after.kvt","line":1,"path":"agg_nodes[0].ts","value":"12:05"},"within":[{"list":"agg_nodes","identity":{"agg_node_guid":"783964675510836"}}]}
{"what":"message-added","type":"END_JOB","identity":{"job_id":"5"},"b":{"file":"after.kvt","line":15}}' \
    "$status $out"
run kvt diff --json --brief before.kvt after.kvt
same "--brief for programs" \
    '1 {"what":"message-changed","type":"RESOURCE_DATA","identity":{},"a":{"file":"before.kvt","line":1},"b":{"file":"after.kvt","line":1},"differences":2}
{"what":"message-added","type":"END_JOB","identity":{"job_id":"5"},"b":{"file":"after.kvt","line":15}}' \
    "$status $out"
run kvt diff --json --guid hex after.kvt before.kvt
same "guids as the option says, and what is gone" "2 1" \
    "$(grep -c '"agg_node_guid":"0x0002c90300001234"' <<<"$out") $(grep -c '^{"what":"message-removed"' <<<"$out")"

sed '/^    links {/,/^    }/d' before.kvt >fewer.kvt
run kvt diff --json before.kvt fewer.kvt
same "an element that is gone is there as a whole" \
    '{"what":"removed","type":"RESOURCE_DATA","identity":{},"a":{"file":"before.kvt","line":1,"path":"links[0]","value":{"agg_node_guid":"783964675510836","port_num":1,"priority":2,"link_status":0}},"b":{"file":"fewer.kvt","line":1},"within":[{"list":"links","identity":{"agg_node_guid":"783964675510836","port_num":1}}]}' \
    "$out"
run kvt diff --json fewer.kvt before.kvt
same "as is one that is new" 1 "$(grep -c '^{"what":"added",.*"b":{"file":"before.kvt","line":1,"path":"links\[0\]","value":{' <<<"$out")"
printf 'msg {\n  type: TOPOLOGY_INFO_REQUEST\n  topology_info_req {\n    port_guids: 1\n    port_guids: 2\n  }\n}\n' >guids.kvt
sed 's/: 1$/: 3/; s/: 2$/: 1/; s/: 3$/: 2/' guids.kvt >turned.kvt
run kvt diff --json guids.kvt turned.kvt
same "another order has paths and no values" \
    '{"what":"order","type":"TOPOLOGY_INFO_REQUEST","identity":{},"a":{"file":"guids.kvt","line":1,"path":"port_guids"},"b":{"file":"turned.kvt","line":1,"path":"port_guids"},"within":[]}' \
    "$out"
