// Any bytes that are taken for the path of a field: they are a path, or it is said what is wrong,
// on a line. What a path leads to has a path of its own, which leads there again, and nowhere else.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "model/field_path.h"
#include "property.h"
#include "support/random_records.h"

using namespace kvt_fuzz;
using namespace kvt_tool;

namespace {

/// A message of each kind.
class Messages {
public:
    Messages() {
        kvt_test::Random random(3);
        for (const MessageKind &kind : kvt_str::message_kinds()) {
            if (kind.record != nullptr) {
                messages_.emplace_back(&kind, new kvt_test::OwnedRecord(*kind.record));
                kvt_test::fill_randomly(*kind.record, messages_.back().second->get(), random);
            }
        }
    }

    auto begin() const { return messages_.begin(); }

    auto end() const { return messages_.end(); }

private:
    std::vector<std::pair<const MessageKind *, std::unique_ptr<kvt_test::OwnedRecord>>> messages_;
};

using Found = std::vector<std::pair<std::string, std::string>>;

/// The first fields that a path leads to, with their values.
Found find(const FieldPath &path, const MessageKind &kind, const void *record) {
    constexpr size_t most = 8;
    Found found;
    path.each(kind, record, [&](const FoundField &field) {
        if (found.size() < most) {
            found.emplace_back(field.path, field.value());
        }
    });
    return found;
}

void check_error(const std::string &error) {
    expect(error.starts_with("column "), "what is wrong has its column");
    expect(std::none_of(error.begin(), error.end(),
                        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }),
           "what is wrong can be printed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const Messages messages;
    const auto parsed = FieldPath::parse({reinterpret_cast<const char *>(data), size});
    if (const std::string *error = std::get_if<std::string>(&parsed)) {
        check_error(*error);
        return 0;
    }
    const auto &path = std::get<FieldPath>(parsed);
    bool is_of_some_kind = false;
    for (const auto &[kind, record] : messages) {
        is_of_some_kind = is_of_some_kind || path.applies_to(*kind);
        for (const auto &[place, value] : find(path, *kind, record->get())) {
            const auto again = FieldPath::parse(place);
            expect(std::holds_alternative<FieldPath>(again), "what is found has a path");
            const Found there = find(std::get<FieldPath>(again), *kind, record->get());
            expect(there == Found{{place, value}}, "which leads there, and nowhere else");
        }
    }
    expect(is_of_some_kind, "a path is one of some kind");
    return 0;
}
