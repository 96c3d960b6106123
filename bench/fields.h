// The fields of the workloads' records, once for all JSON contenders. `describe` shows them to a
// visitor one after the other; it is a template, so that everything is inlined as if it had been
// written by hand. Counts and lengths are not among the fields: JSON arrays and texts know theirs.
#pragma once

#include <concepts>
#include <type_traits>

#include "codec.h"

namespace kvt_bench {

template <typename Type, typename Record>
concept Is = std::same_as<std::remove_const_t<Type>, Record>;

void describe(Is<vemra_end_job> auto &record, auto &&visit) {
    visit.number("job_id", record.job_id);
    visit.number("reservation_id", record.reservation_id);
}

void describe(Is<vemra_quota> auto &record, auto &&visit) {
    visit.number("max_osts", record.max_osts);
    visit.number("user_data_per_ost", record.user_data_per_ost);
    visit.number("max_buffers", record.max_buffers);
    visit.number("max_groups", record.max_groups);
    visit.number("max_qps", record.max_qps);
}

void describe(Is<vemra_begin_job> auto &record, auto &&visit) {
    visit.number("job_id", record.job_id);
    visit.number("uid", record.uid);
    visit.number("priority", record.priority);
    visit.real("quota_percentage", record.quota_percentage);
    visit.block("quota", record.quota);
    visit.allocated_text("hosts", record.hosts, record.hosts_len);
    visit.number("num_rails", record.num_rails);
    visit.number("num_trees", record.num_trees);
    visit.array("port_guids", record.port_guids, record.num_guids);
    visit.number("num_channels", record.num_channels);
    visit.number("pkey", record.pkey);
    visit.number("enable_mcast", record.enable_mcast);
    visit.number("req_feature_mask", record.req_feature_mask);
    visit.number("reproducible_mode", record.reproducible_mode);
    visit.number("exclusive_lock", record.exclusive_lock);
}

void describe(Is<vemra_qpc_options> auto &record, auto &&visit) {
    visit.number("qkey", record.qkey);
    visit.number("flow_label", record.flow_label);
    visit.number("pkey", record.pkey);
    visit.number("sl", record.sl);
    visit.number("tclass", record.tclass);
    visit.number("rnr_mode", record.rnr_mode);
    visit.number("rnr_retry_limit", record.rnr_retry_limit);
    visit.number("local_ack_timeout", record.local_ack_timeout);
    visit.number("timeout_retry_limit", record.timeout_retry_limit);
}

void describe(Is<vemra_sd_info> auto &record, auto &&visit) {
    visit.number("version", record.version);
    visit.number("vemrad_id", record.vemrad_id);
    visit.number("addr_type", record.addr_type);
    visit.text("addr", record.addr);
}

void describe(Is<ibv_gid> auto &record, auto &&visit) {
    visit.number("subnet_prefix", record.global.subnet_prefix);
    visit.number("guid", record.global.interface_id);
}

void describe(Is<vemra_tree> auto &record, auto &&visit) {
    visit.number("feature_mask", record.feature_mask);
    visit.number("tree_id", record.tree_id);
    visit.number("peer_tree_id", record.peer_tree_id);
    visit.number("max_qp_child_idxs", record.max_qp_child_idxs);
    visit.bytes("versions", record.versions, 0);
    visit.block("mgid", record.mgid);
    visit.block("quota", record.quota);
    visit.number("control_path_version", record.control_path_version);
}

void describe(Is<ibv_sa_path_rec> auto &record, auto &&visit) {
    visit.block("dgid", record.dgid);
    visit.block("sgid", record.sgid);
    visit.number("dlid", record.dlid);
    visit.number("slid", record.slid);
    visit.number("raw_traffic", record.raw_traffic);
    visit.number("flow_label", record.flow_label);
    visit.number("hop_limit", record.hop_limit);
    visit.number("traffic_class", record.traffic_class);
    visit.number("reversible", record.reversible);
    visit.number("numb_path", record.numb_path);
    visit.number("pkey", record.pkey);
    visit.number("sl", record.sl);
    visit.number("mtu_selector", record.mtu_selector);
    visit.number("mtu", record.mtu);
    visit.number("rate_selector", record.rate_selector);
    visit.number("rate", record.rate);
    visit.number("plt_selector", record.packet_life_time_selector);
    visit.number("plt", record.packet_life_time);
    visit.number("preference", record.preference);
}

void describe(Is<vemra_tree_conn> auto &record, auto &&visit) {
    visit.number("tree_id", record.tree_id);
    visit.number("vemrad_id", record.vemrad_id);
    visit.bytes("qp_child_idxs", record.qp_child_idxs, 255);
    visit.block("pr_sd_to_an", record.pr_sd_to_an);
    visit.block("pr_an_to_sd", record.pr_an_to_sd);
}

void describe(Is<vemra_tree_an> auto &record, auto &&visit) {
    visit.number("guid", record.guid);
    visit.number("lid", record.lid);
    visit.number("tree_id", record.tree_id);
    visit.number("an_id", record.an_id);
    visit.number("parent_an_id", record.parent_an_id);
}

void describe(Is<vemra_job_data> auto &record, auto &&visit) {
    visit.number("job_id", record.job_id);
    visit.number("master_vemrad_id", record.master_vemrad_id);
    visit.number("vemra_job_id", record.vemra_job_id);
    visit.number("uid", record.uid);
    visit.block("qpc_opts", record.qpc_opts);
    visit.block("sat_qpc_opts", record.sat_qpc_opts);
    visit.run("hosts_sd_info", record.hosts_sd_info, record.hosts_num);
    visit.run("trees", record.trees, record.trees_num);
    visit.run("conns", record.conns, record.conns_num);
    visit.run("agg_nodes", record.agg_nodes, record.agg_nodes_num);
    visit.number("job_key", record.job_key);
    visit.number("reservation_id", record.reservation_id);
}

void describe(Is<vemra_topology_switch_info> auto &record, auto &&visit) {
    visit.number("id", record.id);
    visit.text("name", record.name);
    visit.array("peer_ids", record.peer_ids, record.num_peer_ids);
    visit.array("port_guids", record.port_guids, record.num_port_guids);
}

void describe(Is<vemra_topology_info_list> auto &record, auto &&visit) {
    visit.run("switches", record.switches, record.num_switches);
    visit.number("status", record.status);
}

void describe(Is<vemra_timestamp> auto &record, auto &&visit) {
    visit.number("seconds", record.seconds);
    visit.number("useconds", record.useconds);
}

void describe(Is<vemra_event_str_entry> auto &record, auto &&visit) {
    visit.allocated_text("entry_name", record.entry_name, record.entry_name_len);
    visit.allocated_text("entry_value", record.entry_value, record.value_len);
}

void describe(Is<vemra_event> auto &record, auto &&visit) {
    visit.number("event_type", record.event_type);
    visit.run("str_entry_list", record.str_entry_list, record.num_str_entry);
    visit.block("ts", record.ts);
}

void describe(Is<vemra_event_list> auto &record, auto &&visit) {
    visit.run("vemra_events", record.events, record.num_event);
}

void describe(Is<vemra_resource_agg_tree> auto &record, auto &&visit) {
    visit.number("tree_num", record.tree_num);
    visit.number("priority", record.priority);
    visit.number("tree_status", record.tree_status);
}

void describe(Is<vemra_resource_link> auto &record, auto &&visit) {
    visit.number("agg_node_guid", record.agg_node_guid);
    visit.number("port_num", record.port_num);
    visit.number("priority", record.priority);
    visit.number("link_status", record.link_status);
    visit.number("active_jobs", record.active_jobs);
}

void describe(Is<vemra_resource_agg_node> auto &record, auto &&visit) {
    visit.number("agg_node_guid", record.agg_node_guid);
    visit.number("priority", record.priority);
    visit.text("ts", record.ts);
    visit.number("agg_node_status", record.agg_node_status);
    visit.number("active_jobs", record.active_jobs);
    visit.number("trees_num", record.trees_num);
}

void describe(Is<vemra_resource_message> auto &record, auto &&visit) {
    visit.number("operation", record.operation);
    visit.number("feature_bitmask", record.feature_bitmask);
    visit.run("agg_trees", record.agg_trees, record.agg_trees_num);
    visit.run("links", record.links, record.links_num);
    visit.run("agg_nodes", record.agg_nodes, record.agg_nodes_num);
}
} // namespace kvt_bench
