// What the tables of the records say, for people.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/row.h"
#include "message_kinds.h"

namespace kvt_tool {

using kvt_str::MessageKind;
using kvt_str::Record;
using kvt_str::Row;

/// All kinds: a line with value, name, block and record, and one with the purpose if that is
/// wanted.
std::string list_kinds(bool with_purposes);

/// A kind: its purpose, and every key of its block and of the blocks within it, in the order in
/// which they are written, with value, default and when it is written. A block that comes
/// again is shown once.
std::string describe_kind(const MessageKind &kind);

/// The keys of a record's block in the same way.
std::string describe_record(const Record &table);

/// What a kind is for, in one line without a newline.
std::string_view purpose_of(const MessageKind &kind);

/// The kind of a name or of the name of a block, in upper or lower case; null for any other word.
const MessageKind *kind_of_word(std::string_view word);

/// The names of kinds that may be meant by a word: those whose name or block has it in it, at most
/// four; otherwise the nearest one, if any is near.
std::vector<std::string> kinds_meant_by(std::string_view word);

/// The end of a sentence about an unknown word: which names may be meant.
std::string suggestion_of(const std::vector<std::string> &names);

/// What is wrong with a word that names no kind, with those that may be meant.
std::string unknown_kind(std::string_view word);

// --- Facts of single rows, which the documentation shows too -------------------------------------

/// How keys and records are named in a text.
struct Notation {
    std::string (*key)(std::string_view key);
    std::string (*record)(const Record &record);
};

/// What stands after the key, and what ends or counts a list.
std::string type_of(const Record &table, const Row &row, const Notation &notation);

/// The same in plain words, and which list or text a number counts.
std::string value_of(const Record &table, const Row &row);

/// What a missing key stands for.
std::string default_of(const Row &row);

/// When the writer writes it.
const char *written(const Row &row);

} // namespace kvt_tool
