#include "nlohmann_codec.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "model/fields.h"

namespace kvt_bench {

namespace {

using nlohmann::json;

class ObjectWriter {
public:
    template <typename Record> static json make(const Record &record) {
        ObjectWriter writer;
        describe(record, writer);
        return std::move(writer.object_);
    }

    void number(const char *key, const auto &member) {
        if (member != 0) {
            object_.emplace(key, member);
        }
    }

    void real(const char *key, float member) { number(key, member); }

    void text(const char *key, const char *member) {
        if (*member != '\0') {
            object_.emplace(key, member);
        }
    }

    void allocated_text(const char *key, const char *member, uint32_t length) {
        if (member != nullptr) {
            object_.emplace(key, std::string_view(member, length - 1));
        }
    }

    template <typename Number> void array(const char *key, const Number *member, size_t count) {
        object_.emplace(key, json::array_t(member, member + count));
    }

    template <size_t capacity>
    void bytes(const char *key, const uint8_t (&member)[capacity], uint8_t last) {
        array(key, member,
              static_cast<size_t>(std::find(member, member + capacity, last) - member));
    }

    void block(const char *key, const auto &member) { object_.emplace(key, make(member)); }

    template <typename Element> void run(const char *key, const Element *member, size_t count) {
        json::array_t elements;
        elements.reserve(count);
        std::transform(member, member + count, std::back_inserter(elements), make<Element>);
        object_.emplace(key, std::move(elements));
    }

private:
    json object_ = json::object();
};

class ObjectReader {
public:
    template <typename Record> static void read(const json &object, Record &record) {
        describe(record, ObjectReader(object));
    }

    template <typename Number> void number(const char *key, Number &member) {
        if (const json *value = find(key)) {
            member = value->get<Number>();
        }
    }

    void real(const char *key, float &member) { number(key, member); }

    template <size_t capacity> void text(const char *key, char (&member)[capacity]) {
        if (const json *value = find(key)) {
            value->get_ref<const std::string &>().copy(member, capacity - 1);
        }
    }

    void allocated_text(const char *key, char *&member, uint32_t &length) {
        if (const json *value = find(key)) {
            member = allocate_text(value->get_ref<const std::string &>(), length);
        }
    }

    template <typename Number, typename Count>
    void array(const char *key, Number *&member, Count &count) {
        if (const json *value = find(key)) {
            member = allocate<Number>(value->size());
            count = static_cast<Count>(value->size());
            std::transform(value->begin(), value->end(), member,
                           [](const json &one) { return one.get<Number>(); });
        }
    }

    template <size_t capacity> void bytes(const char *key, uint8_t (&member)[capacity], uint8_t) {
        if (const json *value = find(key)) {
            const auto count = static_cast<std::ptrdiff_t>(std::min(value->size(), capacity));
            std::transform(value->begin(), value->begin() + count, member,
                           [](const json &one) { return one.get<uint8_t>(); });
        }
    }

    void block(const char *key, auto &member) {
        if (const json *value = find(key)) {
            read(*value, member);
        }
    }

    template <typename Element, typename Count>
    void run(const char *key, Element *&member, Count &count) {
        if (const json *value = find(key)) {
            member = allocate<Element>(value->size());
            count = static_cast<Count>(value->size());
            Element *element = member;
            for (const json &one : *value) {
                read(one, *element++);
            }
        }
    }

private:
    explicit ObjectReader(const json &object) : object_(object) {}

    const json *find(const char *key) const {
        const auto found = object_.find(key);
        return found != object_.end() ? &*found : nullptr;
    }

    const json &object_;
};

template <typename Record> class NlohmannCodec final : public Codec {
public:
    void encode(const void *record) override {
        text_ = ObjectWriter::make(*static_cast<const Record *>(record)).dump();
    }

    std::string_view encoded() const override { return text_; }

    void *decode(std::string_view document) override {
        auto *record = allocate<Record>(1);
        ObjectReader::read(json::parse(document), *record);
        return record;
    }

private:
    std::string text_;
};

} // namespace

std::unique_ptr<Codec> make_nlohmann(int32_t kind) {
    return make_codec<NlohmannCodec>(kind);
}

} // namespace kvt_bench
