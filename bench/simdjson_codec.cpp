#include "simdjson_codec.h"

#include <simdjson.h>

#include "model/fields.h"
#include "rapidjson_codec.h"

// This file is compiled twice, each time with a name for what makes the codec.
#ifndef KVT_MAKE_SIMDJSON
#define KVT_MAKE_SIMDJSON make_simdjson
#endif

namespace kvt_bench {

namespace {

using simdjson::ondemand::array;
using simdjson::ondemand::object;
using simdjson::ondemand::object_iterator;
using simdjson::ondemand::raw_json_string;
using simdjson::ondemand::value;

template <typename Type> Type get(simdjson::simdjson_result<Type> result) {
    Type got;
    if (std::move(result).get(got) != simdjson::SUCCESS) {
        fail("simdjson: a value is not what it should be");
    }
    return got;
}

template <typename Number> Number get_number(value from) {
    if constexpr (std::is_signed_v<Number>) {
        return static_cast<Number>(get(from.get_int64()));
    } else {
        return static_cast<Number>(get(from.get_uint64()));
    }
}

template <typename Record> void read_object(object from, Record &record);

/// Reads the fields of one object. They are asked for in the order in which a writer puts them, so
/// that mostly the next key is the one that is compared; when keys stand in another order, it takes
/// more passes.
class ObjectReader {
public:
    explicit ObjectReader(object from) : at_(get(from.begin())), end_(get(from.end())) { look(); }

    template <typename Record> void read(Record &record) {
        while (!done_) {
            const char *first = key_.raw();
            describe(record, *this);
            if (key_.raw() == first) {
                next(); // a key that nobody knows
            }
        }
    }

    template <size_t size, typename Number> void number(const char (&key)[size], Number &member) {
        if (is(key)) {
            member = get_number<Number>(value_);
            next();
        }
    }

    template <size_t size> void real(const char (&key)[size], float &member) {
        if (is(key)) {
            member = static_cast<float>(get(value_.get_double()));
            next();
        }
    }

    template <size_t size, size_t capacity>
    void text(const char (&key)[size], char (&member)[capacity]) {
        if (is(key)) {
            const std::string_view text = get(value_.get_string());
            text.copy(member, capacity - 1);
            next();
        }
    }

    template <size_t size>
    void allocated_text(const char (&key)[size], char *&member, uint32_t &length) {
        if (is(key)) {
            member = allocate_text(get(value_.get_string()), length);
            next();
        }
    }

    template <size_t size, typename Number, typename Count>
    void array(const char (&key)[size], Number *&member, Count &count) {
        if (is(key)) {
            Growing<Number> numbers;
            for (auto element : get(value_.get_array())) {
                numbers.add() = get_number<Number>(get(std::move(element)));
            }
            member = numbers.elements();
            count = static_cast<Count>(numbers.count());
            next();
        }
    }

    template <size_t size, size_t capacity>
    void bytes(const char (&key)[size], uint8_t (&member)[capacity], uint8_t) {
        if (is(key)) {
            size_t i = 0;
            for (auto element : get(value_.get_array())) {
                if (i < capacity) {
                    member[i++] = get_number<uint8_t>(get(std::move(element)));
                }
            }
            next();
        }
    }

    template <size_t size, typename Record> void block(const char (&key)[size], Record &member) {
        if (is(key)) {
            read_object(get(value_.get_object()), member);
            next();
        }
    }

    template <size_t size, typename Element, typename Count>
    void run(const char (&key)[size], Element *&member, Count &count) {
        if (is(key)) {
            Growing<Element> elements;
            for (auto element : get(value_.get_array())) {
                read_object(get(element.get_object()), elements.add_cleared());
            }
            member = elements.elements();
            count = static_cast<Count>(elements.count());
            next();
        }
    }

private:
    template <size_t size> bool is(const char (&key)[size]) {
        return key_.unsafe_is_equal(std::string_view(key, size - 1));
    }

    void look() {
        done_ = at_ == end_;
        if (done_) {
            static constexpr uint8_t no_key[simdjson::SIMDJSON_PADDING] = {};
            key_ = raw_json_string(no_key);
        } else {
            auto field = get(*at_);
            key_ = field.key();
            value_ = field.value();
        }
    }

    void next() {
        ++at_;
        look();
    }

    object_iterator at_;
    object_iterator end_;
    raw_json_string key_;
    value value_;
    bool done_ = false;
};

/// Everything within is inlined, except for the objects in the object: only so the iterators stay
/// in registers, which more than doubles the speed.
template <typename Record>
[[gnu::noinline, gnu::flatten]] void read_object(object from, Record &record) {
    ObjectReader(from).read(record);
}

template <typename Record> class SimdjsonCodec final : public Codec {
public:
    explicit SimdjsonCodec(std::unique_ptr<Codec> writer) : writer_(std::move(writer)) {}

    void encode(const void *record) override { writer_->encode(record); }

    std::string_view encoded() const override { return writer_->encoded(); }

    void *decode(std::string_view document) override {
        static_assert(document_padding >= simdjson::SIMDJSON_PADDING);
        auto parsed = get(parser_.iterate(document, document.size() + document_padding));
        auto *record = allocate<Record>(1);
        read_object(get(parsed.get_object()), *record);
        return record;
    }

private:
    std::unique_ptr<Codec> writer_;
    simdjson::ondemand::parser parser_;
};

} // namespace

std::unique_ptr<Codec> KVT_MAKE_SIMDJSON(int32_t kind) {
    return make_codec<SimdjsonCodec>(kind, make_rapidjson(kind));
}

} // namespace kvt_bench
