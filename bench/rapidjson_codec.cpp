#include "rapidjson_codec.h"

#define RAPIDJSON_SSE2
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "model/fields.h"

namespace kvt_bench {

namespace {

// --- Writing -------------------------------------------------------------------------------------

class ObjectWriter {
public:
    explicit ObjectWriter(rapidjson::Writer<rapidjson::StringBuffer> &writer) : writer_(writer) {}

    template <typename Record> void write(const Record &record) {
        writer_.StartObject();
        describe(record, *this);
        writer_.EndObject();
    }

    template <size_t size, typename Number>
    void number(const char (&key)[size], const Number &member) {
        if (member != 0) {
            put_key(key);
            put(member);
        }
    }

    template <size_t size> void real(const char (&key)[size], float member) {
        if (member != 0) {
            put_key(key);
            writer_.Double(static_cast<double>(member));
        }
    }

    template <size_t size> void text(const char (&key)[size], const char *member) {
        if (*member != '\0') {
            put_key(key);
            writer_.String(member, static_cast<rapidjson::SizeType>(std::strlen(member)));
        }
    }

    template <size_t size>
    void allocated_text(const char (&key)[size], const char *member, uint32_t length) {
        if (member != nullptr) {
            put_key(key);
            writer_.String(member, length - 1);
        }
    }

    template <size_t size, typename Number>
    void array(const char (&key)[size], const Number *member, size_t count) {
        put_key(key);
        writer_.StartArray();
        std::for_each(member, member + count, [this](Number one) { put(one); });
        writer_.EndArray();
    }

    template <size_t size, size_t capacity>
    void bytes(const char (&key)[size], const uint8_t (&member)[capacity], uint8_t last) {
        array(key, member,
              static_cast<size_t>(std::find(member, member + capacity, last) - member));
    }

    template <size_t size, typename Record>
    void block(const char (&key)[size], const Record &member) {
        put_key(key);
        write(member);
    }

    template <size_t size, typename Element>
    void run(const char (&key)[size], const Element *member, size_t count) {
        put_key(key);
        writer_.StartArray();
        std::for_each(member, member + count, [this](const Element &one) { write(one); });
        writer_.EndArray();
    }

private:
    template <size_t size> void put_key(const char (&key)[size]) { writer_.Key(key, size - 1); }

    template <typename Number> void put(Number number) {
        if constexpr (std::is_signed_v<Number>) {
            writer_.Int(number);
        } else if constexpr (sizeof(Number) <= sizeof(unsigned)) {
            writer_.Uint(number);
        } else {
            writer_.Uint64(number);
        }
    }

    rapidjson::Writer<rapidjson::StringBuffer> &writer_;
};

// --- Reading -------------------------------------------------------------------------------------

// The Reader says what it finds; where that goes stands in a table for each record, made from its
// description once.

enum class Kind : uint8_t { number, real, text, allocated_text, array, bytes, block, run };

struct Table;

struct Field {
    std::string_view key;
    size_t offset;
    size_t count_offset;
    size_t capacity;      ///< of a text or of bytes
    size_t size;          ///< of a number, a count's element or a run's element
    const Table *element; ///< of a block or a run
    Kind kind;
    uint8_t count_size;
};

struct Table {
    std::vector<Field> fields;
};

template <typename Record> const Table &table_of();

class TableMaker {
public:
    TableMaker(Table &table, const void *record)
        : table_(table), record_(static_cast<const char *>(record)) {}

    void number(std::string_view key, auto &member) { add(Kind::number, key, member); }

    void real(std::string_view key, float &member) { add(Kind::real, key, member); }

    void text(std::string_view key, auto &member) {
        add(Kind::text, key, member).capacity = sizeof member;
    }

    void allocated_text(std::string_view key, char *&member, uint32_t &length) {
        set_count(add(Kind::allocated_text, key, member), length);
    }

    template <typename Number> void array(std::string_view key, Number *&member, auto &count) {
        Field &field = add(Kind::array, key, member);
        set_count(field, count);
        field.size = sizeof(Number);
    }

    void bytes(std::string_view key, auto &member, uint8_t) {
        Field &field = add(Kind::bytes, key, member);
        field.capacity = sizeof member;
        field.size = 1;
    }

    template <typename Record> void block(std::string_view key, Record &member) {
        add(Kind::block, key, member).element = &table_of<Record>();
    }

    template <typename Element> void run(std::string_view key, Element *&member, auto &count) {
        Field &field = add(Kind::run, key, member);
        set_count(field, count);
        field.size = sizeof(Element);
        field.element = &table_of<Element>();
    }

private:
    size_t offset_of(const void *member) const {
        return static_cast<size_t>(static_cast<const char *>(member) - record_);
    }

    Field &add(Kind kind, std::string_view key, const auto &member) {
        table_.fields.push_back({key, offset_of(&member), 0, 0, sizeof member, nullptr, kind, 0});
        return table_.fields.back();
    }

    void set_count(Field &field, const auto &count) {
        field.count_offset = offset_of(&count);
        field.count_size = sizeof count;
    }

    Table &table_;
    const char *record_;
};

template <typename Record> const Table &table_of() {
    static const Table table = [] {
        Table made;
        Record record{};
        describe(record, TableMaker(made, &record));
        return made;
    }();
    return table;
}

template <typename Number> void store(char *at, Number number) {
    std::memcpy(at, &number, sizeof number);
}

void store_number(char *at, uint64_t number, size_t size) {
    switch (size) {
    case 1:
        store(at, static_cast<uint8_t>(number));
        break;
    case 2:
        store(at, static_cast<uint16_t>(number));
        break;
    case 4:
        store(at, static_cast<uint32_t>(number));
        break;
    default:
        store(at, number);
    }
}

char *load_pointer(const char *at) {
    char *pointer;
    std::memcpy(&pointer, at, sizeof pointer);
    return pointer;
}

class RecordHandler {
public:
    RecordHandler(const Table &table, void *record) : root_(static_cast<char *>(record)) {
        depth_ = 0;
        frames_[0].table = &table;
    }

