// Plays the steps of a test in modal dialogs.
#include "support/ModalScript.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <stdexcept>
#include <utility>

namespace ambrel::test {

ModalScript::ModalScript() { qApp->installEventFilter(this); }

ModalScript::~ModalScript() {
    for (const Expected& missing : expected_) {
        ADD_FAILURE() << "This dialog never came: " << missing.className;
    }
}

void ModalScript::expect(std::string className, Step step) {
    expected_.push_back({std::move(className), std::move(step)});
}

bool ModalScript::eventFilter(QObject* watched, QEvent* event) {
    auto* dialog = qobject_cast<QDialog*>(watched);
    if (event->type() == QEvent::Show && dialog && dialog->isModal()) {
        QTimer::singleShot(0, dialog, [this, script = QPointer<QObject>(this), dialog] {
            if (script) {
                play(*dialog);
            }
        });
    }
    return false;
}

void ModalScript::play(QDialog& dialog) {
    const std::string name = dialog.metaObject()->className();
    if (expected_.empty() || expected_.front().className != name) {
        ADD_FAILURE() << "Unexpected dialog: " << name;
        dialog.done(0);
        return;
    }
    const Step step = std::move(expected_.front().step);
    expected_.pop_front();
    // Asks the widget, because its window handle already counts as active when its parent's is.
    if (!QTest::qWaitFor([&dialog] { return dialog.isActiveWindow(); })) {
        ADD_FAILURE() << name << " does not become active.";
    }
    const QPointer<QDialog> alive = &dialog;
    try {
        step(dialog);
    } catch (const std::exception& error) {
        ADD_FAILURE() << "In " << name << ": " << error.what();
    }
    if (alive && alive->isVisible()) {
        ADD_FAILURE() << name << " is still open when its step is done.";
        alive->done(0);
    }
}

void failMissingChild(const QObject& dialog, const char* name) {
    throw std::runtime_error(std::string(dialog.metaObject()->className()) + " has no such child: " + name);
}

} // namespace ambrel::test
