// Notices of the table engine, shown to the user.
#pragma once

namespace ambrel {

/// From now on each notice is an information box, shown as soon as the event loop runs; the package begins
/// with that. A host that calls dbase::setNoticeHandler() shows them itself.
void showNotices();

} // namespace ambrel
