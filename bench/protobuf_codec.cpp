#include "protobuf_codec.h"

#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/text_format.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "messages.pb.h"

namespace kvt_bench {

namespace {

/// Copies one record and its message, in one of two directions: Filling fills the message, Taking
/// takes it over into the record, which is zeroed.
struct Filling {
    static constexpr bool fills = true;
    template <typename Message> using MessageOf = Message;
    template <typename Record> using RecordOf = const Record;
};

struct Taking {
    static constexpr bool fills = false;
    template <typename Message> using MessageOf = const Message;
    template <typename Record> using RecordOf = Record;
};

// Each stands for one member of `record` and one field of `message`.
#define COPY(message_type, record_type)                                                            \
    template <typename Way>                                                                        \
    void copy([[maybe_unused]] typename Way::template MessageOf<pb::message_type> &message,        \
              [[maybe_unused]] typename Way::template RecordOf<record_type> &record)
#define NUMBER(field, member)                                                                      \
    if constexpr (Way::fills) {                                                                    \
        message.set_##field(record.member);                                                        \
    } else {                                                                                       \
        record.member = static_cast<decltype(record.member)>(message.field());                     \
    }                                                                                              \
    static_assert(true)
#define TEXT(field, member)                                                                        \
    if constexpr (Way::fills) {                                                                    \
        message.set_##field(record.member, std::strlen(record.member));                            \
    } else {                                                                                       \
        message.field().copy(record.member, sizeof record.member - 1);                             \
    }                                                                                              \
    static_assert(true)
#define ALLOCATED_TEXT(field, member, length)                                                      \
    if constexpr (Way::fills) {                                                                    \
        message.set_##field(record.member, record.length - 1);                                     \
    } else {                                                                                       \
        record.member = allocate_text(message.field(), record.length);                             \
    }                                                                                              \
    static_assert(true)
#define ARRAY(field, member, count)                                                                \
    if constexpr (Way::fills) {                                                                    \
        message.mutable_##field()->Add(record.member, record.member + record.count);               \
    } else {                                                                                       \
        record.count = static_cast<decltype(record.count)>(message.field##_size());                \
        record.member = allocate<std::remove_pointer_t<decltype(record.member)>>(record.count);    \
        std::copy(message.field().begin(), message.field().end(), record.member);                  \
    }                                                                                              \
    static_assert(true)
#define BYTES(field, member, last)                                                                 \
    if constexpr (Way::fills) {                                                                    \
        const uint8_t *end = std::find(std::begin(record.member), std::end(record.member), last);  \
        message.set_##field(record.member, static_cast<size_t>(end - record.member));              \
    } else {                                                                                       \
        std::memcpy(record.member, message.field().data(),                                         \
                    std::min(message.field().size(), sizeof record.member));                       \
    }                                                                                              \
    static_assert(true)
#define BLOCK(field, member)                                                                       \
    if constexpr (Way::fills) {                                                                    \
        copy<Way>(*message.mutable_##field(), record.member);                                      \
    } else {                                                                                       \
        copy<Way>(message.field(), record.member);                                                 \
    }                                                                                              \
    static_assert(true)
#define RUN(field, member, count)                                                                  \
    if constexpr (Way::fills) {                                                                    \
        message.mutable_##field()->Reserve(static_cast<int>(record.count));                        \
        for (size_t i = 0; i < record.count; ++i) {                                                \
            copy<Way>(*message.add_##field(), record.member[i]);                                   \
        }                                                                                          \
    } else {                                                                                       \
        record.count = static_cast<decltype(record.count)>(message.field##_size());                \
        record.member = allocate<std::remove_pointer_t<decltype(record.member)>>(record.count);    \
        for (size_t i = 0; i < record.count; ++i) {                                                \
            copy<Way>(message.field(static_cast<int>(i)), record.member[i]);                       \
        }                                                                                          \
    }                                                                                              \
    static_assert(true)

// clang-format off
COPY(EndJob, vemra_end_job) {
    NUMBER(job_id, job_id);
    NUMBER(reservation_id, reservation_id);
}

COPY(Quota, vemra_quota) {
    NUMBER(max_osts, max_osts);
    NUMBER(user_data_per_ost, user_data_per_ost);
    NUMBER(max_buffers, max_buffers);
    NUMBER(max_groups, max_groups);
    NUMBER(max_qps, max_qps);
}

COPY(BeginJob, vemra_begin_job) {
    NUMBER(job_id, job_id);
    NUMBER(uid, uid);
    NUMBER(priority, priority);
    NUMBER(quota_percentage, quota_percentage);
    BLOCK(quota, quota);
    ALLOCATED_TEXT(hosts, hosts, hosts_len);
    NUMBER(num_rails, num_rails);
    NUMBER(num_trees, num_trees);
    ARRAY(port_guids, port_guids, num_guids);
    NUMBER(num_channels, num_channels);
    NUMBER(pkey, pkey);
    NUMBER(enable_mcast, enable_mcast);
    NUMBER(req_feature_mask, req_feature_mask);
    NUMBER(reproducible_mode, reproducible_mode);
    NUMBER(exclusive_lock, exclusive_lock);
}

COPY(QpcOptions, vemra_qpc_options) {
    NUMBER(qkey, qkey);
    NUMBER(flow_label, flow_label);
    NUMBER(pkey, pkey);
    NUMBER(sl, sl);
    NUMBER(tclass, tclass);
    NUMBER(rnr_mode, rnr_mode);
    NUMBER(rnr_retry_limit, rnr_retry_limit);
    NUMBER(local_ack_timeout, local_ack_timeout);
    NUMBER(timeout_retry_limit, timeout_retry_limit);
}

COPY(SdInfo, vemra_sd_info) {
    NUMBER(version, version);
    NUMBER(vemrad_id, vemrad_id);
    NUMBER(addr_type, addr_type);
    TEXT(addr, addr);
}

COPY(Gid, ibv_gid) {
    NUMBER(subnet_prefix, global.subnet_prefix);
    NUMBER(guid, global.interface_id);
}

COPY(Tree, vemra_tree) {
    NUMBER(feature_mask, feature_mask);
    NUMBER(tree_id, tree_id);
    NUMBER(peer_tree_id, peer_tree_id);
    NUMBER(max_qp_child_idxs, max_qp_child_idxs);
    BYTES(versions, versions, 0);
    BLOCK(mgid, mgid);
    BLOCK(quota, quota);
    NUMBER(control_path_version, control_path_version);
}

COPY(SaPathRec, ibv_sa_path_rec) {
    BLOCK(dgid, dgid);
    BLOCK(sgid, sgid);
    NUMBER(dlid, dlid);
    NUMBER(slid, slid);
    NUMBER(raw_traffic, raw_traffic);
    NUMBER(flow_label, flow_label);
    NUMBER(hop_limit, hop_limit);
    NUMBER(traffic_class, traffic_class);
    NUMBER(reversible, reversible);
    NUMBER(numb_path, numb_path);
    NUMBER(pkey, pkey);
    NUMBER(sl, sl);
    NUMBER(mtu_selector, mtu_selector);
    NUMBER(mtu, mtu);
    NUMBER(rate_selector, rate_selector);
    NUMBER(rate, rate);
    NUMBER(plt_selector, packet_life_time_selector);
    NUMBER(plt, packet_life_time);
    NUMBER(preference, preference);
}

COPY(TreeConn, vemra_tree_conn) {
    NUMBER(tree_id, tree_id);
    NUMBER(vemrad_id, vemrad_id);
    BYTES(qp_child_idxs, qp_child_idxs, 255);
    BLOCK(pr_sd_to_an, pr_sd_to_an);
    BLOCK(pr_an_to_sd, pr_an_to_sd);
}

COPY(TreeAn, vemra_tree_an) {
    NUMBER(guid, guid);
    NUMBER(lid, lid);
    NUMBER(tree_id, tree_id);
    NUMBER(an_id, an_id);
    NUMBER(parent_an_id, parent_an_id);
}

COPY(JobData, vemra_job_data) {
    NUMBER(job_id, job_id);
    NUMBER(master_vemrad_id, master_vemrad_id);
    NUMBER(vemra_job_id, vemra_job_id);
    NUMBER(uid, uid);
    BLOCK(qpc_opts, qpc_opts);
    BLOCK(sat_qpc_opts, sat_qpc_opts);
    RUN(hosts_sd_info, hosts_sd_info, hosts_num);
    RUN(trees, trees, trees_num);
    RUN(conns, conns, conns_num);
    RUN(agg_nodes, agg_nodes, agg_nodes_num);
    NUMBER(job_key, job_key);
    NUMBER(reservation_id, reservation_id);
}

COPY(TopologySwitchInfo, vemra_topology_switch_info) {
    NUMBER(id, id);
    TEXT(name, name);
    ARRAY(peer_ids, peer_ids, num_peer_ids);
    ARRAY(port_guids, port_guids, num_port_guids);
}

COPY(TopologyInfoList, vemra_topology_info_list) {
    RUN(switches, switches, num_switches);
    NUMBER(status, status);
}

COPY(Timestamp, vemra_timestamp) {
    NUMBER(seconds, seconds);
    NUMBER(useconds, useconds);
}

COPY(EventStrEntry, vemra_event_str_entry) {
    ALLOCATED_TEXT(entry_name, entry_name, entry_name_len);
    ALLOCATED_TEXT(entry_value, entry_value, value_len);
}

COPY(Event, vemra_event) {
    NUMBER(event_type, event_type);
    RUN(str_entry_list, str_entry_list, num_str_entry);
    BLOCK(ts, ts);
}

COPY(EventList, vemra_event_list) {
    RUN(vemra_events, events, num_event);
}

COPY(ResourceAggTree, vemra_resource_agg_tree) {
    NUMBER(tree_num, tree_num);
    NUMBER(priority, priority);
    NUMBER(tree_status, tree_status);
}

COPY(ResourceLink, vemra_resource_link) {
    NUMBER(agg_node_guid, agg_node_guid);
    NUMBER(port_num, port_num);
    NUMBER(priority, priority);
    NUMBER(link_status, link_status);
    NUMBER(active_jobs, active_jobs);
}

COPY(ResourceAggNode, vemra_resource_agg_node) {
    NUMBER(agg_node_guid, agg_node_guid);
    NUMBER(priority, priority);
    TEXT(ts, ts);
    NUMBER(agg_node_status, agg_node_status);
    NUMBER(active_jobs, active_jobs);
    NUMBER(trees_num, trees_num);
}

COPY(ResourceMessage, vemra_resource_message) {
    NUMBER(operation, operation);
    NUMBER(feature_bitmask, feature_bitmask);
    RUN(agg_trees, agg_trees, agg_trees_num);
    RUN(links, links, links_num);
    RUN(agg_nodes, agg_nodes, agg_nodes_num);
}
// clang-format on

template <typename Record> struct MessageFor;
#define MESSAGE_FOR(record_type, message_type)                                                     \
    template <> struct MessageFor<record_type> { using Type = pb::message_type; }
MESSAGE_FOR(vemra_end_job, EndJob);
MESSAGE_FOR(vemra_begin_job, BeginJob);
MESSAGE_FOR(vemra_job_data, JobData);
MESSAGE_FOR(vemra_topology_info_list, TopologyInfoList);
MESSAGE_FOR(vemra_event_list, EventList);
MESSAGE_FOR(vemra_resource_message, ResourceMessage);

struct Binary {
    template <typename Message> static bool write(const Message &message, std::string &document) {
        return message.SerializeToString(&document);
    }

    template <typename Message> static bool read(std::string_view document, Message &message) {
        return message.ParseFromArray(document.data(), static_cast<int>(document.size()));
    }
};

struct Text {
    template <typename Message> static bool write(const Message &message, std::string &document) {
        return google::protobuf::TextFormat::PrintToString(message, &document);
    }

    template <typename Message> static bool read(std::string_view document, Message &message) {
        google::protobuf::io::ArrayInputStream stream(document.data(),
                                                      static_cast<int>(document.size()));
        return google::protobuf::TextFormat::Parse(&stream, &message);
    }
};

template <typename Record, typename Form> class ProtobufCodec final : public Codec {
public:
    void encode(const void *record) override {
        message_.Clear();
        copy<Filling>(message_, *static_cast<const Record *>(record));
        if (!Form::write(message_, document_)) {
            fail("protobuf: a message cannot be written");
        }
    }

    std::string_view encoded() const override { return document_; }

    void *decode(std::string_view document) override {
        if (!Form::read(document, message_)) {
            fail("protobuf: a document cannot be read");
        }
        auto *record = allocate<Record>(1);
        copy<Taking>(message_, *record);
        return record;
    }

private:
    typename MessageFor<Record>::Type message_;
    std::string document_;
};

template <typename Record> using BinaryCodec = ProtobufCodec<Record, Binary>;
template <typename Record> using TextCodec = ProtobufCodec<Record, Text>;

} // namespace

std::unique_ptr<Codec> make_protobuf(int32_t kind) {
    return make_codec<BinaryCodec>(kind);
}

std::unique_ptr<Codec> make_protobuf_text(int32_t kind) {
    return make_codec<TextCodec>(kind);
}

} // namespace kvt_bench
