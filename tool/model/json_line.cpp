#include "model/json_line.h"

#include "model/printable.h"

namespace kvt_tool {

std::string json_line(const nlohmann::ordered_json &value) {
    using Replace = nlohmann::ordered_json::error_handler_t;
    return printable_json(value.dump(-1, ' ', false, Replace::replace)) + "\n";
}

} // namespace kvt_tool
