// Numbers, floats and quoted texts of which the reader takes something else than what stands there.
#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

namespace kvt_test {
namespace {

TEST(CheckedNumbers, StandAfterAColonThatFollowsTheKeyAtOnce) {
    EXPECT_EQ(found(begin_job("    job_id : 5\n")), "4:5 no-colon 'job_id'\n");
    EXPECT_EQ(found(begin_job("    job_id 5\n")), "4:5 no-colon 'job_id'\n");
    EXPECT_EQ(found(begin_job("    job_id\n")), "4:5 no-colon 'job_id'\n");
    EXPECT_EQ(found(begin_job("    job_id=5\n")), "4:5 no-colon 'job_id'\n");
    EXPECT_EQ(said_of(begin_job("    job_id : 5\n")),
              "a blank stands between 'job_id' and its colon: the reader finds no value: the field "
              "stays 0\n");
    EXPECT_EQ(said_of(begin_job("    job_id 5\n")),
              "no colon follows 'job_id': the reader finds no value: the field stays 0\n");
    EXPECT_EQ(found(begin_job("job_id:5\n\t uid:\t 7 \n")), "");
}

TEST(CheckedNumbers, StandOnTheLineOfTheirKey) {
    EXPECT_EQ(found(begin_job("    job_id:\n    uid: 1\n")), "4:5 no-value 'job_id:'\n");
    EXPECT_EQ(found(begin_job("    job_id: \t\n    uid: 1\n")), "4:5 no-value 'job_id:'\n");
    EXPECT_EQ(found(begin_job("    job_id:\n      5\n")),
              "4:5 no-value 'job_id:'\n5:7 stray-line '5'\n");
    EXPECT_EQ(said_of(begin_job("    job_id:\n    uid: 1\n")),
              "no value stands after 'job_id': the field stays 0\n");
    EXPECT_EQ(said_of(begin_job("    job_id:\n  -5\n")),
              "no value stands after 'job_id': the reader takes the number of line 5, '-5'\n'-5' "
              "begins with no key: the reader skips this line\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id: -"),
              "4:13 not-a-number '-'\n4:14 not-closed ''\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id:"),
              "4:5 no-value 'job_id:'\n4:12 not-closed ''\n");
    EXPECT_EQ(found("msg {\n  type: END_JOB\n  end_job {\n    job_id:\n+"),
              "4:5 no-value 'job_id:'\n5:1 stray-line '+'\n5:2 not-closed ''\n");
}

TEST(CheckedNumbers, AreNumbers) {
    EXPECT_EQ(found(begin_job("    job_id: five\n")), "4:13 not-a-number 'five'\n");
    EXPECT_EQ(found(begin_job("    job_id: \"5\" \n")), "4:13 not-a-number '\"5\"'\n");
    EXPECT_EQ(found(begin_job("    job_id: - 5\n")), "4:13 not-a-number '- 5'\n");
    EXPECT_EQ(found(begin_job("    job_id: +\n")), "4:13 not-a-number '+'\n");
    EXPECT_EQ(said_of(begin_job("    job_id: five\n")),
              "'five' is no number, and 'job_id' wants one: the field stays 0\n");
    EXPECT_EQ(said_of(begin_job("    port_guids: x\n")),
              "'x' is no number, and 'port_guids' wants one: there is no element for it\n");
    EXPECT_EQ(
        said_of(message_of("JOB_INFO_REQUEST", "mgmt_job_info_list_request", "    reserved: x\n")),
        "'x' is no number, and 'reserved' wants one: it counts as 0\n");
    EXPECT_EQ(said_of(message_of("RESOURCE_DATA", "resource_message",
                                 "    operation: 1\n    feature_bitmask: x\n")),
              "'x' is no number, and 'feature_bitmask' wants one: the field takes the value of a "
              "line before, 1\n");
}

TEST(CheckedNumbers, HaveNothingAfterThem) {
    EXPECT_EQ(found(begin_job("    job_id: 0x10\n")), "4:13 hexadecimal '0x10'\n");
    EXPECT_EQ(found(begin_job("    job_id: 5.5\n")), "4:13 fraction '5.5'\n");
    EXPECT_EQ(found(begin_job("    job_id: 5, uid: 3 \n")), "4:14 after-number ', uid: 3'\n");
    EXPECT_EQ(found(begin_job("    job_id: 5 # five\n")), "4:15 comment '# five'\n");
    EXPECT_EQ(found(begin_job("    port_guids: 5 6\n")), "4:19 after-number '6'\n");
    EXPECT_EQ(said_of(begin_job("    job_id: 0x10\n")),
              "the reader takes the 0 of '0x10' alone; in decimal it is 16\n");
    EXPECT_EQ(found(begin_job("    job_id: 5 \t\v\f\n")), "");
}

