#include "engine/trace_lines.h"

#include <cstring>

#include "engine/log.h"
#include "log_texts.h"

namespace kvt_str {

namespace {

/// The key and its conversion. Only made for a trace, and lives as long as that.
struct ScanFormat {
    char text[128] = {};

    ScanFormat(const Row &row, const char *conversion) {
        std::memcpy(text, row.label.text, row.key_length);
        std::memcpy(text + row.key_length, conversion, std::strlen(conversion));
    }
};

/// A row's key alone. Only made for a trace, and lives as long as that.
struct Key : ScanFormat {
    explicit Key(const Row &row) : ScanFormat(row, "") {}
};

/// The first characters of a text that has no NUL. Only made for a trace, and lives as long as
/// that.
struct Excerpt {
    char text[51] = {};

    explicit Excerpt(std::string_view from) {
        const char *characters = from.data();
        for (size_t i = 0; i < from.size() && i < sizeof text - 1; ++i) {
            text[i] = characters[i];
        }
    }
};

const log_texts::ArrayTexts &texts_of(const Row &row) {
    return row.kind == RowKind::array16   ? log_texts::array16
           : row.kind == RowKind::array32 ? log_texts::array32
                                          : log_texts::array64;
}

} // namespace

void trace_element(const Row &row, uint64_t count, uint64_t value) {
    const log_texts::ArrayTexts &texts = texts_of(row);
    trace(texts.reader, texts.element, static_cast<unsigned>(count),
          static_cast<unsigned long>(value));
}

void trace_mismatch_of_array(const Row &row, const char *at, uint64_t last) {
    const log_texts::ArrayTexts &texts = texts_of(row);
    if (listens(trace_level)) {
        trace(texts.reader, texts.mismatch, at, ScanFormat(row, texts.conversion).text,
              static_cast<unsigned long>(last));
    }
}

void trace_end_of_array(const Row &row, uint64_t count, uint64_t first) {
    const log_texts::ArrayTexts &texts = texts_of(row);
    trace(texts.reader, texts.end, static_cast<unsigned>(count), static_cast<unsigned long>(first));
}

void trace_byte(uint8_t value) {
    trace(log_texts::bytes_reader, log_texts::byte_value, unsigned{value});
}

void trace_end_of_bytes(const Row &row, const char *at) {
    trace(log_texts::bytes_reader, log_texts::end_of_bytes, Key(row).text, at);
}

void trace_text(const char *text) {
    trace(log_texts::text_reader, log_texts::text_value, text);
}

void trace_text_of_another_key(const Row &row, const char *at) {
    trace(log_texts::text_reader, log_texts::text_of_another_key, Key(row).text, at);
}

void trace_joined_value(const char *text) {
    // The buffer that values are scanned into is empty again by now.
    trace(log_texts::joined_reader, log_texts::joined_value, text, "");
}

void trace_mismatch_of_joined(const Row &row, const char *at, std::string_view buffered) {
    if (listens(trace_level)) {
        trace(log_texts::joined_reader, log_texts::joined_mismatch, at,
              ScanFormat(row, log_texts::joined_conversion).text, Excerpt(buffered).text);
    }
}

void trace_end_of_joined(unsigned count, const char *text) {
    // The first character is shown with its sign, on every machine; 0 stands for an empty string.
    const long first = text != nullptr ? static_cast<signed char>(text[0]) : 0;
    trace(log_texts::joined_reader, log_texts::end_of_joined, count,
          static_cast<unsigned long>(first));
}

} // namespace kvt_str
