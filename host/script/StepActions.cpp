#include "host/script/StepActions.h"

#include <QPixmap>
#include <QStringList>
#include <QWidget>
#include <utility>

#include "host/script/ObjectText.h"
#include "services/TagProperty.h"

namespace host::script {
namespace {

/// A class as its users call it, without the namespace around it.
QString className(const QObject& object) {
    return QString::fromLatin1(object.metaObject()->className()).section(QStringLiteral("::"), -1);
}

} // namespace

StepActions::StepActions(const ObjectLookup& lookup, ScriptedMessages& messages, Printer print)
    : lookup_(lookup), messages_(messages), print_(std::move(print)), input_(lookup) {}

Actions StepActions::of(const Step& step) const {
    switch (step.verb) {
    case Verb::Type:
        return input_.type(step.object, step.argument);
    case Verb::Clear:
        return input_.clear(step.object);
    case Verb::Key:
        return input_.key(step.object, keyStroke(step.argument).value_or(KeyStroke{}));
    case Verb::Click:
        return input_.click(step.object);
    case Verb::DoubleClick:
        return input_.doubleClick(step.object);
    case Verb::Choose:
        return input_.choose(step.object, step.argument);
    case Verb::Answer:
        return {[this, step] {
            messages_.answer(step.argument);
            return Outcome::done();
        }};
    case Verb::Show:
        return {[this, step] { return show(step.object); }};
    case Verb::Window:
        return {[this] { return showWindow(); }};
    case Verb::Messages:
        return {[this] { return showMessages(); }};
    case Verb::Capture:
        break;
    }
    return {[this, step] { return capture(step.argument); }};
}

Outcome StepActions::show(const QString& name) const {
    const QObject* object = lookup_.find(name);
    if (!object)
        return Outcome::failed(QStringLiteral("no hay ningún objeto «%1»").arg(name));
    print_(describe(*object));
    return Outcome::done();
}

Outcome StepActions::showWindow() const {
    const QWidget& window = *lookup_.activeWindow();
    const QStringList columns{className(window), window.windowTitle(),
                              QString::number(ambrel::tagOf(window))};
    print_(columns.join(QLatin1Char('\t')));
    return Outcome::done();
}

Outcome StepActions::showMessages() const {
    for (const QString& message : messages_.takeShown())
        print_(message);
    return Outcome::done();
}

Outcome StepActions::capture(const QString& file) const {
    if (!lookup_.activeWindow()->grab().save(file, "PNG"))
        return Outcome::failed(QStringLiteral("no se puede escribir la imagen «%1»").arg(file));
    return Outcome::done();
}

} // namespace host::script
