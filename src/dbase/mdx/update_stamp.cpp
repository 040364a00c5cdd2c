// Decodes and encodes the stamp in the header of an index.
#include "dbase/mdx/update_stamp.h"

#include <algorithm>

#include "dbase/system/bytes.h"

namespace dbase {

UpdateStamp decodeStamp(const StampBytes& bytes) {
    UpdateStamp stamp;
    stamp.present = std::equal(bytes.begin(), bytes.begin() + mdx::stampMagicSize, mdx::stampMagic);
    if (stamp.present) {
        stamp.inUpdate = load32(bytes.data() + mdx::stampMark) != 0;
        stamp.records = load32(bytes.data() + mdx::stampRecords);
        stamp.counter = load64(bytes.data() + mdx::stampCounter);
        stamp.session = load64(bytes.data() + mdx::stampSession);
    }
    return stamp;
}

StampBytes encodeStamp(const UpdateStamp& stamp) {
    StampBytes bytes{};
    std::copy_n(mdx::stampMagic, mdx::stampMagicSize, bytes.begin());
    store32(bytes.data() + mdx::stampMark, stamp.inUpdate ? 1 : 0);
    store32(bytes.data() + mdx::stampRecords, stamp.records);
    store64(bytes.data() + mdx::stampCounter, stamp.counter);
    store64(bytes.data() + mdx::stampSession, stamp.session);
    return bytes;
}

} // namespace dbase
