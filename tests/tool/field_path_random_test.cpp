// Random paths lead to just those fields that a plain comparison, key by key, says.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "model/field_path.h"
#include "samples/sample.h"
#include "support/random_records.h"

namespace kvt_tool {
namespace {

/// A key on the way to a field; of a list, which element.
struct Part {
    std::string key;
    bool is_list;
    int64_t index, count;
};

using Way = std::vector<Part>;

/// A field of a record, whether a value or a block.
struct Field {
    Way way;
    std::string path;
    bool is_value;
};

void add_fields(const Record &table, const void *record, const Field &around,
                std::vector<Field> &all) {
    for (const Row &row : table.rows) {
        const Shape shape = shape_of(row);
        const bool is_list = shape == Shape::numbers || shape == Shape::records;
        const bool is_value = row.element == nullptr;
        const Elements elements =
            is_list || !is_value ? elements_of(row, record) : Elements{nullptr, 1, 0};
        for (uint64_t i = 0; i < elements.count; ++i) {
            const std::string key(key_of(row));
            Field field = {around.way, around.path + (around.path.empty() ? "" : ".") + key,
                           is_value};
            field.way.push_back(
                {key, is_list, static_cast<int64_t>(i), static_cast<int64_t>(elements.count)});
            field.path += is_list ? "[" + std::to_string(i) + "]" : "";
            all.push_back(field);
            if (!is_value) {
                add_fields(*row.element, elements.at(i), field, all);
            }
        }
    }
}

/// A step of a random path: a key, or ** where it is empty.
struct Step {
    std::string key;
    std::string brackets; ///< what stands in them; empty without brackets
};

bool is_meant(const std::string &brackets, const Part &part) {
    const auto place = [&](const std::string &word, int64_t otherwise) {
        const int64_t number = word.empty() ? otherwise : std::atoll(word.c_str());
        return number < 0 ? std::max<int64_t>(number + part.count, 0) : number;
    };
    if (brackets.empty() || brackets == "*") {
        return true;
    }
    const size_t colon = brackets.find(':');
    if (colon != std::string::npos) {
        return part.index >= place(brackets.substr(0, colon), 0) &&
               part.index < place(brackets.substr(colon + 1), part.count);
    }
    const int64_t number = std::atoll(brackets.c_str());
    return part.index == (number < 0 ? number + part.count : number);
}

bool leads(const std::vector<Step> &steps, size_t step, const Field &field, size_t part) {
    if (step == steps.size()) {
        return part == field.way.size();
    }
    if (steps[step].key.empty()) {
        if (step + 1 == steps.size()) {
            return part < field.way.size() && field.is_value;
        }
        return leads(steps, step + 1, field, part) ||
               (part < field.way.size() && leads(steps, step, field, part + 1));
    }
    return part < field.way.size() && steps[step].key == field.way[part].key &&
           is_meant(steps[step].brackets, field.way[part]) &&
           leads(steps, step + 1, field, part + 1);
}

/// Steps that lead to a field, and often to others.
std::vector<Step> random_steps(const Way &way, kvt_test::Random &random) {
    const auto number = [&](const Part &part) {
        return std::to_string(static_cast<int64_t>(random() % 3) +
                              (random() % 2 == 0 ? part.index - 1 : part.index - part.count - 1));
    };
    std::vector<Step> steps;
    for (const Part &part : way) {
        if (random() % 4 == 0) {
            steps.push_back({});
        }
        if (random() % 4 == 0) {
            continue;
        }
        Step step = {part.key, ""};
        if (part.is_list) {
            switch (random() % 4) {
            case 0:
                step.brackets = number(part);
                break;
            case 1:
                step.brackets = (random() % 2 == 0 ? number(part) : "") + ":" +
                                (random() % 2 == 0 ? number(part) : "");
                break;
            case 2:
                step.brackets = "*";
                break;
            default:
                break;
            }
        }
        steps.push_back(step);
    }
    return steps;
}

TEST(FieldPaths, LeadToWhatAPlainComparisonSays) {
    kvt_test::Random random(11);
    size_t tried = 0;
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record == nullptr) {
            continue;
        }
        const OwnedMessage sample = make_sample(kind, {4, 3, 0});
        std::vector<Field> all;
        add_fields(*kind.record, sample.record(), {}, all);
        for (int round = 0; round < 200 && !all.empty(); ++round) {
            const std::vector<Step> steps = random_steps(all[random() % all.size()].way, random);
            std::string text;
            for (const Step &step : steps) {
                text += text.empty() ? "" : ".";
                text += step.key.empty() ? "**" : step.key;
                text += step.brackets.empty() ? "" : "[" + step.brackets + "]";
            }
            const std::variant<FieldPath, std::string> path = FieldPath::parse(text);
            if (std::holds_alternative<std::string>(path)) {
                continue; // a step was left out
            }
            ++tried;
            std::string expected;
            for (const Field &field : all) {
                expected += leads(steps, 0, field, 0) ? field.path + "\n" : "";
            }
            std::string found;
            std::get<FieldPath>(path).each(kind, sample.record(), [&](const FoundField &field) {
                found += std::string(field.path) + "\n";
            });
            ASSERT_EQ(found, expected) << text;
        }
    }
    EXPECT_GT(tried, 1000U);
}

} // namespace
} // namespace kvt_tool
