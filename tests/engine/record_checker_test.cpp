// The checker of records finds each kind of broken record: it is what all fuzzers rely on.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "engine/release.h"
#include "support/exact_copy.h"
#include "support/record_checker.h"
#include "support/test_records.h"
#include "text/scanner.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

/// A record that is read from the lines of a block. A test breaks it, and mends it again.
template <typename Type> class Broken {
public:
    explicit Broken(const std::string &lines, Counts counts = Counts::agree)
        : text_(exact_copy("block {\n" + lines + "}\n")) {
        Input input{Text(text_.get()), counts};
        record_ = static_cast<Type *>(std::calloc(1, sizeof(Type)));
        CodecOf<Type>::codec.unpack(input, after_newline(text_.get()), record_, 1);
    }

    ~Broken() {
        release_members(RecordOf<Type>::table, record_);
        std::free(record_);
    }

    Broken(const Broken &) = delete;
    Broken &operator=(const Broken &) = delete;

    Type *operator->() { return record_; }

    Type *get() const { return record_; }

    Verdict verdict() const { return check_agreeing(RecordOf<Type>::table, record_, text_.get()); }

    std::string problem() const { return verdict().problem; }

    std::string problem_beside(const Broken &agreeing) const {
        return check_as_read(RecordOf<Type>::table, record_, agreeing.record_, text_.get()).problem;
    }

private:
    std::unique_ptr<char[]> text_;
    Type *record_;
};

constexpr char rich_lines[] = R"(    text: "a text"
    hosts: "one,two"
    shorts: 1
    shorts: 2
    ids: 3
    guids: 4
    entries {
      id: 1
      name: "first"
      small: 5
    }
    entries {
      id: 2
      name: "second"
    }
    slots {
      tree_id: 6
    }
)";

/// Sets a member while a test looks at the record, and sets it back.
template <typename Member> class Meanwhile {
public:
    Meanwhile(Member &member, Member value) : member_(member), before_(member) { member = value; }

    ~Meanwhile() { member_ = before_; }

    Meanwhile(const Meanwhile &) = delete;
    Meanwhile &operator=(const Meanwhile &) = delete;

private:
    Member &member_;
    Member before_;
};

using Everything = Broken<test_everything>;

TEST(RecordChecker, FindsNothingInWhatIsRead) {
    const Everything rich(rich_lines);
    EXPECT_EQ(rich.problem(), "");
    EXPECT_EQ(Everything("").problem(), "");
    EXPECT_EQ(
        Broken<test_tree>("groups {\n entries {\n id: 1\n }\n}\nother_slots {\n}\n").problem(), "");
}

TEST(RecordChecker, CountsTheBlocksOfARecord) {
    // The record, hosts, shorts, ids, guids, entries, two names, small.
    EXPECT_EQ(Everything(rich_lines).verdict().blocks, 9U);
    EXPECT_EQ(Everything("").verdict().blocks, 1U);
}

TEST(RecordChecker, FindsATextWithoutItsEnd) {
    Everything record(rich_lines);
    std::memset(record->text, 'x', sizeof record->text);
    EXPECT_EQ(record.problem(), "test_everything.text: not terminated");
}

TEST(RecordChecker, FindsAStringWithoutItsEnd) {
    Everything record(rich_lines);
    std::memset(record->hosts, 'x', block_size(record->hosts));
    EXPECT_EQ(record.problem(), "test_everything.hosts: not terminated");
}

TEST(RecordChecker, FindsAStringsWrongLength) {
    Everything record(rich_lines);
    for (const uint32_t length : {7U, 9U, 0U}) {
        const Meanwhile broken(record->hosts_len, length);
        EXPECT_EQ(record.problem(), "test_everything.hosts: not the string's length");
    }
    Everything empty("");
    empty->hosts_len = 1;
    EXPECT_EQ(empty.problem(), "test_everything.hosts: a length without a string");
}

TEST(RecordChecker, TakesALengthThatTheTextSays) {
    EXPECT_EQ(Everything("    hosts: \"one\"\n    mode: 1\n    hosts_len: 99\n").problem(), "");
    EXPECT_EQ(Everything("    hosts_len: 99\n").problem(), "");
}

TEST(RecordChecker, FindsACountWithoutElements) {
    Everything record(rich_lines);
    {
        const Meanwhile<uint16_t *> broken(record->shorts, nullptr);
        EXPECT_EQ(record.problem(), "test_everything.shorts: a count without elements");
    }
    {
        const Meanwhile<test_entry *> broken(record->entries, nullptr);
        EXPECT_EQ(record.problem(), "test_everything.entries: a count without elements");
    }
}

TEST(RecordChecker, FindsABlockWithoutACount) {
    Everything record(rich_lines);
    const Meanwhile broken(record->num_guids, 0U);
    EXPECT_EQ(record.problem(), "test_everything.guids: a block that none needs");
}

TEST(RecordChecker, FindsMoreElementsThanTheTextHas) {
    Everything record(rich_lines);
    {
        // There is room for five.
        const Meanwhile broken(record->num_shorts, 3U);
        EXPECT_EQ(record.problem(), "test_everything.shorts: more elements than the text has");
    }
    {
        const Meanwhile broken(record->entries_len, uint64_t{3});
        EXPECT_EQ(record.problem(), "test_everything.entries: more elements than the text has");
    }
}

