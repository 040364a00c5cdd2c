// Lays out and shows an offered address.
#include "form/OfferStrip.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "form/UnderBox.h"

namespace ambrel {
namespace {

constexpr int margin = 10;
constexpr int readableLetters = 70; // across the strip

QLabel* plainLabel(QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QPushButton* commandButton(const char* objectName, const QString& text, QWidget* parent) {
    auto* const button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(objectName));
    button->setFocusPolicy(Qt::NoFocus); // its keys are the box's
    button->setAutoDefault(false);
    return button;
}

} // namespace

OfferStrip::OfferStrip(QWidget& window)
    : QFrame(&window), title_(plainLabel(this)), parts_(new QFormLayout), remarks_(plainLabel(this)),
      accept_(commandButton("BBRellenar", QStringLiteral("Rellenar (Intro)"), this)),
      leave_(commandButton("BBDejar", QStringLiteral("Dejar lo pegado (Esc)"), this)) {
    makeWindowUnderBox(*this);
    setObjectName(QStringLiteral("FOferta"));
    setAccessibleName(QStringLiteral("Dirección pegada"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    title_->setText(QStringLiteral("Lo pegado es una dirección entera. ¿Rellenar con ella las casillas?"));
    title_->setWordWrap(true);
    remarks_->setObjectName(QStringLiteral("LVeredicto"));
    remarks_->setWordWrap(true);
    parts_->setHorizontalSpacing(margin);
    parts_->setVerticalSpacing(2);
    parts_->setLabelAlignment(Qt::AlignLeft);
    auto* const commands = new QHBoxLayout;
    commands->addWidget(accept_);
    commands->addWidget(leave_);
    commands->addStretch();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin * 2 / 3);
    column->addWidget(title_);
    column->addLayout(parts_);
    column->addWidget(remarks_);
    column->addLayout(commands);
    connect(accept_, &QPushButton::clicked, this, &OfferStrip::accepted);
    connect(leave_, &QPushButton::clicked, this, &OfferStrip::left);
}

void OfferStrip::setTexts(const OfferTexts& texts) {
    while (parts_->rowCount() > 0) {
        parts_->removeRow(0);
    }
    for (const auto& [label, text] : texts.parts) {
        auto* const caption = plainLabel(this);
        caption->setText(label);
        auto* const value = plainLabel(this);
        value->setText(text);
        value->setWordWrap(true);
        QFont strong = value->font();
        strong.setBold(true);
        value->setFont(strong);
        parts_->addRow(caption, value);
    }
    // The sign tells apart at a glance what the words tell; it is not said in colours alone.
    remarks_->setText((texts.isSettled ? QStringLiteral("✓ ") : QStringLiteral("⚠ ")) +
                      texts.remarks.join(QLatin1Char(' ')));
}

void OfferStrip::showAt(const QWidget& box) {
    setPalette(paletteUnder(box));
    QPalette texts = box.window()->palette();
    texts.setColor(QPalette::WindowText, texts.color(QPalette::Text));
    for (QLabel* const label : findChildren<QLabel*>()) {
        QFont font = box.font();
        font.setBold(label->font().bold());
        label->setFont(font);
        label->setPalette(texts);
    }
    const int readable = readableLetters * box.fontMetrics().averageCharWidth();
    const int width = std::min(std::max(box.width(), readable), box.screen()->availableGeometry().width());
    layout()->invalidate();
    layout()->activate();
    const int height = layout()->totalHeightForWidth(width);
    setGeometry(placeUnder(box, {width, height}));
    show();
}

} // namespace ambrel
