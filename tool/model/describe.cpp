#include "model/describe.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "kvt/messages/message_type.h"
#include "model/columns.h"
#include "model/fields.h"

namespace kvt_tool {

using namespace kvt_str;

// --- What kinds are for --------------------------------------------------------------------------

namespace {

struct Purpose {
    uint32_t kind;
    std::string_view text;
};

constexpr Purpose purposes[] = {
    {VEMRA_MSG_TYPE_NONE, "Stands for no message; carries no record."},
    {VEMRA_MSG_TYPE_BEGIN_JOB, "Starts a job: its hosts and ports, and the resources it asks for."},
    {VEMRA_MSG_TYPE_END_JOB, "Ends a job."},
    {VEMRA_MSG_TYPE_JOB_DATA, "All that a job works with: daemons, trees, connections, nodes."},
    {VEMRA_MSG_TYPE_ALLOC_GROUPS, "Asks for aggregation groups for some processes of a job."},
    {VEMRA_MSG_TYPE_GROUPS_DATA, "Describes the groups that a job was granted."},
    {VEMRA_MSG_TYPE_RELEASE_GROUPS, "Gives groups of a job back."},
    {VEMRA_MSG_TYPE_REQ_SM_DATA, "Asks for data of the subnet manager."},
    {VEMRA_MSG_TYPE_SM_DATA, "Data of the subnet manager: the nodes of the fat tree, by LID."},
    {VEMRA_MSG_TYPE_JOB_ERROR, "Reports an error in a job."},
    {VEMRA_MSG_TYPE_AM_SIGNAL, "A signal, given by its flags."},
    {VEMRA_MSG_TYPE_JOB_INFO_REQUEST, "Asks for the list of all jobs."},
    {VEMRA_MSG_TYPE_JOB_INFO_REPLY, "Lists the jobs, with their states."},
    {VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, "The stored description of one job."},
    {VEMRA_MSG_TYPE_CREATE_RESERVATION, "Reserves ports, and shares of resources for them."},
    {VEMRA_MSG_TYPE_DELETE_RESERVATION, "Ends a reservation, by force if need be."},
    {VEMRA_MSG_TYPE_RESERVATION_INFO_REQUEST, "Asks for one reservation, or for all."},
    {VEMRA_MSG_TYPE_RESERVATION_INFO_REPLY, "Lists reservations, with their ports and resources."},
    {VEMRA_MSG_TYPE_PERSISTENT_RESERVATION_INFO, "The stored description of one reservation."},
    {VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST, "Asks for the switches of some ports."},
    {VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, "Lists switches, their peers and their ports."},
    {VEMRA_MSG_TYPE_EVENTS_REQUEST, "Asks for the events since a time."},
    {VEMRA_MSG_TYPE_EVENTS_REPLY, "Lists events, each with its time, names and values."},
    {VEMRA_MSG_TYPE_RESOURCE_DATA, "The state of the fabric: trees, links, aggregation nodes."},
    {VEMRA_MSG_TYPE_LAST, "Marks the end of the kinds; carries no record."},
};

constexpr bool purposes_are_in_order() {
    for (size_t i = 0; i < std::size(purposes); ++i) {
        if (purposes[i].kind != i) {
            return false;
        }
    }
    return true;
}

static_assert(std::size(purposes) == VEMRA_MSG_TYPE_LAST + 1, "one purpose for every kind");
static_assert(purposes_are_in_order(), "a purpose stands at the place of its kind");

} // namespace

std::string_view purpose_of(const MessageKind &kind) {
    return purposes[kind.value].text;
}

// --- Single rows ---------------------------------------------------------------------------------

namespace {

/// The key of the row that holds the count or length of another.
std::string count_key(const Record &table, const Row &row, const Notation &notation) {
    for (const Row &other : table.rows) {
        if (counted_by(table, other) == &row) {
            return notation.key(key_of(other));
        }
    }
    return "";
}

std::string bits(const Row &row) {
    return std::to_string(bits_of(row)) + " bits";
}

} // namespace

std::string type_of(const Record &table, const Row &row, const Notation &notation) {
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::number16:
    case RowKind::number32:
    case RowKind::number64:
        return "number, " + bits(row);
    case RowKind::signed32:
        return "number with sign, " + bits(row);
    case RowKind::real:
        return "decimal number";
    case RowKind::text:
        return "text, at most " + std::to_string(row.capacity - 1) + " characters";
    case RowKind::joined_text:
        return "texts, joined with commas; length in " + count_key(table, row, notation);
    case RowKind::array16:
    case RowKind::array32:
    case RowKind::array64:
        return "numbers, " + bits(row) + "; count in " + count_key(table, row, notation);
    case RowKind::bytes:
        return "at most " + std::to_string(row.capacity) + " number" +
               (row.capacity == 1 ? "" : "s") + ", " + bits(row) + "; " +
               std::to_string(row.terminator) + " ends them";
    case RowKind::block:
        return "block " + notation.record(*row.element);
    case RowKind::run:
        return "blocks " + notation.record(*row.element) + "; count in " +
               count_key(table, row, notation);
    case RowKind::slots:
        return "at most " + std::to_string(row.capacity) + " blocks " +
               notation.record(*row.element) + "; count in " + count_key(table, row, notation);
    }
    return "";
}

