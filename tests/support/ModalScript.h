// Modal dialogs in tests: the steps for them are given beforehand, in the order in which the dialogs come.
#pragma once

#include <QDialog>
#include <QObject>
#include <deque>
#include <functional>
#include <string>

namespace ambrel::test {

/// While it exists, each modal dialog that is shown gets the next step, once it is the active window. A
/// dialog that no step expects, or of another class, fails the test and is closed, as is one that is still
/// open when its step is done; a step whose dialog never came fails the test. A step may open further
/// dialogs.
class ModalScript : public QObject {
public:
    using Step = std::function<void(QDialog& dialog)>;

    ModalScript();
    ~ModalScript() override;

    /// `className` as in the sources, such as "TFMunicipiLista".
    void expect(std::string className, Step step);
    [[nodiscard]] bool isDone() const { return expected_.empty(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Expected {
        std::string className;
        Step step;
    };
    void play(QDialog& dialog);

    std::deque<Expected> expected_;
};

/// The child of a dialog with this object name; fails the test (and throws) when there is none or it is of
/// another class.
template<class Widget>
Widget& child(const QObject& dialog, const char* name);

[[noreturn]] void failMissingChild(const QObject& dialog, const char* name);

template<class Widget>
Widget& child(const QObject& dialog, const char* name) {
    if (auto* found = dialog.findChild<Widget*>(QLatin1String(name))) {
        return *found;
    }
    failMissingChild(dialog, name);
}

} // namespace ambrel::test
