// What the tables say of single keys and blocks, wherever these stand in messages.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "model/field_path.h"

namespace kvt_tool {

/// The fields that a word of the command line names: by a path, or by the last keys of one, such
/// as `quota` or `qpc_opts.sl`. What is wrong with a word that names none.
std::variant<std::vector<FieldPlace>, std::string> places_of_word(std::string_view word);

/// A line for each place, with value, default and when it is written; after that, the keys of each
/// block among them.
std::string describe_places(const std::vector<FieldPlace> &places);

} // namespace kvt_tool
