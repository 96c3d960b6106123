#include "diff/diff_text.h"

#include "model/identity.h"

namespace kvt_tool {

namespace {

using What = Difference::What;

/// A line in the colour of what it says.
std::string coloured(What what, std::string line, bool colours) {
    if (!colours) {
        return line;
    }
    const char *colour = what == What::removed ? "31" : what == What::added ? "32" : "33";
    return std::string("\x1B[") + colour + "m" + line + "\x1B[0m";
}

std::string one_sided_text(const Difference &difference, const char *sign,
                           const std::string &value) {
    std::string text = sign + difference.path;
    if (!value.empty()) {
        text += ": " + value;
    }
    if (!difference.identity.empty()) {
        text += " (" + difference.identity + ")";
    }
    return text;
}

std::string plain_text(const Difference &difference) {
    switch (difference.what) {
    case What::changed:
        return difference.path + ": " + difference.before + " -> " + difference.after;
    case What::removed:
        return one_sided_text(difference, "- ", difference.before);
    case What::added:
        return one_sided_text(difference, "+ ", difference.after);
    case What::order:
        return difference.path + ": order differs";
    }
    return {};
}

std::string place_of(const Message &message) {
    return *message.input + ":" + std::to_string(message.first_line);
}

std::string name_of(const Message &message) {
    const std::string identity = identity_text(*message.kind->record, message.record.get());
    return identity.empty() ? message.kind->name : message.kind->name + (" " + identity);
}

std::string only_text(What what, const Message &message, bool colours) {
    return coloured(what, "only in " + place_of(message) + ": " + name_of(message), colours) + "\n";
}

} // namespace

std::string difference_text(const Difference &difference, bool colours) {
    return coloured(difference.what, plain_text(difference), colours);
}

std::string difference_text(const MessageDifference &difference, bool colours) {
    if (difference.b == nullptr) {
        return only_text(What::removed, *difference.a, colours);
    }
    if (difference.a == nullptr) {
        return only_text(What::added, *difference.b, colours);
    }
    std::string text = name_of(*difference.a) + ": " + place_of(*difference.a) + ", " +
                       place_of(*difference.b) + "\n";
    for (const Difference &of_pair : difference.differences) {
        text += "  " + difference_text(of_pair, colours) + "\n";
    }
    return text;
}

} // namespace kvt_tool
