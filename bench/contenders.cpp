#include "contenders.h"

#include <set>
#include <string>
#include <vector>

#include "kvt_codec.h"
#include "nlohmann_codec.h"
#include "protobuf_codec.h"
#include "rapidjson_codec.h"
#include "simdjson_codec.h"
#include "stdio_codec.h"

namespace kvt_bench {

namespace {

std::vector<Contender> make_contenders() {
    constexpr bool yes = true;
    constexpr bool no = false;
    std::vector<Contender> all = {
        // name, maker, encodes, decodes, writes_text
        {"kvt_str", make_kvt_str, yes, yes, yes},
        {"sprintf", make_stdio_line, yes, no, yes},
        {"sscanf_line", make_stdio_line, no, yes, yes},
        {"sscanf_rest", make_stdio_rest, no, yes, yes},
        {"simdjson", make_simdjson, no, yes, no},
        {"simdjson_avx2", make_simdjson_avx2, no, yes, no},
        {"rapidjson", make_rapidjson, yes, yes, no},
        {"nlohmann", make_nlohmann, yes, yes, no},
        {"protobuf", make_protobuf, yes, yes, no},
        {"protobuf_text", make_protobuf_text, yes, yes, no},
    };
    if (!__builtin_cpu_supports("avx2")) {
        std::erase_if(all, [](const Contender &one) { return one.make == make_simdjson_avx2; });
    }
    return all;
}

} // namespace

std::span<const Contender> contenders() {
    static const std::vector<Contender> all = make_contenders();
    return all;
}

const Contender &contender(const char *name) {
    for (const Contender &one : contenders()) {
        if (one.name == std::string_view(name)) {
            return one;
        }
    }
    fail("no contender has the name", name);
}

void verify(const Contender &contender, const Message &message, const char *case_name) {
    static std::set<std::string> verified;
    const std::string which = std::string(contender.name) + " for " + case_name;
    if (verified.contains(which)) {
        return;
    }
    const auto codec = contender.make(message.kind());
    const Document document = make_document(*codec, message);
    const std::string text = message.text();
    if (contender.writes_text && document.view() != text) {
        fail("another text than kvt_str's is written by", which.c_str());
    }
    Message read(message.kind(), codec->decode(document.view()));
    if (read.record() == nullptr || text_of_read(read) != text) {
        fail("another record than was written is read by", which.c_str());
    }
    verified.insert(which);
}

Document make_document(Codec &codec, const Message &message) {
    codec.encode(message.record());
    return Document(codec.encoded());
}

} // namespace kvt_bench