TEST(CheckedNumbers, AreInTheRangeOfTheirField) {
    EXPECT_EQ(found(begin_job("    num_rails: 255\n    pkey: 65535\n    uid: 4294967295\n"
                              "    job_id: 18446744073709551615\n")),
              "");
    EXPECT_EQ(found(begin_job("    num_rails: 256\n")), "4:16 out-of-range '256'\n");
    EXPECT_EQ(found(begin_job("    pkey: 65536\n")), "4:11 out-of-range '65536'\n");
    EXPECT_EQ(found(begin_job("    uid: 4294967296\n")), "4:10 out-of-range '4294967296'\n");
    EXPECT_EQ(found(begin_job("    job_id: 18446744073709551616\n")),
              "4:13 out-of-range '18446744073709551616'\n");
    EXPECT_EQ(found(begin_job("    job_id: -1\n")), "4:13 out-of-range '-1'\n");
    EXPECT_EQ(found(begin_job("    job_id: -99999999999999999999\n")),
              "4:13 out-of-range '-99999999999999999999'\n");
    EXPECT_EQ(found(begin_job("    port_guids: -1\n")), "4:17 out-of-range '-1'\n");
    EXPECT_EQ(found(message_of("ALLOC_GROUPS", "alloc_groups", "    processes: 4294967296\n")),
              "4:16 out-of-range '4294967296'\n");
    EXPECT_EQ(
        found(message_of("PERSISTENT_JOB_INFO", "persistent_job_info", "    tree_ids: 65536\n")),
        "4:15 out-of-range '65536'\n");
    EXPECT_EQ(said_of(begin_job("    num_rails: 300\n")),
              "'num_rails' holds a number of 8 bits: the reader makes 44 of '300'\n");
    EXPECT_EQ(said_of(begin_job("    job_id: 18446744073709551616\n")),
              "'job_id' holds a number of 64 bits: the reader makes 18446744073709551615 of "
              "'18446744073709551616'\n");
}

TEST(CheckedNumbers, MayBeSpelledInAnotherWay) {
    EXPECT_EQ(found(begin_job("    job_id: +5\n    uid: 007\n    num_rails: -0\n"
                              "    pkey: 00000000000000000000000000065535\n")),
              "");
}

TEST(CheckedNumbers, WithASignHaveARangeAroundZero) {
    const auto path = [](const std::string &line) {
        return job_data("    conns {\n      pr_sd_to_an {\n        " + line + "\n      }\n    }\n");
    };
    EXPECT_EQ(found(path("raw_traffic: 2147483647")), "");
    EXPECT_EQ(found(path("raw_traffic: -2147483648")), "");
    EXPECT_EQ(found(path("raw_traffic: 2147483648")), "6:22 out-of-range '2147483648'\n");
    EXPECT_EQ(found(path("raw_traffic: -2147483649")), "6:22 out-of-range '-2147483649'\n");
    EXPECT_EQ(said_of(path("raw_traffic: 4294967295")),
              "'raw_traffic' holds a number with a sign of 32 bits: the reader makes -1 of "
              "'4294967295'\n");
    EXPECT_EQ(
        said_of(path("raw_traffic: 2147483648")),
        "'raw_traffic' holds a number with a sign of 32 bits: the reader makes -2147483648 of "
        "'2147483648'\n");
    EXPECT_EQ(said_of(path("raw_traffic: 4294967303")),
              "'raw_traffic' holds a number with a sign of 32 bits: the reader makes 7 of "
              "'4294967303'\n");
}

std::string share(const std::string &value) {
    return begin_job("    quota_percentage:" + value + "\n");
}

TEST(CheckedFloats, MayHaveEveryFormThatTheReaderTakes) {
    for (const char *value :
         {" 12.5",      " 0",     " 100",     "5",      " 1e2",       " 1E+2",
          " 1e-05",     " -3.25", " +3.25",   " .5",    " 5.",        " 0.000123456",
          " 123456000", " 0x10",  " 0X1.8p3", " inf",   " -Infinity", " nan",
          " NAN",       " -0.0",  " 1.5 \t",  " 000.50"}) {
        EXPECT_EQ(found(share(value)), "") << value;
    }
}

