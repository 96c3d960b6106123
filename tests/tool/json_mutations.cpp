#include "tool/json_mutations.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace kvt_test {

namespace {

/// What takes the place of a value, or stands between two characters.
constexpr std::string_view pieces[] = {"0",
                                       "-0",
                                       "1",
                                       "-1",
                                       "255",
                                       "256",
                                       "65535",
                                       "65536",
                                       "4294967295",
                                       "4294967296",
                                       "2147483647",
                                       "2147483648",
                                       "-2147483648",
                                       "-2147483649",
                                       "18446744073709551615",
                                       "18446744073709551616",
                                       "1.5",
                                       "5.0",
                                       "500e-2",
                                       "1e3",
                                       "1e400",
                                       "1e-400",
                                       "-1e99999999999",
                                       "0e99999999999999999999",
                                       "12.3456789",
                                       "16777217",
                                       "3.4028235e38",
                                       "1e-45",
                                       "01",
                                       "1.",
                                       ".5",
                                       "+1",
                                       "0x10",
                                       "\"0x10\"",
                                       "\"17\"",
                                       "\"-17\"",
                                       "\"12.5\"",
                                       "\"NaN\"",
                                       "\"-Infinity\"",
                                       "NaN",
                                       "null",
                                       "true",
                                       "[]",
                                       "{}",
                                       "[[]]",
                                       "[0]",
                                       "[255]",
                                       "[1,2,3]",
                                       "[{}]",
                                       "[{},{}]",
                                       "\"\"",
                                       R"("a\nb")",
                                       R"("a\"b")",
                                       R"("{")",
                                       R"("}")",
                                       R"("\u0000")",
                                       R"("\r")",
                                       R"("\t")",
                                       R"("\\")",
                                       R"("\ud83d\ude00")",
                                       R"("\ud83d")",
                                       R"("\u00e9")",
                                       "\"\xC3\xA9\"",
                                       "\"\xFF\"",
                                       "\"a\nb\"",
                                       R"({"hex":"61"})",
                                       R"({"hex":"22"})",
                                       R"({"hex":"0a"})",
                                       R"({"hex":"7b7d"})",
                                       R"({"hex":"00"})",
                                       R"({"hex":"ff"})",
                                       R"({"hex":"6"})",
                                       R"({"hex":1})",
                                       R"({"hex":"61","x":1})",
                                       R"("type":"END_JOB",)",
                                       R"("x":1,)",
                                       R"("job_id":5,)",
                                       R"("a)",
                                       ",",
                                       ":",
                                       "[",
                                       "]",
                                       "{",
                                       "}",
                                       "\"",
                                       "\\",
                                       "\n",
                                       "\r\n",
                                       " ",
                                       "\t",
                                       "/",
                                       "'",
                                       "\x01",
                                       "\xEF\xBB\xBF"};

std::string_view piece(Random &random) {
    return pieces[below(random, std::size(pieces))];
}

/// Where values seem to begin: after a colon, a comma or a bracket.
std::vector<size_t> beginnings(const std::string &json) {
    std::vector<size_t> places;
    for (size_t i = 0; i < json.size(); ++i) {
        if (std::string_view(":,[").find(json[i]) != std::string_view::npos) {
            places.push_back(i + 1);
        }
    }
    return places;
}

/// Puts another value in the place of one that seems to begin at `begin`.
void replace_value(std::string &json, size_t begin, std::string_view value) {
    size_t end = begin;
    bool in_string = false;
    while (end < json.size() &&
           (in_string || std::string_view(",]}").find(json[end]) == std::string_view::npos)) {
        in_string = in_string != (json[end] == '"');
        ++end;
    }
    json.replace(begin, end - begin, value);
}

} // namespace

std::string mutate_json(std::string json, Random &random) {
    const std::vector<size_t> values = beginnings(json);
    const size_t at = below(random, json.size() + 1);
    const size_t length = below(random, std::min<size_t>(json.size() - at, 40) + 1);
    const size_t choice = below(random, 12);
    if (choice < 6 && !values.empty()) {
        replace_value(json, values[below(random, values.size())], piece(random));
    } else if (choice < 8) {
        json.insert(at, piece(random));
    } else if (choice == 8) {
        json.erase(at, length);
    } else if (choice == 9) {
        json.insert(at, json.substr(at, length));
    } else if (choice == 10) {
        json.insert(at, 1, static_cast<char>(random()));
    } else {
        json.resize(at);
    }
    return json;
}

} // namespace kvt_test
