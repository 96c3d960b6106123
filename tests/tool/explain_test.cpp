// Every kind of finding is explained by an example in which the check finds it.
#include <gtest/gtest.h>

#include <algorithm>

#include <string>

#include "io/explain.h"

namespace kvt_test {
namespace {

using namespace kvt_tool;

TEST(ExplainedFindings, HaveAnExampleInWhichTheyAreTheWorst) {
    for (int number = 0; number < KVT_FINDING_KINDS; ++number) {
        struct Found {
            kvt_finding_kind wanted;
            size_t count = 0;
            kvt_severity worst_of_others = KVT_SEVERITY_STYLE;
        } found{static_cast<kvt_finding_kind>(number)};

        const auto look = [](const kvt_finding *finding, void *user) {
            auto &known = *static_cast<Found *>(user);
            if (finding->kind == known.wanted) {
                ++known.count;
            } else {
                known.worst_of_others =
                    std::max(known.worst_of_others, kvt_finding_severity(finding->kind));
            }
            return 0;
        };
        const std::string example = example_of(found.wanted);
        kvt_check(example.data(), example.size(), look, &found);
        EXPECT_EQ(found.count, 1U) << kvt_finding_name(found.wanted) << "\n" << example;
        EXPECT_LE(found.worst_of_others, kvt_finding_severity(found.wanted))
            << kvt_finding_name(found.wanted) << "\n"
            << example;
    }
}

TEST(ExplainedFindings, SayWhatIsFoundAndWhatToDo) {
    EXPECT_EQ(
        explain(KVT_FINDING_HEXADECIMAL),
        "hexadecimal (lost)\n\n"
        "A whole number is written in hexadecimal, of which the 0 alone is read.\n\n"
        "    job.kvt:4:13: hexadecimal: the reader takes the 0 of '0x10' alone; in decimal it "
        "is 16 [lost]\n"
        "      4 |     job_id: 0x10\n"
        "        |             ^~~~\n\n"
        "What to do: Write the number in decimal.\n");
}

} // namespace
} // namespace kvt_test
