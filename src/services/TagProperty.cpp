// The dynamic property "Tag".
#include "services/TagProperty.h"

#include <QDynamicPropertyChangeEvent>
#include <QVariant>
#include <utility>

#include "services/EventGuard.h"

namespace ambrel {

int tagOf(const QObject& object) { return object.property(tagProperty).toInt(); }

void setTag(QObject& object, int tag) { object.setProperty(tagProperty, tag); }

TagWatch::TagWatch(QObject& object, Handler handler) : QObject(&object), handler_(std::move(handler)) {
    object.installEventFilter(this);
}

bool TagWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::DynamicPropertyChange ||
        static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName() != tagProperty) {
        return false;
    }
    const Handler handler = handler_; // the handler may delete the object, and this one with it
    const int tag = tagOf(*watched);
    runGuarded([&] { handler(tag); });
    return false;
}

} // namespace ambrel
