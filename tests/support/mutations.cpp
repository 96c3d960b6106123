#include "support/mutations.h"

#include <algorithm>
#include <vector>

namespace kvt_test {

using namespace kvt_str;

namespace {

void collect_keys(const Record &table, std::vector<std::string> &keys) {
    for (const Row &row : table.rows) {
        keys.emplace_back(row.label.text, row.key_length);
        if (row.element != nullptr) {
            collect_keys(*row.element, keys);
        }
    }
}

template <typename Choices> const auto &pick(const Choices &choices, Random &random) {
    return choices[below(random, std::size(choices))];
}

std::string random_value(Random &random) {
    static const std::string values[] = {
        "0",
        "1",
        "7",
        "255",
        "256",
        "300",
        "65535",
        "65536",
        "4294967295",
        "4294967296",
        "-1",
        "-300",
        "+5",
        "18446744073709551615",
        "18446744073709551616",
        "99999999999999999999999",
        "-99999999999999999999999",
        "",
        "x",
        "0x10",
        "1e3",
        "12.5",
        "-0.0",
        "nan",
        "inf",
        "infi",
        "3000000000.7",
        "-2147483649",
        "1 }",
        "{",
        "}",
        "{ }",
        "\"a\"",
        "\"\"",
        "\"a",
        "a\"b\"c",
        "\"a,b\"",
        "\"with } brace\"",
        "\t 9",
        "\r8",
        "\v\f 6",
        "5\r",
        "007",
        "- 3",
        "\"" + std::string(130, 'l') + "\"",
        "\"" + std::string(320, 'm') + "\"",
    };
    return pick(values, random);
}

std::string random_line(const Record &table, Random &random) {
    std::vector<std::string> keys;
    collect_keys(table, keys);
    static const std::string others[] = {"unknown", "}", "{", "x { }", "msg {", "", "  ", "type"};
    static const std::string separators[] = {": ", ":", " {", ":\n", " : ", ": \n\n\t", "", "x: "};
    std::string line(below(random, 12), ' ');
    line += below(random, 5) == 0 ? pick(others, random) : pick(keys, random);
    line += pick(separators, random);
    return line + random_value(random) + (below(random, 12) == 0 ? "" : "\n");
}

/// The start of a random line.
size_t random_line_start(const std::string &text, Random &random) {
    const size_t newline = text.find('\n', below(random, text.size() + 1));
    return newline == std::string::npos ? 0 : newline + 1;
}

size_t line_end(const std::string &text, size_t start) {
    const size_t newline = text.find('\n', start);
    return newline == std::string::npos ? text.size() : newline + 1;
}

} // namespace

std::string mutate(std::string text, const Record &table, Random &random) {
    static constexpr char telling[] = "\n\t\r \":{}-+0123456789ax,.";
    if (text.empty()) {
        return random_line(table, random);
    }
    const size_t place = below(random, text.size());
    const size_t start = random_line_start(text, random);
    const size_t end = line_end(text, start);
    switch (below(random, 10)) {
    case 0:
        text[place] = telling[below(random, sizeof telling - 1)];
        break;
    case 1:
        text.insert(place, 1, telling[below(random, sizeof telling - 1)]);
        break;
    case 2:
        text.erase(place, 1 + below(random, 3));
        break;
    case 3:
        text.erase(start, end - start);
        break;
    case 4: // a line, or some, again elsewhere
    {
        const std::string lines = text.substr(start, end - start + below(random, 60));
        text.insert(random_line_start(text, random), lines);
        break;
    }
    case 5: // a line moves
    {
        const std::string line = text.substr(start, end - start);
        text.erase(start, end - start);
        text.insert(text.empty() ? 0 : random_line_start(text, random), line);
        break;
    }
    case 6:
    case 7:
        text.insert(start, random_line(table, random));
        break;
    case 8: // another value
    {
        const size_t colon = text.find(':', place);
        if (colon != std::string::npos) {
            text.replace(colon + 1, line_end(text, colon) - colon - 1,
                         " " + random_value(random) + "\n");
        }
        break;
    }
    default:
        if (below(random, 4) == 0) {
            text.resize(place);
        }
        break;
    }
    return text;
}

} // namespace kvt_test
