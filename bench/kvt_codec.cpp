#include "kvt_codec.h"

#include "kvt/kvt_str.h"

namespace kvt_bench {

namespace {

class KvtCodec final : public Codec {
public:
    explicit KvtCodec(int32_t kind) : kind_(kind) {}

    void encode(const void *record) override { kvt_msg_to_str(kind_, record, text_.get()); }

    std::string_view encoded() const override { return text_.get(); }

    void *decode(std::string_view document) override {
        void *record = nullptr;
        return kvt_msg_from_str(0, 0, document.data(), &record) == 0 ? record : nullptr;
    }

private:
    int32_t kind_;
    std::unique_ptr<char[]> text_ = std::make_unique_for_overwrite<char[]>(text_room);
};

} // namespace

std::unique_ptr<Codec> make_kvt_str(int32_t kind) {
    return std::make_unique<KvtCodec>(kind);
}

} // namespace kvt_bench
