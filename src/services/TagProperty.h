// The integer Tag of a host's edit boxes and of dialogs: a dynamic property, so that a form made in Designer
// needs no special class. 0 for an object on which it was never set.
#pragma once

#include <QObject>
#include <functional>

#include "AmbrelExport.h"

namespace ambrel {

/// Name of the property.
inline constexpr const char* tagProperty = "Tag";

/// An object's Tag.
[[nodiscard]] AMBREL_EXPORT int tagOf(const QObject& object);
AMBREL_EXPORT void setTag(QObject& object, int tag);

/// Reports when an object's Tag changes, whatever sets it. Lives until it or its object, which owns it, is
/// deleted.
class AMBREL_EXPORT TagWatch : public QObject {
public:
    /// Receives the new value.
    using Handler = std::function<void(int tag)>;

    /// Owned by the object.
    TagWatch(QObject& object, Handler handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handler handler_;
};

} // namespace ambrel
