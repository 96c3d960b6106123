#include "gen.h"

#include "generate.h"
#include "output.h"
#include "write_text.h"

namespace kvt_tool {

ExitStatus print_samples(const GenOptions &options) {
    FabricDay day(options.seed, options.size);
    std::string text;
    for (uint64_t i = 0; i < options.count; ++i) {
        const OwnedMessage message = options.kind != nullptr
                                         ? generate(*options.kind, {options.seed, options.size, i})
                                         : day.next();
        text.clear();
        if (!add_text(message.kind(), message.record(), text)) {
            return cannot_use("the sample", "its text takes 4 GiB or more");
        }
        text.pop_back();
        print(i == 0 ? "" : "\n");
        print(text);
    }
    finish_printing();
    return all_well;
}

} // namespace kvt_tool
