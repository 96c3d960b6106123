// Where in a message a value of JSON stands.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "json/json_value.h"

namespace kvt_tool {

/// A path such as "job_data.conns[3].tree_id". It is put together when it is asked for: a value
/// with which all is well costs nothing.
class JsonPath {
public:
    /// The path of a key, which is to outlive it, in an object or, for null, on its own.
    JsonPath(const JsonPath *object, std::string_view key) : around_(object), key_(key) {}

    /// The path of an element of a list.
    JsonPath(const JsonPath &list, size_t index) : around_(&list), index_(index) {}

    std::string text() const {
        const std::string before = around_ != nullptr ? around_->text() : "";
        if (key_.empty()) {
            return before + "[" + std::to_string(index_) + "]";
        }
        return before + (around_ != nullptr ? "." : "") + std::string(key_);
    }

    /// Refuses a message for the value that stands here.
    [[noreturn]] void fail(const JsonValue &value, const std::string &what) const {
        throw JsonProblem{value.source.data(), text() + ": " + what};
    }

private:
    const JsonPath *around_ = nullptr;
    std::string_view key_; ///< empty for an element
    size_t index_ = 0;
};

} // namespace kvt_tool
