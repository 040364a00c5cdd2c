// The integer Tag of a host's edit boxes and of dialogs: a dynamic property, so that a form made in Designer
// needs no special class. 0 on an object that never had one.
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

/// Tells when an object's Tag gets another value, whoever sets it. Lives until it is deleted or its object,
/// which owns it.
class AMBREL_EXPORT TagWatch : public QObject {
public:
    /// Gets the new value.
    using Handler = std::function<void(int tag)>;

    /// The object owns it.
    TagWatch(QObject& object, Handler handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handler handler_;
};

} // namespace ambrel
