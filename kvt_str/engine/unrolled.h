// The routines of a record: a walk over its table or, at the levels that a record names, the same
// steps unrolled. There the rows and the indentation are known when compiling, and every step folds
// into straight code.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "engine/codec.h"
#include "engine/read_row.h"
#include "engine/write.h"
#include "engine/write_row.h"

namespace kvt_str {

/// The levels that a record's steps are unrolled for.
template <size_t count> struct Levels {
    unsigned at[count + 1]; // an array cannot be empty

    static constexpr size_t size() { return count; }
};

template <typename... Number> constexpr Levels<sizeof...(Number)> at_levels(Number... number) {
    return {{static_cast<unsigned>(number)..., 0}};
}

/// The option KVT_UNROLL of the build; without it every record is walked.
#ifdef KVT_UNROLL
inline constexpr bool unrolls = true;
#else
inline constexpr bool unrolls = false;
#endif

/// `Source` has the record's type and its finished table, and `levels` those to unroll.
template <typename Source, auto levels> struct Routines {
    using Type = typename Source::Type;

    static char *write(const void *record, unsigned level, char *out) {
        char *end = nullptr;
        const auto unrolled = [&](auto known) KVT_FOLDED_LAMBDA {
            end = put<known>(Storing{out}, record, AllRows{}).at;
        };
        return call_at(level, unrolled) ? end : write_record(codec(), record, level, out);
    }

    static uint64_t measure(const void *record, unsigned level) {
        uint64_t size = 0;
        const auto unrolled = [&](auto known) KVT_FOLDED_LAMBDA {
            size = put<known>(Measuring{0}, record, AllRows{}).size;
        };
        return call_at(level, unrolled) ? size : measure_record(codec(), record, level);
    }

    static const char *read(Input &input, const char *at, void *record, unsigned level) {
        const char *end = nullptr;
        const auto unrolled = [&](auto known) KVT_FOLDED_LAMBDA {
            end = read_at<known>(input, at, record, AllRows{});
        };
        return call_at(level, unrolled) ? end : read_record(codec(), input, at, record, level);
    }

private:
    static constexpr const Codec &codec() { return CodecOf<Type>::codec; }

    using UnrolledLevels = std::make_index_sequence<(unrolls ? levels.size() : 0)>;

    /// Calls a step with the level as a constant, when it is one of those that are unrolled.
    template <typename Step> KVT_FOLDED static bool call_at(unsigned level, const Step &step) {
        return [&]<size_t... i>(std::index_sequence<i...> /*all*/) KVT_FOLDED_LAMBDA {
            bool called = false;
            ((called |= call_if<levels.at[i]>(level, step)), ...);
            return called;
        }
        (UnrolledLevels{});
    }

    template <unsigned known, typename Step>
    KVT_FOLDED static bool call_if(unsigned level, const Step &step) {
        if (level != known) {
            return false;
        }
        step(std::integral_constant<unsigned, known>{});
        return true;
    }

    using AllRows = std::make_index_sequence<Source::Table::row_count>;

    template <size_t i> static constexpr const Row &row = Source::Table::numbered.at[i];

    template <unsigned level, typename Out, size_t... i>
    KVT_FOLDED static Out put(Out out, const void *record, std::index_sequence<i...> /*all*/) {
        ((out = put_row(out, codec(), row<i>, level + 1, record)), ...);
        out.put_label(closing_label, indent_of(level));
        return out;
    }

    template <unsigned level, size_t... i>
    KVT_FOLDED static const char *read_at(Input &input, const char *at, void *record,
                                          std::index_sequence<i...> /*all*/) {
        clear_record(codec(), record);
        BlockReader block(input, codec(), record, level);
        const char *start = at;
        if (!block.is_listened_to) {
            ((at = read_row(block, row<i>, at, Offer::in_order)), ...);
            const char *end = block.after_closing_line(at);
            if (end != nullptr && (count_is_true(block, row<i>) & ...) != 0) {
                return end;
            }
        }
        // A second reader reads the rest: then the compiler keeps the first one in registers.
        BlockReader rest(input, codec(), record, level);
        if constexpr ((makes_progress(row<i>) || ...)) {
            rest.progress = block.progress;
        }
        return rest.read_lines(at, at == start);
    }

    /// The step of the row leaves something in BlockReader::progress.
    static constexpr bool makes_progress(const Row &of) {
        return of.counts_elements() || of.has(shared_value);
    }

    /// 1 when the count of a row, if it has one, is the number of elements that were read; else 0.
    KVT_FOLDED static unsigned count_is_true(const BlockReader &block, const Row &of) {
        const bool lies = of.counts_elements() && load_count(of, block.record) !=
                                                      block.progress.true_counts.of(of).elements;
        return lies ? 0 : 1;
    }
};

} // namespace kvt_str
