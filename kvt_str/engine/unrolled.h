// The routines of a record: a walk over its table or, at the levels that a record names, the same
// steps unrolled. There the rows and the indentation are known when compiling, and every step folds
// into straight code.
#pragma once

#include <type_traits>
#include <utility>

#include "engine/read.h"
#include "engine/read_row.h"
#include "engine/row.h"
#include "engine/write.h"
#include "engine/write_row.h"

namespace kvt_str {

/// A level that a record's steps are unrolled for; several are combined with |.
constexpr unsigned at_level(unsigned number) {
    return 1U << number;
}

inline constexpr unsigned most_levels = 5;

/// The option KVT_UNROLL of the build; without it every record is walked.
#ifdef KVT_UNROLL
inline constexpr bool unrolls = true;
#else
inline constexpr bool unrolls = false;
#endif

/// `rows` are those of the finished table of `Type`, and `levels` those to unroll, from at_level.
template <typename Type, const auto &rows, unsigned levels> struct Routines {
    static char *write(const void *record, unsigned level, char *out) {
        char *behind = nullptr;
        const auto unrolled = [&](auto known) KVT_FOLDED_LAMBDA {
            behind = put<known>(Storing{out}, record).at;
        };
        return call_at(level, unrolled) ? behind : write_record(table, record, level, out);
    }

    static uint64_t measure(const void *record, unsigned level) {
        uint64_t size = 0;
        const auto unrolled = [&](auto known) KVT_FOLDED_LAMBDA {
            size = put<known>(Counting{0}, record).size;
        };
        return call_at(level, unrolled) ? size : measure_record(table, record, level);
    }

    static const char *read(Input &input, const char *at, void *record, unsigned level) {
        const char *behind = nullptr;
        const auto unrolled = [&](auto known) KVT_FOLDED_LAMBDA {
            behind = read_unrolled<known>(input, at, record);
        };
        return call_at(level, unrolled) ? behind : read_record(table, input, at, record, level);
    }

private:
    static_assert(levels >> most_levels == 0, "raise most_levels");

    static constexpr const Record &table = RecordOf<Type>::table;

    /// Calls a step with the level as a constant, when it is one of those that are unrolled.
    template <typename Step> KVT_FOLDED static bool call_at(unsigned level, const Step &step) {
        return call_at(level, step, std::make_integer_sequence<unsigned, most_levels>{});
    }

    template <typename Step, unsigned... known>
    KVT_FOLDED static bool call_at(unsigned level, const Step &step,
                                   std::integer_sequence<unsigned, known...> /*all*/) {
        return (call_known<known>(level, step) || ...);
    }

    template <unsigned known, typename Step>
    KVT_FOLDED static bool call_known(unsigned level, const Step &step) {
        if constexpr (unrolls && (levels & at_level(known)) != 0) {
            if (level == known) {
                step(std::integral_constant<unsigned, known>{});
                return true;
            }
        }
        return false;
    }

    template <unsigned level, typename Out> KVT_FOLDED static Out put(Out out, const void *record) {
        for_each_row([&](const Row &row)
                         KVT_FOLDED_LAMBDA { out = put_row(out, row, level + 1, record); });
        out.put_label(closing_label, indent_of(level));
        return out;
    }

    template <unsigned level>
    KVT_FOLDED static const char *read_unrolled(Input &input, const char *at, void *record) {
        clear_record(table, record);
        Progress progress;
        const char *start = at;
        if (is_straight_path_open()) {
            const StraightBlock block{input, input.text, record, level + 1};
            for_each_row([&](const Row &row)
                             KVT_FOLDED_LAMBDA { at = take_straight(block, row, at, progress); });
            const char *behind = behind_label(block.text, closing_label, at, indent_of(level));
            if (behind != nullptr && counts_are_true(record, progress.heap)) {
                return behind;
            }
        }
        // Where no row makes a progress, a new one is as good: then the straight path keeps none.
        return read_rest(table, input, at, record, level, makes_progress() ? progress : Progress(),
                         at == start);
    }

    static constexpr bool makes_progress() {
        for (const Row &row : rows) {
            if (row.counts_elements() || row.has(shared_value)) {
                return true;
            }
        }
        return false;
    }

    /// Every count is the number of elements that were read.
    KVT_FOLDED static bool counts_are_true(const void *record, const CountedArrays &heap) {
        bool all = true;
        for_each_row([&](const Row &row) KVT_FOLDED_LAMBDA {
            all &= !row.counts_elements() ||
                   load_count(row, record) == heap.elements[row.counted_index];
        });
        return all;
    }

    template <typename Step> KVT_FOLDED static void for_each_row(const Step &step) {
        [&]<size_t... i>(std::index_sequence<i...>) KVT_FOLDED_LAMBDA {
            (step(*(rows.data() + i)), ...);
        }
        (std::make_index_sequence<rows.size()>{});
    }
};

} // namespace kvt_str
