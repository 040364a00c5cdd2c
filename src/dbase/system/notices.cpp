// Notices to users, through a function that a host may exchange.
#include "dbase/system/notices.h"

#include <cstdio>
#include <utility>

#include "dbase/system/notify.h"

namespace dbase {

namespace {

NoticeHandler& handler() {
    static NoticeHandler function;
    return function;
}

} // namespace

NoticeHandler setNoticeHandler(NoticeHandler other) { return std::exchange(handler(), std::move(other)); }

void notify(const std::string& text) noexcept {
    try {
        if (handler()) {
            handler()(text);
        } else {
            std::fprintf(stderr, "%s\n", text.c_str());
        }
    } catch (...) {
        // A notice that cannot be shown must not stop the work that it tells of.
    }
}

} // namespace dbase
