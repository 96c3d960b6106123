#include "block_lines.h"

#include <algorithm>

#include "check_value.h"

namespace kvt_checking {

using namespace kvt_str;

void BlockLines::report_counts(Check &check) const {
    for (size_t counted = 0; counted < rows_.size(); ++counted) {
        const Row &row = rows_[counted];
        if (row.count_width == 0) {
            continue;
        }
        for (size_t count = 0; count < rows_.size(); ++count) {
            if (!rows_[count].is_number() || rows_[count].offset != row.count_offset) {
                continue;
            }
            if (has(count)) {
                report_count(check, counted, count);
            } else if ((noted_ >> count & 1) == 0 && has(counted) && lines_[counted].value != 0) {
                report_no_count(check, counted, count);
            }
        }
    }
}

void BlockLines::report_count(Check &check, size_t counted, size_t count) const {
    const Seen &line = lines_[count];
    const uint64_t said = line.value;
    const uint64_t there = has(counted) ? lines_[counted].value : 0;
    if (said == there || (doubtful_ >> counted & 1) != 0) {
        return;
    }
    const std::string_view name = key_of(rows_[counted]);
    const char *end = std::find(line.place.at, check.cursor.end(), '\n');
    const Mark mark(line.place, trimmed(line.place.at, end));
    if (!has(counted)) {
        report_lone_count(check, mark, counted, count);
        return;
    }
    const bool is_late = line.place.at > lines_[counted].place.at;
    const bool is_settled = rows_[counted].counts_elements();
    const bool drops = is_late && is_settled && said < there;
    const std::string_view effect =
        !is_late      ? "; the reader takes what is there"
        : !is_settled ? "; after it, the reader keeps the number as it stands"
        : drops       ? "; after it, the reader keeps the number; where it reads several messages, "
                        "it drops the last elements"
                      : "; after it, the reader keeps the number; where it reads several messages, "
                        "it takes what is there";
    if (rows_[counted].kind == RowKind::joined_text) {
        check.findings.report(KVT_FINDING_WRONG_LENGTH, mark, Quoted{key_of(rows_[count])},
                              " says ", said, ", but ", Quoted{name}, " takes ", there,
                              " with its end", effect);
    } else {
        check.findings.report(is_late ? KVT_FINDING_LATE_COUNT : KVT_FINDING_WRONG_COUNT, mark,
                              Quoted{key_of(rows_[count])}, " says ", said, ", but ", Quoted{name},
                              " has ", there, there == 1 ? " element" : " elements", effect);
    }
}

void BlockLines::report_lone_count(Check &check, const Mark &mark, size_t counted,
                                   size_t count) const {
    check.findings.report(KVT_FINDING_LONE_COUNT, mark, Quoted{key_of(rows_[count])}, " says ",
                          lines_[count].value, ", but there is no ", Quoted{key_of(rows_[counted])},
                          rows_[counted].counts_elements()
                              ? ": the reader keeps the number, and promises what is not there; "
                                "where it reads several messages, it makes it 0"
                              : ": the reader keeps the number");
}

void BlockLines::report_no_count(Check &check, size_t counted, size_t count) const {
    const Place &place = lines_[counted].place;
    const std::string_view name = key_of(rows_[counted]);
    check.findings.report(KVT_FINDING_NO_COUNT, Mark(place, {place.at, name.size()}),
                          "no line says ", Quoted{key_of(rows_[count])},
                          ": the reader takes it from what is there, ", lines_[counted].value);
}

} // namespace kvt_checking
