#include "samples/sample.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <vector>

#include "engine/element_size.h"
#include "kvt/message_layer.h"
#include "model/fields.h"
#include "samples/values.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

/// Zeroed memory that the message layer may release.
char *allocate(uint64_t count, size_t size) {
    void *block = std::calloc(static_cast<size_t>(count), size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return static_cast<char *>(block);
}

/// The rows of a record with their rules, which are found once: there are many, and keys are texts.
struct Plan {
    struct Field {
        const Row *row;
        std::string_view key;
        Shape shape;
        NumberRule *number; ///< for numbers
        NumberRule *count;  ///< for lists
        TextRule *text;     ///< for texts
        const Plan *element;
    };

    std::vector<Field> fields;
};

/// The plans of all records.
class Plans {
public:
    Plans() {
        for (const MessageKind &kind : message_kinds()) {
            if (kind.record != nullptr) {
                add(*kind.record);
            }
        }
    }

    const Plan &of(const Record &table) const { return *plans_.at(&table); }

private:
    const Plan *add(const Record &table) {
        std::unique_ptr<Plan> &plan = plans_[&table];
        if (plan == nullptr) {
            plan = std::make_unique<Plan>();
            Plan &added = *plan;
            for (const Row &row : table.rows) {
                // A count is set by the list or text that it is of.
                if (counted_by(table, row) == nullptr) {
                    const std::string_view key = key_of(row);
                    added.fields.push_back({&row, key, shape_of(row), number_rule(table, key),
                                            count_rule(table, key), text_rule(table, key),
                                            row.element != nullptr ? add(*row.element) : nullptr});
                }
            }
        }
        return plan.get();
    }

    std::map<const Record *, std::unique_ptr<Plan>> plans_;
};

const Plans &all_plans() {
    static const Plans plans;
    return plans;
}

void fill(const Plan &plan, void *record, const Site &site);

void fill_text(const Plan::Field &field, void *record, const Site &site) {
    const std::string text = field.text(site);
    char *member = member_of(*field.row, record);
    // The memory is zeroed: there is a NUL after the text.
    if (field.row->kind == RowKind::text) {
        text.copy(member, field.row->capacity - 1U);
    } else if (!text.empty()) {
        char *copy = allocate(text.size() + 1, 1);
        text.copy(copy, text.size());
        store(member, copy);
        store_count(*field.row, record, text.size() + 1);
    }
}

void fill_numbers(const Plan::Field &field, void *record, const Site &site) {
    const Row &row = *field.row;
    const unsigned width = element_size(row);
    char *numbers = member_of(row, record);
    uint64_t count = field.count(site);
    if (row.kind == RowKind::bytes) {
        std::memset(numbers, row.terminator, row.capacity);
        count = std::min<uint64_t>(count, row.capacity);
    } else if (count != 0) {
        char *list = allocate(count, width);
        store(numbers, list);
        store_count(row, record, count);
        numbers = list;
    }
    for (uint64_t i = 0; i < count; ++i) {
        store_number(numbers + i * width, width,
                     field.number(Site{site.scene, &site, field.key, i}));
    }
}

void fill_records(const Plan::Field &field, void *record, const Site &site) {
    const Row &row = *field.row;
    char *elements = member_of(row, record);
    uint64_t count = field.count(site);
    if (row.kind == RowKind::slots) {
        count = std::min<uint64_t>(count, row.capacity);
    } else if (count != 0) {
        char *list = allocate(count, row.element->size);
        store(elements, list);
        elements = list;
    }
    // Counted first, so that what there is is released if memory runs out.
    store_count(row, record, count);
    for (uint64_t i = 0; i < count; ++i) {
        fill(*field.element, elements + i * row.element->size,
             Site{site.scene, &site, field.key, i});
    }
}

void fill(const Plan &plan, void *record, const Site &site) {
    for (const Plan::Field &field : plan.fields) {
        char *member = member_of(*field.row, record);
        switch (field.shape) {
        case Shape::number:
            store_number(member, field.row->size, field.number(site));
            break;
        case Shape::real:
            store(member, real_rule()(site));
            break;
        case Shape::text:
            fill_text(field, record, site);
            break;
        case Shape::numbers:
            fill_numbers(field, record, site);
            break;
        case Shape::block:
            fill(*field.element, member, Site{site.scene, &site, field.key, site.index});
            break;
        case Shape::records:
            fill_records(field, record, site);
            break;
        }
    }
}

} // namespace

OwnedMessage make_sample(const MessageKind &kind, Scene scene) {
    OwnedMessage message(kind, allocate(1, kind.record->size));
    fill(all_plans().of(*kind.record), message.record(), Site{scene, nullptr, kind.block, 0});
    return message;
}

OwnedMessage make_sample(const MessageKind &kind, const Sample &sample) {
    const uint32_t size = std::min(sample.size, largest_sample_size);
    return make_sample(kind, Scene(sample.seed, size, sample.index, sample.index));
}

} // namespace kvt_tool