TEST(CheckedFloats, AreNumbersWithNothingAfterThem) {
    EXPECT_EQ(found(share("")), "4:5 no-value 'quota_percentage:'\n");
    EXPECT_EQ(found(share(" x")), "4:23 not-a-number 'x'\n");
    EXPECT_EQ(found(share(" .")), "4:23 not-a-number '.'\n");
    EXPECT_EQ(found(share(" -")), "4:23 not-a-number '-'\n");
    EXPECT_EQ(found(share(" infi")), "4:23 not-a-number 'infi'\n");
    EXPECT_EQ(found(share(" 0xg")), "4:23 not-a-number '0xg'\n");
    EXPECT_EQ(found(share(" 12.5%")), "4:27 unit '%'\n");
    EXPECT_EQ(found(share(" 12,5")), "4:25 after-number ',5'\n");
    EXPECT_EQ(found(share(" 1.2.3")), "4:26 after-number '.3'\n");
    EXPECT_EQ(found(share(" 1e")), "4:24 after-number 'e'\n");
    EXPECT_EQ(found(share(" 1e+")), "4:24 after-number 'e+'\n");
    EXPECT_EQ(found(share(" 1ex")), "4:24 after-number 'ex'\n");
    EXPECT_EQ(found(share(" 1e-x")), "4:24 after-number 'e-x'\n");
    EXPECT_EQ(found(share(" 1e2x")), "4:26 after-number 'x'\n");
    EXPECT_EQ(found(share(" 0xAfg")), "4:27 after-number 'g'\n");
    EXPECT_EQ(found(share(" 0x1p3q")), "4:28 after-number 'q'\n");
    EXPECT_EQ(found(share(" 0x1e3p")), "4:28 after-number 'p'\n");
    EXPECT_EQ(found(share(" 0x1.2.3")), "4:28 after-number '.3'\n");
    EXPECT_EQ(found(share(" 0x.")), "4:24 after-number 'x.'\n");
    EXPECT_EQ(found(share(" nanny")), "4:26 after-number 'ny'\n");
    EXPECT_EQ(said_of(share(" 12.5%")),
              "the reader takes '12.5' and skips what stands after it, '%'\n");
}

TEST(CheckedFloats, KeepAllOfTheirDigits) {
    EXPECT_EQ(found(share(" 12.34567")), "4:23 rounded '12.34567'\n");
    EXPECT_EQ(found(share(" 1234567")), "4:23 rounded '1234567'\n");
    EXPECT_EQ(found(share(" 1e50")), "4:23 rounded '1e50'\n");
    EXPECT_EQ(found(share(" 1e-60")), "4:23 rounded '1e-60'\n");
    EXPECT_EQ(found(share(" 0x1p999")), "4:23 rounded '0x1p999'\n");
    EXPECT_EQ(found(share(" 0x1p-999")), "4:23 rounded '0x1p-999'\n");
    EXPECT_EQ(found(share(" 0x0p5")), "");
    EXPECT_EQ(found(share(" 0xabcdef")), "4:23 rounded '0xabcdef'\n");
    EXPECT_EQ(found(share(" 0x1.23456p0")), "4:23 rounded '0x1.23456p0'\n");
    EXPECT_EQ(found(share(" " + std::string(61, '0'))),
              "4:23 rounded '" + std::string(61, '0') + "'\n");
    EXPECT_EQ(said_of(share(" 12.34567")),
              "'12.34567' has more digits than the 6 that are written\n");
    EXPECT_EQ(said_of(share(" 1e-60")), "'1e-60' is not kept as it is: the writer makes 0 of it\n");
    EXPECT_EQ(said_of(share(" 0x1.23456p0")),
              "'0x1.23456p0' is not kept as it is: the writer makes 1.13778 of it\n");
}

TEST(CheckedTextValues, StandBetweenQuotesOnOneLine) {
    EXPECT_EQ(found(job_error("    description: \"link down\"\n")), "");
    EXPECT_EQ(found(job_error("    description: link down\n")), "4:18 no-quotes 'link down'\n");
    EXPECT_EQ(found(job_error("    description:\n")), "4:5 no-value 'description:'\n");
    EXPECT_EQ(found(job_error("    description: \"link\n    error: 1\n")),
              "4:18 open-text '\"link'\n");
    EXPECT_EQ(found(job_error("    description: \"\n")), "4:18 open-text '\"'\n");
    EXPECT_EQ(found(job_error("    description: \"link\ndown\"\n")),
              "4:18 open-text '\"link'\n5:1 stray-line 'down\"'\n");
    EXPECT_EQ(found(job_error("    description: \"\"\n")), "4:18 empty-text '\"\"'\n");
    EXPECT_EQ(said_of(job_error("    description:\n    error: 5\n")),
              "no value stands after 'description': the text becomes empty\n");
    EXPECT_EQ(said_of(begin_job("    hosts: \"\"\n")),
              "the reader does not take an empty text for a value: there is no element for it\n");
}

