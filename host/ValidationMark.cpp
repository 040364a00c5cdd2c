// The sign beside a box that shows whether its text is validated.
#include "host/ValidationMark.h"

#include <QEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>

#include "host/AttentionColour.h"
#include "services/TagProperty.h"

namespace host {
namespace {

constexpr QColor validatedColour(0x2e, 0x7d, 0x32);

/// A point of a drawing whose width and height are 1.
QPointF at(const QRectF& square, double x, double y) {
    return {square.left() + x * square.width(), square.top() + y * square.height()};
}

} // namespace

ValidationMark::ValidationMark(QLineEdit* box, Kind kind, QWidget* parent)
    : QWidget(parent), box_(box), kind_(kind) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(box, &QLineEdit::textChanged, this, [this] { follow(); });
    new ambrel::TagWatch(*box, [this](int) { follow(); });
    box->installEventFilter(this);
    follow();
}

QSize ValidationMark::sizeHint() const {
    const int side = qMax(16, fontMetrics().height());
    return {side, side};
}

bool ValidationMark::eventFilter(QObject* watched, QEvent* event) {
    if (watched == box_ && event->type() == QEvent::EnabledChange) {
        update();
    }
    return QWidget::eventFilter(watched, event);
}

void ValidationMark::setReason(const QString& reason) {
    reason_ = reason;
    follow();
}

void ValidationMark::follow() {
    if (kind_ == Kind::FreeText || box_->text().trimmed().isEmpty()) {
        state_ = State::Nothing;
    } else {
        state_ = ambrel::tagOf(*box_) != 0 ? State::Validated : State::NotValidated;
    }
    const QString free = QStringLiteral("Texto libre: no se valida");
    const QString empty = QStringLiteral("Sin texto que validar");
    switch (state_) {
    case State::Nothing:
        setToolTip(kind_ == Kind::FreeText ? free : empty);
        break;
    case State::Validated:
        setToolTip(QStringLiteral("Texto validado"));
        break;
    case State::NotValidated:
        setToolTip(reason_.isEmpty() ? QStringLiteral("Texto sin validar") : reason_);
        break;
    }
    setAccessibleName(toolTip());
    update();
}

void ValidationMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = qMin(width(), height()) - 2.0;
    const QRectF circle((width() - side) / 2, (height() - side) / 2, side, side);
    switch (state_) {
    case State::Nothing:
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawEllipse(circle.center(), side / 9, side / 9);
        break;
    case State::Validated:
        paintTick(painter, circle);
        break;
    case State::NotValidated:
        paintWarning(painter, circle);
        break;
    }
}

void ValidationMark::paintTick(QPainter& painter, const QRectF& circle) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(validatedColour);
    painter.drawEllipse(circle);
    QPainterPath tick(at(circle, 0.27, 0.53));
    tick.lineTo(at(circle, 0.44, 0.69));
    tick.lineTo(at(circle, 0.74, 0.35));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, circle.width() / 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
}

void ValidationMark::paintWarning(QPainter& painter, const QRectF& circle) const {
    const QPen pen(attentionColour(palette()), circle.width() / 9, Qt::SolidLine, Qt::RoundCap);
    const double inset = pen.widthF() / 2;
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(circle.adjusted(inset, inset, -inset, -inset));
    painter.drawLine(at(circle, 0.5, 0.27), at(circle, 0.5, 0.55));
    painter.drawPoint(at(circle, 0.5, 0.74));
}

} // namespace host
