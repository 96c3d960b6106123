// What is promised of JSON, for random records and for JSON that is broken at random.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "message_kinds.h"
#include "support/random_records.h"
#include "tool/json_mutations.h"
#include "tool/json_promise.h"

namespace kvt_tool {
namespace {

using kvt_test::below;
using kvt_test::OwnedRecord;
using kvt_test::Random;

std::vector<const MessageKind *> kinds_with_records() {
    std::vector<const MessageKind *> kinds;
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (kind.record != nullptr) {
            kinds.push_back(&kind);
        }
    }
    return kinds;
}

JsonForm random_form(Random &random) {
    return {below(random, 2) == 0,
            below(random, 2) == 0 ? GuidForm::decimal : GuidForm::hexadecimal};
}

TEST(Json, KeepsRandomRecordsOfEveryKindInEveryForm) {
    Random random(1);
    for (int round = 0; round < 100; ++round) {
        for (const MessageKind *kind : kinds_with_records()) {
            OwnedRecord record(*kind->record);
            kvt_test::fill_randomly(*kind->record, record.get(), random);
            const JsonForm form = random_form(random);
            ASSERT_EQ(kvt_test::broken_there_and_back(*kind, record.get(), form), "");
            ASSERT_EQ(kvt_test::broken_by_from_json(to_json(*kind, record.get(), form).dump()), "");
        }
    }
}

TEST(FromJson, WritesCleanTextsOfRandomJsonOrSaysWhyNot) {
    Random random(2);
    const std::vector<const MessageKind *> kinds = kinds_with_records();
    for (int round = 0; round < 3000; ++round) {
        const MessageKind &kind = *kinds[below(random, kinds.size())];
        OwnedRecord record(*kind.record);
        kvt_test::fill_randomly(*kind.record, record.get(), random);
        std::string json = to_json(kind, record.get(), random_form(random)).dump();
        for (size_t changes = below(random, 4); changes > 0; --changes) {
            json = kvt_test::mutate_json(json, random);
        }
        ASSERT_EQ(kvt_test::broken_by_from_json(json), "") << json;
    }
}

} // namespace
} // namespace kvt_tool