    bool Null() { return false; }

    bool Bool(bool) { return false; }

    bool Int(int value) { return put(static_cast<uint64_t>(value)); }

    bool Uint(unsigned value) { return put(value); }

    bool Int64(int64_t value) { return put(static_cast<uint64_t>(value)); }

    bool Uint64(uint64_t value) { return put(value); }

    bool RawNumber(const char *, rapidjson::SizeType, bool) { return false; }

    bool Double(double value) {
        const Field *field = frame().field;
        if (field != nullptr && field->kind == Kind::real) {
            store(frame().record + field->offset, static_cast<float>(value));
        }
        return true;
    }

    bool String(const char *value, rapidjson::SizeType length, bool) {
        const Field *field = frame().field;
        if (field == nullptr) {
            return true;
        }
        char *member = frame().record + field->offset;
        const std::string_view text(value, length);
        if (field->kind == Kind::text) {
            text.copy(member, field->capacity - 1);
        } else if (field->kind == Kind::allocated_text) {
            uint32_t size = 0;
            store(member, allocate_text(text, size));
            store_number(frame().record + field->count_offset, size, field->count_size);
        }
        return true;
    }

    bool Key(const char *key, rapidjson::SizeType length, bool) {
        Frame &top = frame();
        const std::vector<Field> &fields = top.table->fields;
        for (size_t i = 0; i < fields.size(); ++i) { // nearly always the next one
            if (top.next == fields.size()) {
                top.next = 0;
            }
            const Field &field = fields[top.next++];
            if (field.key.size() == length && std::memcmp(field.key.data(), key, length) == 0) {
                top.field = &field;
                return true;
            }
        }
        top.field = nullptr;
        return false; // no document here has unknown keys
    }

    bool StartObject() {
        if (depth_ == 0) {
            push(*frames_[0].table, root_);
            return true;
        }
        const Field &field = *frame().field;
        char *member = frame().record + field.offset;
        if (field.kind == Kind::run) {
            member = add(frame());
            std::memset(member, 0, field.size);
        }
        push(*field.element, member);
        return true;
    }

    bool EndObject(rapidjson::SizeType) {
        --depth_;
        return true;
    }

    bool StartArray() {
        frame().count = 0;
        frame().capacity = 0;
        return true;
    }

    bool EndArray(rapidjson::SizeType) {
        const Frame &top = frame();
        if (top.field->count_size != 0) {
            store_number(top.record + top.field->count_offset, top.count, top.field->count_size);
        }
        return true;
    }

private:
    struct Frame {
        const Table *table;
        char *record;
        const Field *field; ///< of the last key
        size_t next;        ///< the field whose key is expected
        size_t count;       ///< elements of the array in `field`, and for how many there is room
        size_t capacity;
    };

    Frame &frame() { return frames_[depth_]; }

    void push(const Table &table, char *record) {
        frames_[++depth_] = {&table, record, nullptr, 0, 0, 0};
    }

    bool put(uint64_t value) {
        Frame &top = frame();
        const Field *field = top.field;
        char *member = top.record + field->offset;
        switch (field->kind) {
        case Kind::number:
            store_number(member, value, field->size);
            return true;
        case Kind::array:
            store_number(add(top), value, field->size);
            return true;
        case Kind::bytes:
            if (top.count < field->capacity) {
                store_number(member + top.count++, value, 1);
            }
            return true;
        case Kind::real:
            store(member, static_cast<float>(value));
            return true;
        default:
            return false;
        }
    }

    static char *add(Frame &frame) {
        const Field &field = *frame.field;
        char *pointer = frame.record + field.offset;
        char *elements = load_pointer(pointer);
        if (frame.count == frame.capacity) {
            frame.capacity = frame.capacity == 0 ? 5 : 2 * frame.capacity;
            elements = static_cast<char *>(std::realloc(elements, frame.capacity * field.size));
            if (elements == nullptr) {
                fail("out of memory");
            }
            store(pointer, elements);
        }
        return elements + frame.count++ * field.size;
    }

    char *root_;
    size_t depth_;
    std::array<Frame, 8> frames_;
};

// -------------------------------------------------------------------------------------------------

template <typename Record> class RapidjsonCodec final : public Codec {
public:
    void encode(const void *record) override {
        text_.Clear();
        writer_.Reset(text_);
        ObjectWriter(writer_).write(*static_cast<const Record *>(record));
    }

    std::string_view encoded() const override { return {text_.GetString(), text_.GetSize()}; }

    void *decode(std::string_view document) override {
        auto *record = allocate<Record>(1);
        RecordHandler handler(table_, record);
        copy_.assign(document.data(), document.data() + document.size() + document_padding);
        rapidjson::InsituStringStream stream(copy_.data());
        if (!reader_.Parse<rapidjson::kParseInsituFlag>(stream, handler)) {
            fail("RapidJSON: a document cannot be read");
        }
        return record;
    }

private:
    rapidjson::StringBuffer text_;
    rapidjson::Writer<rapidjson::StringBuffer> writer_{text_};
    rapidjson::Reader reader_;
    std::vector<char> copy_;
    const Table &table_ = table_of<Record>();
};

} // namespace

std::unique_ptr<Codec> make_rapidjson(int32_t kind) {
    return make_codec<RapidjsonCodec>(kind);
}

} // namespace kvt_bench
