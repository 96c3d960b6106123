// kvt json and kvt from-json: messages to JSON and back.
#pragma once

#include <string>
#include <vector>

#include "problems.h"
#include "to_json.h"

namespace kvt_tool {

struct JsonOptions {
    JsonForm form;
    bool lines = false; ///< one message on a line; otherwise one list, for people
    unsigned threads = 1;
};

/// Prints the messages of all inputs as JSON.
ExitStatus convert_to_json(const std::vector<std::string> &inputs, const JsonOptions &options);

/// Prints the messages of all inputs, which are JSON, in the text form.
ExitStatus convert_from_json(const std::vector<std::string> &inputs, unsigned threads);

/// Prints a JSON Schema of what convert_to_json prints for a message.
ExitStatus print_json_schema();

} // namespace kvt_tool
