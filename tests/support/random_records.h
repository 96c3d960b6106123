// Records with random content, for any table, and their comparison.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include "engine/row.h"

namespace kvt_test {

using Random = std::mt19937_64;

/// A number from 0 to `limit` - 1.
inline size_t below(Random &random, uint64_t limit) {
    return static_cast<size_t>(random() % limit);
}

/// A zeroed record of a table, which releases what hangs from it by its counts.
class OwnedRecord {
public:
    explicit OwnedRecord(const kvt_str::Record &table);
    ~OwnedRecord();
    OwnedRecord(const OwnedRecord &) = delete;
    OwnedRecord &operator=(const OwnedRecord &) = delete;

    void *get() { return record_; }

    template <typename Type> Type *as() { return static_cast<Type *>(record_); }

private:
    const kvt_str::Record &table_;
    void *record_;
};

/// Fills a zeroed record with values that survive writing and reading: texts without quotes and
/// braces, floats that six digits tell, lengths and counts that agree with what is there.
void fill_randomly(const kvt_str::Record &table, void *record, Random &random);

/// What of two records differs, for what a writer writes of them: empty when nothing does, else
/// the path of the first member that does.
std::string first_difference(const kvt_str::Record &table, const void *a, const void *b);

} // namespace kvt_test
