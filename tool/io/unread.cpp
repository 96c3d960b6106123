#include "io/unread.h"

namespace kvt_tool {

FindingKinds unread_findings() {
    FindingKinds kinds;
    for (const kvt_finding_kind kind :
         {KVT_FINDING_NO_MESSAGE, KVT_FINDING_BYTE_ORDER_MARK, KVT_FINDING_BEFORE_MESSAGE,
          KVT_FINDING_OUTSIDE, KVT_FINDING_NUL, KVT_FINDING_NO_TYPE, KVT_FINDING_UNKNOWN_KIND,
          KVT_FINDING_NO_RECORD, KVT_FINDING_NOT_CLOSED, KVT_FINDING_EXTRA_BRACE}) {
        kinds.set(kind);
    }
    return kinds;
}

void Unread::note(const Unit &unit, bool read) {
    if (!read && check_unit(unit, unread_findings(), FindingForm::line, findings_) == 0) {
        // Another finding says it, such as a brace in a text: whatever it is, nothing is silent.
        if (check_unit(unit, findings_from(KVT_SEVERITY_LOST), FindingForm::line, findings_) == 0) {
            words_ += unit.input + ":" + std::to_string(unit.first_line) + ": out of memory\n";
        }
    }
}

void UnreadOfInput::begin() {
    findings_.begin();
    status_ = all_well;
}

void UnreadOfInput::take(const Unread &unread) {
    const std::string words = findings_.keep(unread.findings_) + unread.words_;
    if (!words.empty()) {
        say(words);
        status_ = unread.words_.empty() ? worse(status_, found_problems) : could_not_work;
    }
}

} // namespace kvt_tool
