// Message boxes with Spanish buttons.
#include "services/MessageBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <memory>
#include <utility>

#include "dbase/lock/read_scope.h"
#include "services/MessageIcon.h"
#include "services/ModalLoop.h"

namespace ambrel {
namespace {

MessageShower& shower() {
    static MessageShower function = showMessageBox;
    return function;
}

/// Texts may contain carriage returns, from older code; a label knows only line feeds.
QString withLineFeeds(QString text) {
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

/// The toolkit makes a box no wider, and cuts words that do not fit.
int roomForText(const QWidget& dialog) {
    constexpr int widestBox = 1000, besideBox = 480, besideText = 150; // logical pixels
    return std::min(dialog.screen()->availableSize().width() - besideBox, widestBox) - besideText;
}

/// Lets a word that is wider than the box, such as the name of a file, go on in the next line.
QString withBreaks(const QString& text, const QWidget& dialog) {
    static const QRegularExpression word(QStringLiteral("[^\\s/-]+"));
    constexpr qsizetype lettersTogether = 10;
    const int room = roomForText(dialog);
    QString broken;
    qsizetype end = 0;
    for (auto words = word.globalMatch(text); words.hasNext();) {
        const QRegularExpressionMatch found = words.next();
        QString letters = found.captured();
        if (dialog.fontMetrics().horizontalAdvance(letters) > room) {
            for (qsizetype at = lettersTogether; at < letters.size(); at += lettersTogether + 1) {
                letters.insert(at, QChar(0x200b)); // without width
            }
        }
        broken += text.mid(end, found.capturedStart() - end) + letters;
        end = found.capturedEnd();
    }
    return broken + text.mid(end);
}

QPushButton* addButton(QMessageBox& dialog, const char* name, const QString& text,
                       QMessageBox::ButtonRole role) {
    QPushButton* const button = dialog.addButton(text, role);
    button->setObjectName(QLatin1String(name));
    return button;
}

QWidget* parentFor(const MessageBox& box) {
    return box.owner ? box.owner->window() : QApplication::activeWindow();
}

} // namespace

MessageAnswer showMessageBox(const MessageBox& box) {
    // Not on the stack: the owner may be destroyed while the box is shown, and takes its child with it.
    const QPointer<QMessageBox> dialog = new QMessageBox(parentFor(box));
    dialog->setObjectName(QStringLiteral("Mensaje"));
    dialog->setWindowTitle(box.title);
    dialog->setIconPixmap(messageIcon(
        box.kind, dialog->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, dialog.data()),
        qApp->devicePixelRatio()));
    dialog->setTextFormat(Qt::PlainText);
    dialog->setText(withBreaks(withLineFeeds(box.text), *dialog));
    dialog->setInformativeText(withBreaks(withLineFeeds(box.line), *dialog));
    dialog->setTextInteractionFlags(Qt::TextSelectableByMouse);
    dialog->setAccessibleName(box.title);
    dialog->setAccessibleDescription(box.text + QLatin1Char('\n') + box.line);

    QPushButton* yes = nullptr;
    if (box.kind == MessageKind::Question) {
        yes = addButton(*dialog, "BBSi", QStringLiteral("&Sí"), QMessageBox::YesRole);
        QPushButton* const no = addButton(*dialog, "BBNo", QStringLiteral("&No"), QMessageBox::NoRole);
        dialog->setDefaultButton(box.defaultButton == MessageAnswer::No ? no : yes);
        dialog->setEscapeButton(no);
    } else {
        dialog->setDefaultButton(
            addButton(*dialog, "BBAceptar", QStringLiteral("&Aceptar"), QMessageBox::AcceptRole));
    }
    execModal(*dialog);
    if (!dialog) {
        return MessageAnswer::Cancel;
    }
    const std::unique_ptr<QMessageBox> freed(dialog);
    if (!yes) {
        return MessageAnswer::Accept;
    }
    return dialog->clickedButton() == yes ? MessageAnswer::Yes : MessageAnswer::No;
}

MessageShower setMessageShower(MessageShower function) {
    return std::exchange(shower(), function ? std::move(function) : showMessageBox);
}

MessageAnswer ask(const MessageBox& box) {
    dbase::ReadScope::letGo();               // a host's own function waits for the user, too
    const MessageShower function = shower(); // a copy: may be replaced while it runs
    return function(box);
}

} // namespace ambrel