const char *written(const Row &row) {
    switch (shape_of(row)) {
    case Shape::text:
        return "if not empty";
    case Shape::numbers:
        return "one line each";
    case Shape::block:
        return "always";
    case Shape::records:
        return "one block each";
    default:
        return row.has(always) ? "always" : "if not 0";
    }
}

// --- Kinds ---------------------------------------------------------------------------------------

namespace {

constexpr Columns::Side left = Columns::Side::left;

constexpr Notation plain = {[](std::string_view key) { return std::string(key); },
                            [](const Record &record) {
                                return std::string(record.name);
                            }};

} // namespace

std::string default_of(const Row &row) {
    switch (shape_of(row)) {
    case Shape::number:
    case Shape::real:
        return "0";
    case Shape::text:
        return "empty";
    case Shape::numbers:
        // The bytes are 0 then, and only as a terminator do they end the list.
        return row.kind == RowKind::bytes && row.terminator != 0
                   ? std::to_string(row.capacity) + " times 0"
                   : "none";
    case Shape::block:
        return "all defaults";
    case Shape::records:
        return "none";
    }
    return "";
}

namespace {

/// What a number has to do with another row.
std::string relation_of(const Record &table, const Row &row) {
    const Row *counted = counted_by(table, row);
    if (counted == nullptr) {
        return "";
    }
    return (counted->kind == RowKind::joined_text ? "; length + 1 of " : "; count of ") +
           std::string(key_of(*counted));
}

} // namespace

std::string value_of(const Record &table, const Row &row) {
    return type_of(table, row, plain) + relation_of(table, row);
}

namespace {

class KeyTable {
public:
    KeyTable() : columns_({left, left, left, left}) {
        columns_.add({"KEY", "VALUE", "DEFAULT", "WRITTEN"});
    }

    void add(const Record &table, size_t level) {
        const std::string indent(2 * level, ' ');
        for (const Row &row : table.rows) {
            const bool is_new = row.element != nullptr && is_first(*row.element);
            std::string key = indent + std::string(key_of(row));
            key += row.element == nullptr ? "" : is_new ? " {" : " { as above }";
            columns_.add({std::move(key), value_of(table, row), default_of(row), written(row)});
            if (is_new) {
                add(*row.element, level + 1);
                columns_.add({indent + "}"});
            }
        }
    }

    std::string text() const { return columns_.text(); }

private:
    bool is_first(const Record &record) {
        const bool first = std::ranges::find(shown_, &record) == shown_.end();
        if (first) {
            shown_.push_back(&record);
        }
        return first;
    }

    Columns columns_;
    std::vector<const Record *> shown_;
};

} // namespace

std::string list_kinds(bool with_purposes) {
    Columns columns({left, left, left, left});
    columns.add({"VALUE", "KIND", "BLOCK", "RECORD"});
    for (const MessageKind &kind : message_kinds()) {
        const bool carries = kind.record != nullptr;
        columns.add({std::to_string(kind.value), kind.name, carries ? kind.block : "-",
                     carries ? kind.record->name : "-"});
        if (with_purposes) {
            columns.add_text("       " + std::string(purpose_of(kind)));
        }
    }
    return columns.text();
}

std::string describe_record(const Record &table) {
    KeyTable keys;
    keys.add(table, 0);
    return keys.text();
}

std::string describe_kind(const MessageKind &kind) {
    std::string text = std::string(kind.name) + ", kind " + std::to_string(kind.value) + "\n" +
                       std::string(purpose_of(kind)) + "\n";
    if (kind.record == nullptr) {
        return text;
    }
    return text + "Block " + kind.block + ", record " + kind.record->name + ".\n\n" +
           describe_record(*kind.record);
}

} // namespace kvt_tool
