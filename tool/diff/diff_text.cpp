#include "diff/diff_text.h"

#include "model/identity.h"

namespace kvt_tool {

namespace {

using What = Difference::What;

/// A line in the colour of what it says.
std::string coloured(What what, std::string line, const DiffForm &form) {
    if (!form.colours) {
        return line;
    }
    const char *colour = what == What::removed ? "31" : what == What::added ? "32" : "33";
    return std::string("\x1B[") + colour + "m" + line + "\x1B[0m";
}

/// A value that has changed, as it is in both records.
std::string changed_text(const Difference &difference, GuidForm guids) {
    const Row &row = *difference.row;
    const auto shown = [&](const DifferencePlace &place) {
        return place.index.has_value()
                   ? shown_number(row, number_at(elements_of(row, place.record), *place.index),
                                  guids)
                   : shown_value(row, place.record, guids);
    };
    std::string before = shown(difference.a);
    std::string after = shown(difference.b);
    if (before == after) { // floats, whose difference lies beyond the digits that are written
        before = exact_real(real_of(row, difference.a.record));
        after = exact_real(real_of(row, difference.b.record));
    }
    return difference.a.path + ": " + before + " -> " + after;
}

/// An element that only one record has; of a list of records only its place.
std::string one_sided_text(const Difference &difference, GuidForm guids) {
    const Row &row = *difference.row;
    const DifferencePlace &place = difference.place();
    std::string text = (difference.what == What::removed ? "- " : "+ ") + place.path;
    if (row.element == nullptr) {
        text += ": " +
                shown_number(row, number_at(elements_of(row, place.record), *place.index), guids);
    }
    return text;
}

/// What identifies the elements that a difference lies in, in parentheses. Of a record that only
/// one side has something is told in any case.
std::string names_of(const Difference &difference, GuidForm guids) {
    const bool is_record = difference.row->element != nullptr && difference.what != What::order;
    std::string names;
    for (const Enclosing &element : difference.within) {
        const Record &table = *element.list->element;
        std::string name = identity_text(table, element.record, guids);
        if (name.empty() && is_record && &element == &difference.within.back()) {
            name = hint_text(table, element.record, guids);
        }
        if (!name.empty()) {
            names += (names.empty() ? " (" : "; ") + name;
        }
    }
    return names.empty() ? names : names + ")";
}

std::string plain_text(const Difference &difference, GuidForm guids) {
    switch (difference.what) {
    case What::changed:
        return changed_text(difference, guids);
    case What::removed:
    case What::added:
        return one_sided_text(difference, guids);
    case What::order:
        return difference.a.path + ": order differs";
    }
    return {};
}

std::string plain_text(const UnreadDifference &difference) {
    if (difference.what == What::order) {
        return "lines that are not read: order differs";
    }
    const UnreadLine &line = difference.a != nullptr ? *difference.a : *difference.b;
    const std::string place = "line " + std::to_string(line.line) + ", not read: ";
    switch (difference.what) {
    case What::removed:
        return "- " + place + line.text;
    case What::added:
        return "+ " + place + line.text;
    default:
        const auto [key, before] = key_and_value(line);
        return place + key + ": " + before + " -> " + key_and_value(*difference.b).value;
    }
}

std::string place_of(const Message &message) {
    return *message.input + ":" + std::to_string(message.first_line);
}

std::string name_of(const Message &message, const DiffForm &form) {
    const MessageKind &kind = message.kind();
    const std::string identity = identity_text(*kind.record, message.record(), form.names);
    return identity.empty() ? kind.name : kind.name + (" " + identity);
}

std::string only_text(What what, const Message &message, const DiffForm &form) {
    const std::string line = "only in " + place_of(message) + ": " + name_of(message, form);
    return coloured(what, line, form) + "\n";
}

std::string counted(uint64_t count, const char *what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace

std::string difference_text(const Difference &difference, const DiffForm &form) {
    return coloured(difference.what,
                    plain_text(difference, form.values) + names_of(difference, form.names), form);
}

std::string difference_text(const UnreadDifference &difference, const DiffForm &form) {
    return coloured(difference.what, plain_text(difference), form);
}

std::string difference_text(const MessageDifference &difference, const DiffForm &form) {
    if (difference.b == nullptr) {
        return only_text(What::removed, *difference.a, form);
    }
    if (difference.a == nullptr) {
        return only_text(What::added, *difference.b, form);
    }
    std::string text = name_of(*difference.a, form) + ": " + place_of(*difference.a) + ", " +
                       place_of(*difference.b);
    if (form.brief) {
        return text + ": " + counted(difference.count(), "difference") + "\n";
    }
    text += "\n";
    for (const Difference &of_pair : difference.differences) {
        text += "  " + difference_text(of_pair, form) + "\n";
    }
    for (const UnreadDifference &of_pair : difference.unread) {
        text += "  " + difference_text(of_pair, form) + "\n";
    }
    return text;
}

std::string summary_text(const DiffSummary &summary, const std::string &a, const std::string &b) {
    std::string text = "messages: ";
    if (summary.differing != 0) {
        text += std::to_string(summary.differing) +
                (summary.differing == 1 ? " differs in " : " differ in ") +
                counted(summary.differences, "place") + ", ";
    }
    if (summary.only_in_a != 0) {
        text += std::to_string(summary.only_in_a) + " only in " + a + ", ";
    }
    if (summary.only_in_b != 0) {
        text += std::to_string(summary.only_in_b) + " only in " + b + ", ";
    }
    return text + std::to_string(summary.equal) + " equal\n";
}

} // namespace kvt_tool
