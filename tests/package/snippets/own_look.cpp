#include <QMainWindow>
#include <QMessageBox>
#include <QStatusBar>

#include "package/AmbCodPostales.h"

// While one exists, messages, progress and focus look as the host wants. Destroy it before its window.
class OwnLook {
public:
    explicit OwnLook(QMainWindow& window) {
        ambrel::setMessageShower([&window](const ambrel::MessageBox& box) {
            if (box.kind != ambrel::MessageKind::Question) {
                QMessageBox::information(box.owner ? box.owner.data() : &window, box.title, box.text);
                return ambrel::MessageAnswer::Accept;
            }
            const auto answer = QMessageBox::question(&window, box.title, box.text + '\n' + box.line);
            return answer == QMessageBox::Yes ? ambrel::MessageAnswer::Yes : ambrel::MessageAnswer::No;
        });
        const auto tell = [&window](const QString& text) { window.statusBar()->showMessage(text); };
        ambrel::setProgressDisplay({.show =
                                        [&window, tell](const QString& text, QWidget*) {
                                            tell(text);
                                            return ambrel::ProgressWindow(window.statusBar());
                                        },
                                    .change = [tell](const QString& text, QWidget&) { tell(text); },
                                    .close = [tell](QWidget&) { tell({}); }});
        ambrel::setFocusColouring([](QWidget& control, bool focused) {
            control.setStyleSheet(focused ? "border-bottom: 2px solid palette(highlight)" : QString());
        });
    }
    ~OwnLook() {
        ambrel::setMessageShower({});
        ambrel::setProgressDisplay(ambrel::windowProgressDisplay());
        ambrel::setFocusColouring({});
    }
    OwnLook(const OwnLook&) = delete;
    OwnLook& operator=(const OwnLook&) = delete;
};

void showWithOwnLook() {
    QMainWindow window;
    const OwnLook look(window);
    window.show();
}
