// Today's date in three bytes.
#include "dbase/dbf/dates.h"

#include <ctime>

namespace dbase {

void encodeHeaderDate(char* bytes) {
    // Converts at most once a minute: a time zone lookup costs more than writing a record.
    static thread_local std::time_t known = 0;
    static thread_local char date[3];
    const std::time_t now = std::time(nullptr);
    if (known == 0 || now / 60 != known / 60) {
        std::tm parts{};
        localtime_r(&now, &parts);
        date[0] = static_cast<char>(parts.tm_year);
        date[1] = static_cast<char>(parts.tm_mon + 1);
        date[2] = static_cast<char>(parts.tm_mday);
        known = now;
    }
    for (int i = 0; i < 3; ++i) {
        bytes[i] = date[i];
    }
}

HeaderCounts todaysCounts() {
    char date[3];
    encodeHeaderDate(date);
    return {0, static_cast<std::uint8_t>(date[0]), static_cast<std::uint8_t>(date[1]),
            static_cast<std::uint8_t>(date[2])};
}

} // namespace dbase