TEST(CheckedTextValues, HaveABlankAndNothingElseBeforeTheirQuote) {
    EXPECT_EQ(found(job_error("    description:\"down\"\n")), "4:16 before-text ':\"'\n");
    EXPECT_EQ(found(job_error("    description: very \"down\"\n")), "4:18 before-text 'very'\n");
    EXPECT_EQ(found(job_error("    description:\t  \"down\"\n")), "");
    EXPECT_EQ(said_of(job_error("    description:\"down\"\n")),
              "a blank belongs between the colon and the quote: the reader does not read the text: "
              "the text becomes empty\n");
}

TEST(CheckedTextValues, EndAtTheirSecondQuote) {
    EXPECT_EQ(found(job_error("    description: \"a \"b\" c\"\n")), "4:22 after-text 'b\" c\"'\n");
    EXPECT_EQ(found(job_error("    description: \"a\" error: 5\n")),
              "4:22 after-text 'error: 5'\n");
    EXPECT_EQ(found(job_error("    description: \"a\" \t\n")), "");
}

TEST(CheckedTextValues, FitTheirField) {
    EXPECT_EQ(found(job_error("    description: \"" + std::string(127, 'x') + "\"\n")), "");
    EXPECT_EQ(found(job_error("    description: \"" + std::string(127, 'x') + "yz\"\n")),
              "4:146 long-text 'yz'\n");
    EXPECT_EQ(said_of(job_error("    description: \"" + std::string(128, 'x') + "\"\n")),
              "'description' holds 127 bytes: the reader cuts what stands after them\n");
    EXPECT_EQ(found(begin_job("    hosts: \"" + std::string(298, 'x') + "\"\n")), "");
    EXPECT_EQ(found(begin_job("    hosts: \"" + std::string(298, 'x') + "y\"\n")),
              "4:311 long-text 'y'\n");
    EXPECT_EQ(
        found(topology("    switches {\n      name: \"" + std::string(64, 'n') + "\"\n    }\n")),
        "5:77 long-text 'n'\n");
}

TEST(CheckedTextValues, FitTheirFieldAlsoWithABlankAfterThem) {
    EXPECT_EQ(found(job_error("    description: \"" + std::string(127, 'x') + "\" \n")), "");
    EXPECT_EQ(found(job_error("    description: \"" + std::string(128, 'x') + "\" \n")),
              "4:146 long-text 'x'\n");
}

// The first of these takes room for ten characters, which the reader believes to be full with the
// second one, but not overfull: the room is doubled for the third alone, and holds 19 and a NUL.
TEST(CheckedTextValues, OfSeveralLinesFillTheirRoomBeforeItGrows) {
    const auto third = [](size_t length) {
        return begin_job("    hosts: \"ab\"\n    hosts: \"cdef\"\n    hosts: \"" +
                         std::string(length, 'x') + "\"\n");
    };
    EXPECT_EQ(found(third(10)), "");
    EXPECT_EQ(found(third(11)), "6:5 long-text 'hosts: \"xxxxxxxxxxx\"'\n");
}

TEST(CheckedTextValues, HoldNoBraces) {
    EXPECT_EQ(found(job_error("    error: 5\n    description: \"a } b\"\n    type: 7\n")),
              "5:19 brace-in-text 'a } b'\n");
    EXPECT_EQ(found(job_error("    error: 5\n    description: \"a { b\"\n    type: 7\n")),
              "5:19 open-brace-in-text 'a { b'\n");
    EXPECT_EQ(found(job_error("    description: \"{}\"\n")), "4:19 brace-in-text '{}'\n");
    EXPECT_EQ(said_of(job_error("    description: \"{}\"\n")),
              "the reader takes the text here, but where it is written below another line the "
              "brace closes 'job_error'\n");
}

