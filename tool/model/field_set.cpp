#include "model/field_set.h"

namespace kvt_tool {

void FieldSet::add(std::span<const FieldPath> paths, const MessageKind &kind, const void *record) {
    for (const FieldPath &path : paths) {
        path.each(kind, record, [this](const FoundField &found) {
            fields_.insert({found.row, found.record, found.index});
        });
    }
}

} // namespace kvt_tool
