// What is said of braces and of what stands beside them.
#include "check_block.h"

namespace kvt_checking {

bool is_balanced(const Line &line) {
    int depth = 0;
    bool closes = false;
    for (const char *at = line.at; at != line.end; ++at) {
        depth += (*at == '{') - (*at == '}');
        closes |= *at == '}';
        if (depth < 0) {
            return false;
        }
    }
    return depth == 0 && closes;
}

void check_after_brace(Check &check, const char *brace, const Line &line) {
    const std::string_view rest = trimmed(brace + 1, line.end);
    if (!rest.empty() && !report_usual_rest(check, rest)) {
        check.findings.report(KVT_FINDING_BESIDE_BRACE, check.mark(rest),
                              "the reader skips what stands after the brace, ", Quoted{rest});
    }
}

void report_one_line_block(Check &check, const Line &line, std::string_view effect,
                           std::string_view name) {
    check.findings.report(KVT_FINDING_ONE_LINE_BLOCK, check.mark(line),
                          "the reader knows blocks only over several lines: it ", effect,
                          Quoted{name});
}

void report_no_brace(Check &check, const Mark &mark, std::string_view name, bool is_alone,
                     bool is_below) {
    if (is_below) {
        check.findings.report(KVT_FINDING_NO_BRACE, mark, "no brace follows ", Quoted{name},
                              " on its line: the reader opens the block all the same, and skips "
                              "what the brace below opens");
    } else if (is_alone) {
        check.findings.report(KVT_FINDING_MISSING_BRACE, mark, "no brace follows ", Quoted{name},
                              " on its line: the reader opens the block all the same");
    } else {
        check.findings.report(KVT_FINDING_NO_BRACE, mark, "no brace follows ", Quoted{name},
                              " at once: the reader opens the block all the same, and skips the "
                              "rest of this line");
    }
}

void report_missing(Check &check, const Indentation::Missing &missing) {
    check.findings.report(
        KVT_FINDING_NOT_CLOSED, Mark(missing.opening, {missing.opening.at, missing.name.size()}),
        Quoted{missing.name}, " is not closed: by the indentation its brace belongs before line ",
        uint64_t{missing.before},
        "; the reader takes what follows for its lines, and reads no message "
        "after this one");
    check.indentation.forget_missing(check.findings.follows_reader());
}

void report_extra(Check &check, const Place &brace, std::string_view block) {
    const Mark mark(brace, {brace.at, 1});
    if (block.empty()) {
        check.findings.report(KVT_FINDING_EXTRA_BRACE, mark,
                              "this brace is one too many: the reader reads no message after this "
                              "one");
    } else {
        check.findings.report(KVT_FINDING_EXTRA_BRACE, mark,
                              "this brace is one too many: the lines of ", Quoted{block},
                              " go on below it, where the reader does not take them for such");
    }
}

} // namespace kvt_checking
