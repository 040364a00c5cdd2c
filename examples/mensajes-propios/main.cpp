// A host that shows the package's messages, progress and focus in its own way. Without a screen it tests
// itself.
#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QStatusBar>
#include <cstdio>
#include <exception>

#include "package/AmbCodPostales.h"

namespace {

/// Puts notices into the status bar and asks questions in a box of the host's own.
ambrel::MessageShower messagesOf(QMainWindow& window) {
    return [&window](const ambrel::MessageBox& box) {
        if (box.kind != ambrel::MessageKind::Question) {
            window.statusBar()->showMessage(box.title + ": " + box.text);
            return ambrel::MessageAnswer::Accept;
        }
        // Not on the stack: its owner may be destroyed while the user thinks, and takes it along.
        const QPointer question =
            new QMessageBox(QMessageBox::Question, box.title, box.text, QMessageBox::Yes | QMessageBox::No,
                            box.owner ? box.owner.data() : &window);
        question->setInformativeText(box.line);
        question->setDefaultButton(box.defaultButton == ambrel::MessageAnswer::Yes ? QMessageBox::Yes
                                                                                   : QMessageBox::No);
        const bool isYes = question->exec() == QMessageBox::Yes;
        delete question;
        return isYes ? ambrel::MessageAnswer::Yes : ambrel::MessageAnswer::No;
    };
}

/// Shows the progress of long operations in the status bar, too, which takes the place of the progress
/// window.
ambrel::ProgressDisplay progressIn(QMainWindow& window) {
    const auto announce = [&window](const QString& text) {
        window.statusBar()->showMessage(text);
        window.statusBar()->repaint();
    };
    return {.show =
                [&window, announce](const QString& text, QWidget*) {
                    announce(text);
                    return ambrel::ProgressWindow(window.statusBar());
                },
            .change = [announce](const QString& text, QWidget&) { announce(text); },
            .close = [&window](QWidget&) { window.statusBar()->clearMessage(); }};
}

void underline(QWidget& control, bool focused) {
    control.setStyleSheet(focused ? "border-bottom: 2px solid palette(highlight)" : QString());
}

/// Restores the three functions before the window that they use is destroyed.
class OwnLook {
public:
    explicit OwnLook(QMainWindow& window) {
        ambrel::setMessageShower(messagesOf(window));
        ambrel::setProgressDisplay(progressIn(window));
        ambrel::setFocusColouring(underline);
    }
    ~OwnLook() {
        ambrel::setMessageShower({});
        ambrel::setProgressDisplay(ambrel::windowProgressDisplay());
        ambrel::setFocusColouring({});
    }
    OwnLook(const OwnLook&) = delete;
    OwnLook& operator=(const OwnLook&) = delete;
};

/// True if message, progress and focus arrive where they were sent.
bool passesTrial(QMainWindow& window, QLineEdit& box) {
    Mensaje_Error(QStringLiteral("No se encuentra el municipio."), QStringLiteral("Aviso"));
    const QString message = window.statusBar()->currentMessage();
    const auto progress = MuestraMensaje(QStringLiteral("Leyendo las tablas…"));
    CambiaMensaje(QStringLiteral("Leyendo las vías…"), progress);
    const QString change = window.statusBar()->currentMessage();
    CierraMensaje(progress);
    TomaFocoControl(&box);
    const bool isUnderlined = !box.styleSheet().isEmpty();
    std::printf("%s\n%s\n", qUtf8Printable(message), qUtf8Printable(change));
    return message == "Aviso: No se encuentra el municipio." && change == "Leyendo las vías…" && isUnderlined;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "uso: mensajes-propios CARPETA [--prueba]\n");
        return 2;
    }
    try {
        dbase::setDatabaseFolder("DB", arguments[1].toStdString());
        QMainWindow window;
        const OwnLook look(window);
        TClassCodPostales postal(&window);
        auto* form = new QWidget(&window);
        auto* box = new QLineEdit(form);
        (new QFormLayout(form))->addRow(QStringLiteral("&Municipio"), box);
        window.setCentralWidget(form);
        ambrel::KeyUpEvents::watch(box, [&](std::uint16_t& key, Qt::KeyboardModifiers shift) {
            postal.OrdenaPorNombreMunicipi();
            postal.KeyUpMunicipi(box, key, shift);
        });
        QObject::connect(box, &QLineEdit::returnPressed, &window, ambrel::guarded([&] {
                             QString province = QStringLiteral(" "), postalCode = province;
                             postal.ExitMunicipi(box, province, postalCode, true);
                             Mensaje_Info(&window, province.trimmed() + ' ' + postalCode.trimmed(),
                                          box->text());
                         }));
        window.show();
        if (arguments.contains("--prueba") || QApplication::platformName() == "offscreen") {
            return passesTrial(window, *box) ? 0 : 1;
        }
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mensajes-propios: %s\n", error.what());
        return 2;
    }
}