TEST(CheckedNumbers, BelowTheirLineAreOfNumbersOnly) {
    EXPECT_EQ(said_of(begin_job("    job_id:\n+5\n")),
              "no value stands after 'job_id': the reader takes the number of line 5, '+5'\n'+5' "
              "begins with no key: the reader skips this line\n");
    EXPECT_EQ(said_of(job_error("    description:\n5\n")),
              "no value stands after 'description': the text becomes empty\n"
              "'5' begins with no key: the reader skips this line\n");
    EXPECT_EQ(said_of(begin_job("    hosts:\n5\n")),
              "no value stands after 'hosts': there is no element for it\n"
              "'5' begins with no key: the reader skips this line\n");
}

TEST(CheckedNumbers, BelowZeroAreShownAsTheyAreRead) {
    EXPECT_EQ(
        said_of(begin_job("    job_id: -1\n")),
        "'job_id' holds a number of 64 bits: the reader makes 18446744073709551615 of '-1'\n");
    EXPECT_EQ(said_of(begin_job("    num_rails: -2\n")),
              "'num_rails' holds a number of 8 bits: the reader makes 254 of '-2'\n");
}

TEST(CheckedNumbers, BeyondSixtyFourBitsStayThereWhateverFollows) {
    for (std::string digits = "18446744073709551616"; digits.size() < 50; digits += '0') {
        EXPECT_EQ(said_of(begin_job("    job_id: " + digits + "\n")),
                  "'job_id' holds a number of 64 bits: the reader makes 18446744073709551615 of '" +
                      digits + "'\n");
    }
}

TEST(CheckedFloats, MayHaveSixDigitsWithZerosBetweenThem) {
    for (const char *value : {" 10101.5", " +10101.5", " 1.01010e2", " 0xff", " 0xFp1"}) {
        EXPECT_EQ(found(share(value)), "") << value;
    }
}

TEST(CheckedFloats, AreRoundedByAllOfTheirDigits) {
    // As a float it is 1e+13, which is written.
    EXPECT_EQ(found(share(" 10000000000001")), "4:23 rounded '10000000000001'\n");
    EXPECT_EQ(found(share(" 0x10p-999")), "4:23 rounded '0x10p-999'\n");
}

TEST(CheckedFloats, MayHaveSixtyCharacters) {
    EXPECT_EQ(found(share(" " + std::string(60, '0'))), "");
    EXPECT_EQ(found(share(" " + std::string(59, '0') + "5")), "");
}

TEST(CheckedFloats, MayBeCutByTheEndOfTheText) {
    const auto cut = [](const std::string &value) {
        return found("msg {\n  type: BEGIN_JOB\n  begin_job {\n    quota_percentage: " + value);
    };
    EXPECT_EQ(cut("0"), "4:24 not-closed ''\n");
    EXPECT_EQ(cut("0x"), "4:23 not-a-number '0x'\n4:25 not-closed ''\n");
    EXPECT_EQ(cut("1e"), "4:24 after-number 'e'\n4:25 not-closed ''\n");
    EXPECT_EQ(cut("1e-"), "4:24 after-number 'e-'\n4:26 not-closed ''\n");
    EXPECT_EQ(cut("1e5"), "4:26 not-closed ''\n");
    EXPECT_EQ(cut("in"), "4:23 not-a-number 'in'\n4:25 not-closed ''\n");
    EXPECT_EQ(cut("inf"), "4:26 not-closed ''\n");
    EXPECT_EQ(cut("-"), "4:23 not-a-number '-'\n4:24 not-closed ''\n");
}

TEST(CheckedTextValues, ThatAreNotReadAreExplained) {
    EXPECT_EQ(said_of(job_error("    description: very \"down\"\n")),
              "the reader skips what stands before the quote, 'very'\n");
    EXPECT_EQ(said_of(job_error("    description: very\n")),
              "'very' stands without quotes: the text becomes empty\n");
    EXPECT_EQ(said_of(job_error("    description: \"very\n")),
              "no second quote closes this text on its line: the reader goes on below, and takes "
              "'very\\n  }\\n}\\n'\n");
    EXPECT_EQ(said_of(job_error("    description: \"very\" down\n")),
              "a text ends at its second quote: the reader skips what stands after it, 'down'\n");
}

TEST(CheckedTextValues, OfSeveralLinesHaveABlankBeforeTheirQuote) {
    EXPECT_EQ(found(begin_job("    hosts:\"a\"\n")), "4:10 before-text ':\"'\n");
}

TEST(CheckedTextValues, ThatAreTooLongHoldNoBracesEither) {
    EXPECT_EQ(found(job_error("    description: \"" + std::string(127, 'x') + "{}\"\n")),
              "4:146 long-text '{}'\n4:19 brace-in-text '" + std::string(127, 'x') + "{}'\n");
}

} // namespace
} // namespace kvt_test
