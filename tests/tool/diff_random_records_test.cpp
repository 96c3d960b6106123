// What is told of random records: nothing of equal ones, and just the field that has changed.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "diff/diff_records.h"
#include "engine/element_size.h"
#include "engine/member.h"
#include "io/messages.h"
#include "model/owned_message.h"
#include "model/write_text.h"
#include "samples/sample.h"
#include "support/messages.h"
#include "support/random_records.h"
#include "tool/diff_promise.h"

namespace kvt_tool {
namespace {

using namespace kvt_str;

std::string paths_of(const std::vector<Difference> &differences) {
    std::string paths;
    for (const Difference &difference : differences) {
        paths += difference.place().path + "\n";
    }
    return paths;
}

TEST(DiffOfRandomRecords, IsNoneBetweenARecordAndItselfReadAgain) {
    kvt_test::Random random(1);
    for (const MessageKind &kind : message_kinds()) {
        for (int i = 0; kind.record != nullptr && i < 50; ++i) {
            kvt_test::OwnedRecord record(*kind.record);
            kvt_test::fill_randomly(*kind.record, record.get(), random);
            const auto value = static_cast<int32_t>(kind.value);
            // A byte array whose end is another value than 0 is read with zeros after it.
            const kvt_test::ReadMessage<char> read(value,
                                                   kvt_test::text_of_record(value, record.get()));
            const kvt_test::ReadMessage<char> again(value, kvt_test::text_of_record(value, &*read));
            EXPECT_EQ(paths_of(diff_records(*kind.record, record.get(), record.get())), "");
            EXPECT_EQ(paths_of(diff_records(*kind.record, &*read, &*again)), "") << kind.name;
        }
    }
}

/// A field that can be changed, with its path.
struct Leaf {
    std::string path;
    std::function<void()> change;
};

void flip(char *member, unsigned width, uint64_t but) {
    const uint64_t number = load_number(member, width);
    store_number(member, width, (number ^ 1) != but ? number ^ 1 : number ^ 2);
}

void set_first(char *text) {
    text[0] = text[0] == '#' ? '+' : '#';
}

/// All fields of a record but the counts and lengths, and the texts that hang from it and are
/// empty.
void collect(const Record &table, void *record, const std::string &prefix,
             std::vector<Leaf> &leaves) {
    for (const Row &row : table.rows) {
        const std::string path = prefix + std::string(key_of(row));
        char *member = member_of(row, record);
        switch (shape_of(row)) {
        case Shape::number:
            if (counted_by(table, row) == nullptr) {
                leaves.push_back({path, [=, &row] {
                                      flip(member, row.size, UINT64_MAX);
                                  }});
            }
            break;
        case Shape::real:
            leaves.push_back({path, [=] {
                                  store(member, 42.25F);
                              }});
            break;
        case Shape::text:
            if (row.kind == RowKind::text) {
                leaves.push_back({path, [=] {
                                      set_first(member);
                                  }});
            } else if (load<char *>(member) != nullptr) {
                leaves.push_back({path, [=] {
                                      set_first(load<char *>(member));
                                  }});
            }
            break;
        case Shape::block:
            collect(*row.element, member, path + ".", leaves);
            break;
        case Shape::numbers:
        case Shape::records: {
            const Elements elements = elements_of(row, record);
            for (uint64_t i = 0; i < elements.count; ++i) {
                char *element = const_cast<char *>(elements.at(i));
                const std::string indexed = path + "[" + std::to_string(i) + "]";
                if (row.element != nullptr) {
                    collect(*row.element, element, indexed + ".", leaves);
                } else {
                    const uint64_t but =
                        row.kind == RowKind::bytes ? row.terminator : uint64_t{UINT64_MAX};
                    leaves.push_back({indexed, [=, &row] {
                                          flip(element, element_size(row), but);
                                      }});
                }
            }
            break;
        }
        }
    }
}

TEST(DiffOfRandomRecords, IsTheOneFieldThatHasChanged) {
    kvt_test::Random random(2);
    for (const MessageKind &kind : message_kinds()) {
        for (uint64_t i = 0; kind.record != nullptr && i < 200; ++i) {
            kvt_test::OwnedRecord a(*kind.record);
            kvt_test::OwnedRecord b(*kind.record);
            kvt_test::Random same(i);
            kvt_test::fill_randomly(*kind.record, a.get(), same);
            same.seed(i);
            kvt_test::fill_randomly(*kind.record, b.get(), same);
            std::vector<Leaf> leaves;
            collect(*kind.record, b.get(), "", leaves);
            if (leaves.empty()) {
                continue;
            }
            const Leaf &leaf = leaves[kvt_test::below(random, leaves.size())];
            leaf.change();
            const std::vector<Difference> found = diff_records(*kind.record, a.get(), b.get());
            ASSERT_EQ(found.size(), 1U) << leaf.path << "\n" << paths_of(found);
            EXPECT_EQ(found[0].a.path, leaf.path);
            EXPECT_EQ(found[0].b.path, leaf.path);
            EXPECT_EQ(found[0].what, Difference::What::changed);
        }
    }
}

/// The message of a text that was changed, as far as it is one; null when it is none.
std::unique_ptr<OwnedMessage> read_changed(const std::string &text) {
    static const std::string name = "text";
    std::unique_ptr<OwnedMessage> read;
    read_messages({name, text.c_str(), text.size(), 1, 0, false}, [&](ReadMessage &message) {
        if (read == nullptr) {
            read = std::make_unique<OwnedMessage>(message.kind,
                                                  std::exchange(message.record, nullptr));
        }
    });
    return read;
}

std::vector<std::string> lines_of(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line + "\n");
    }
    return lines;
}

/// Drops, moves or copies some of several lines, which may be whole blocks.
void change_lines(std::vector<std::string> &lines, kvt_test::Random &random) {
    const auto at = [&](size_t i) {
        return lines.begin() + static_cast<std::ptrdiff_t>(i);
    };
    const size_t begin = kvt_test::below(random, lines.size());
    const size_t end = std::min(lines.size(), begin + 1 + kvt_test::below(random, 12));
    const std::vector<std::string> some(at(begin), at(end));
    const size_t way = kvt_test::below(random, 3);
    if (way != 0) {
        lines.erase(at(begin), at(end));
    }
    if (way != 1) {
        const size_t place = kvt_test::below(random, lines.size() + 1);
        lines.insert(at(place), some.begin(), some.end());
    }
}

TEST(DiffOfRandomRecords, KeepsItsPromiseWhateverBecomesOfTheText) {
    kvt_test::Random random(4);
    size_t compared = 0;
    for (const MessageKind &kind : message_kinds()) {
        for (uint64_t i = 0; kind.record != nullptr && i < 200; ++i) {
            const OwnedMessage a = make_sample(kind, {i, static_cast<uint32_t>(2 + i % 9), i});
            std::string text;
            ASSERT_TRUE(add_text(kind, a.record(), text));
            std::vector<std::string> lines = lines_of(text);
            for (size_t changes = 1 + kvt_test::below(random, 3); changes != 0 && !lines.empty();
                 --changes) {
                change_lines(lines, random);
            }
            text.clear();
            for (const std::string &line : lines) {
                text += line;
            }
            const auto b = read_changed(text);
            if (b != nullptr && &b->kind() == &kind) {
                ++compared;
                ASSERT_EQ(kvt_test::broken_diff_promise(kind, a.record(), b->record()), "") << text;
            }
        }
    }
    EXPECT_GT(compared, 1000U);
}

} // namespace
} // namespace kvt_tool