TEST(RecordChecker, FindsABlockThatIsTooSmall) {
    Everything record(rich_lines);
    void *small = std::calloc(1, 24);
    // Of the entries, there are two in the text.
    const Meanwhile broken(record->entries, static_cast<test_entry *>(small));
    EXPECT_EQ(record.problem(), "test_everything.entries: the block has no room for the elements");
    std::free(small);
}

TEST(RecordChecker, FindsABlockThatIsHeldTwice) {
    Everything record(rich_lines);
    {
        const Meanwhile broken(record->ids, reinterpret_cast<uint32_t *>(record->guids));
        EXPECT_EQ(record.problem(), "test_everything.guids: the block is held twice");
    }
    {
        const Meanwhile broken(record->entries[1].name, record->entries[0].name);
        const Meanwhile length(record->entries[1].name_len, record->entries[0].name_len);
        EXPECT_EQ(record.problem(), "test_everything.entries[1].name: the block is held twice");
    }
    {
        const Meanwhile broken(record->guids, reinterpret_cast<uint64_t *>(record.get()));
        EXPECT_EQ(record.problem(), "test_everything.guids: the block is held twice");
    }
}

TEST(RecordChecker, FindsWhatIsNoBlock) {
    if (!knows_blocks()) {
        GTEST_SKIP() << "only a sanitizer knows all blocks";
    }
    Everything record(rich_lines);
    uint64_t on_the_stack = 0;
    void *block = std::calloc(1, sizeof(uint64_t));
    const auto freed = reinterpret_cast<uintptr_t>(block);
    std::free(block);
    for (const uintptr_t wrong :
         {reinterpret_cast<uintptr_t>(&on_the_stack),
          reinterpret_cast<uintptr_t>(record->guids + 1), freed, uintptr_t{0xbebebebe}}) {
        const Meanwhile broken(record->guids, reinterpret_cast<uint64_t *>(wrong));
        EXPECT_EQ(record.problem(), "test_everything.guids: no block of the heap");
    }
}

TEST(RecordChecker, FindsMoreSlotsThanThereAre) {
    Everything record(rich_lines);
    record->num_slots = 5;
    EXPECT_EQ(record.problem(), "test_everything.slots: more slots in use than there are");
    EXPECT_EQ(Everything("    num_slots: 5\n").problem(), "");
}

TEST(RecordChecker, LooksIntoElementsOfElements) {
    Broken<test_tree> tree("groups {\n}\ngroups {\n entries {\n name: \"a\"\n }\n}\n");
    const Meanwhile broken(tree->groups[1].entries[0].name_len, 7U);
    EXPECT_EQ(tree.problem(), "test_tree.groups[1].entries[0].name: not the string's length");
}

// --- Counts as read ------------------------------------------------------------------------------

constexpr char lying_lines[] = "    shorts: 1\n    num_shorts: 9\n    entries {\n    }\n"
                               "    num_ids: 8\n    entries_len: 7\n";

TEST(RecordChecker, TakesCountsAsReadThatTheTextSays) {
    Everything as_read(lying_lines, Counts::as_read);
    Everything agreeing(lying_lines);
    EXPECT_EQ(as_read->num_shorts, 9U);
    EXPECT_EQ(as_read->num_ids, 8U);
    EXPECT_EQ(as_read->entries_len, 7U);
    EXPECT_EQ(as_read.problem_beside(agreeing), "");
    EXPECT_NE(as_read.problem(), "") << "its counts do not agree";

    as_read->num_shorts = agreeing->num_shorts; // it can be released now
    as_read->num_ids = agreeing->num_ids;
    as_read->entries_len = agreeing->entries_len;
    EXPECT_EQ(as_read.problem(), "");
}

TEST(RecordChecker, FindsACountAsReadThatNoLineSays) {
    Everything as_read(rich_lines, Counts::as_read);
    const Everything agreeing(rich_lines);
    EXPECT_EQ(as_read.problem_beside(agreeing), "");
    {
        const Meanwhile broken(as_read->num_shorts, 3U);
        EXPECT_EQ(as_read.problem_beside(agreeing),
                  "test_everything.shorts: a count that no line says");
    }
    {
        const Meanwhile broken(as_read->num_shorts, 1U);
        EXPECT_EQ(as_read.problem_beside(agreeing),
                  "test_everything.shorts: fewer elements than there are");
    }
}

TEST(RecordChecker, FindsElementsThatAreMissingAsRead) {
    Everything as_read(rich_lines, Counts::as_read);
    const Everything agreeing(rich_lines);
    const Meanwhile<uint16_t *> broken(as_read->shorts, nullptr);
    EXPECT_EQ(as_read.problem_beside(agreeing), "test_everything.shorts: the elements are missing");
}

TEST(RecordChecker, FindsOtherElementsAsRead) {
    Everything as_read(rich_lines, Counts::as_read);
    const Everything agreeing(rich_lines);
    as_read->entries[0].small[0] = 6;
    EXPECT_EQ(as_read.problem_beside(agreeing), "test_everything.entries[0].small: other numbers");
}

} // namespace
} // namespace kvt_test
