// The actions of script steps.
#include "host/script/StepActions.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QStringList>
#include <QWidget>
#include <cerrno>
#include <fstream>
#include <utility>
#include <vector>

#include "dbase/system/system_reason.h"
#include "host/script/ObjectText.h"
#include "host/script/ScriptParser.h"
#include "services/TagProperty.h"

namespace host::script {
namespace {

constexpr int restMilliseconds = 100; // a window without changes for this long is finished

/// The name of a class without its namespace.
QString className(const QObject& object) {
    return QString::fromLatin1(object.metaObject()->className()).section(QStringLiteral("::"), -1);
}

/// The window, with the open list of suggestions: a window of its own, which may reach beyond it.
QImage pictureOf(QWidget& window) {
    const QPixmap whole = window.grab();
    QRect room(window.mapToGlobal(QPoint(0, 0)), window.size());
    std::vector<QWidget*> above;
    for (QWidget* const other : QApplication::topLevelWidgets()) {
        if (other->isVisible() && other->windowType() == Qt::ToolTip && other->parentWidget() == &window) {
            above.push_back(other);
            room |= other->geometry();
        }
    }
    if (above.empty()) {
        return whole.toImage();
    }
    QImage picture(room.size() * whole.devicePixelRatio(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(whole.devicePixelRatio());
    picture.fill(window.palette().color(QPalette::Window));
    QPainter painter(&picture);
    painter.drawPixmap(window.mapToGlobal(QPoint(0, 0)) - room.topLeft(), whole);
    for (QWidget* const other : above) {
        painter.drawPixmap(other->pos() - room.topLeft(), other->grab());
    }
    return picture;
}

/// Writes a picture. Returns why it could not be written; empty when it was.
QString write(const QImage& picture, const QString& file) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    errno = 0;
    std::ofstream stream(file.toStdString(), std::ios::binary);
    stream.write(bytes.constData(), bytes.size());
    stream.close();
    return stream ? QString() : QString::fromStdString(dbase::systemReason(errno));
}

} // namespace

StepActions::StepActions(const ObjectLookup& lookup, ScriptedMessages& messages, Printer print)
    : lookup_(lookup), messages_(messages), print_(std::move(print)), input_(lookup) {}

Actions StepActions::of(const Step& step) const {
    switch (step.verb) {
    case Verb::Type:
        return input_.type(step.object, step.argument);
    case Verb::Paste:
        return input_.paste(step.object, step.argument);
    case Verb::Clear:
        return input_.clear(step.object);
    case Verb::Key:
        return input_.key(step.object, keyStroke(step.argument).value_or(KeyStroke{}));
    case Verb::Click:
        return input_.click(step.object);
    case Verb::DoubleClick:
        return input_.doubleClick(step.object);
    case Verb::ClickTitle:
        return input_.clickTitle(step.object, step.argument.toInt());
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
    case Verb::Resize:
        return {[this, step] { return resize(step.argument); }};
    case Verb::Capture:
        break;
    }
    return {capture(step.argument)};
}

Outcome StepActions::show(const QString& name) const {
    const QObject* object = lookup_.find(name);
    if (!object) {
        return Outcome::failed(reasonNotFound(name));
    }
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
    for (const QString& message : messages_.takeShown()) {
        print_(message);
    }
    return Outcome::done();
}

Outcome StepActions::resize(const QString& size) const {
    lookup_.activeWindow()->resize(sizeOf(size).value_or(QSize()));
    return Outcome::done();
}

Action StepActions::capture(const QString& file) const {
    // Grids read their rows, and windows find their place, a little later: wait until the picture stays.
    return [this, file, before = QImage(), since = QElapsedTimer()]() mutable {
        QWidget& window = *lookup_.activeWindow();
        if (!window.isActiveWindow()) {
            window.activateWindow();
            return Outcome::notYet(QStringLiteral("la ventana «%1» no se activa").arg(window.windowTitle()));
        }
        const auto notYet =
            Outcome::notYet(QStringLiteral("la ventana «%1» no deja de moverse").arg(window.windowTitle()));
        if (since.isValid() && !since.hasExpired(restMilliseconds)) {
            return notYet;
        }
        const QImage picture = pictureOf(window);
        if (picture != std::exchange(before, picture)) {
            since.start();
            return notYet;
        }
        if (const QString reason = write(picture, file); !reason.isEmpty()) {
            return Outcome::failed(
                QStringLiteral("no se puede escribir la imagen «%1»: %2").arg(file, reason));
        }
        return Outcome::done();
    };
}

} // namespace host::script
