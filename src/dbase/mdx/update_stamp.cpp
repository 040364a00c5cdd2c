// Decodes and encodes the stamp in the header of an index.
#include "dbase/mdx/update_stamp.h"

#include <algorithm>

#include "dbase/system/bytes.h"

namespace dbase {

namespace {

constexpr std::uint32_t halfChanged = 2; // of the mark

} // namespace

UpdateStamp decodeStamp(const StampBytes& bytes) {
    UpdateStamp stamp;
    stamp.present = std::equal(bytes.begin(), bytes.begin() + mdx::stampMagicSize, mdx::stampMagic);
    if (stamp.present) {
        const std::uint32_t mark = load32(bytes.data() + mdx::stampMark);
        stamp.inUpdate = mark != 0;
        stamp.isHalfChanged = mark == halfChanged;
        stamp.records = load32(bytes.data() + mdx::stampRecords);
        stamp.counter = load64(bytes.data() + mdx::stampCounter);
        stamp.session = load64(bytes.data() + mdx::stampSession);
    }
    return stamp;
}

StampBytes encodeStamp(const UpdateStamp& stamp) {
    StampBytes bytes{};
    std::copy_n(mdx::stampMagic, mdx::stampMagicSize, bytes.begin());
    store32(bytes.data() + mdx::stampMark, stamp.inUpdate ? (stamp.isHalfChanged ? halfChanged : 1) : 0);
    store32(bytes.data() + mdx::stampRecords, stamp.records);
    store64(bytes.data() + mdx::stampCounter, stamp.counter);
    store64(bytes.data() + mdx::stampSession, stamp.session);
    return bytes;
}

} // namespace dbase
