#include "io/unread.h"

#include "io/input.h"

namespace kvt_tool {

void Unread::note(const Unit &unit, bool read) {
    const size_t unread =
        read ? 0 : check_unit(unit, unread_findings(), FindingForm::line, findings_);
    const size_t others = check_unit(
        unit, findings_from(KVT_SEVERITY_LOST) & ~(read ? FindingKinds() : unread_findings()),
        // When nothing else says what is left out, one of these does.
        read || unread != 0 ? FindingForm::none : FindingForm::line, findings_);
    if (!read && unread + others == 0) {
        words_ += unit.input + ":" + std::to_string(unit.first_line) + ": out of memory\n";
    }
}

void UnreadOfInput::begin() {
    findings_.begin();
    before_ = findings_.count();
    status_ = all_well;
}

void UnreadOfInput::take(const Unread &unread) {
    const std::string words = findings_.keep(unread.findings_) + unread.words_;
    if (!words.empty()) {
        say(words);
        status_ = worse(status_, unread.words_.empty() ? found_problems : could_not_work);
    }
}

ExitStatus UnreadOfInput::end(const std::string &input) {
    const size_t count = findings_.count() - before_;
    if (count != 0) {
        const std::string command = input == standard_input ? "kvt check" : "kvt check " + input;
        say(shown_name(input) + ": " + std::to_string(count) +
            (count == 1 ? " finding: \"" : " findings: \"") + command + "\" shows " +
            (count == 1 ? "it" : "them") + "\n");
    }
    return status_;
}

} // namespace kvt_tool
