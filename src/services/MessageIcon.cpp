// Draws the icons of message boxes.
#include "services/MessageIcon.h"

#include <QPainter>
#include <QPainterPath>

namespace ambrel {
namespace {

/// Side of the square in which everything is drawn.
constexpr qreal side = 32;

const QColor red(0xc6, 0x28, 0x28), blue(0x15, 0x65, 0xc0), amber(0xff, 0xb3, 0x00), dark(0x33, 0x29, 0x00);

void drawDisc(QPainter& painter, const QColor& colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(2, 2, 28, 28));
}

void drawTriangle(QPainter& painter, const QColor& colour) {
    painter.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)); // rounds the corners
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF({{16, 4}, {29, 27.5}, {3, 27.5}}));
}

QPen stroke(const QColor& colour) { return {colour, 3.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin}; }

void drawDot(QPainter& painter, const QColor& colour, QPointF centre) {
    constexpr qreal radius = 2.1;
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(centre, radius, radius);
}

void drawLine(QPainter& painter, const QColor& colour, QPointF from, QPointF to) {
    painter.setPen(stroke(colour));
    painter.drawLine(from, to);
}

void drawQuestionMark(QPainter& painter, const QColor& colour) {
    QPainterPath hook({11.2, 12.4});
    hook.cubicTo({11.2, 6.2}, {20.8, 6.2}, {20.8, 12.4});
    hook.cubicTo({20.8, 15.6}, {16, 15.8}, {16, 19.4});
    painter.setPen(stroke(colour));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(hook);
    drawDot(painter, colour, {16, 24.4});
}

void draw(QPainter& painter, MessageKind kind) {
    switch (kind) {
    case MessageKind::Error:
        drawDisc(painter, red);
        drawLine(painter, Qt::white, {11, 11}, {21, 21});
        drawLine(painter, Qt::white, {21, 11}, {11, 21});
        break;
    case MessageKind::Warning:
        drawTriangle(painter, amber);
        drawLine(painter, dark, {16, 11.5}, {16, 18});
        drawDot(painter, dark, {16, 24});
        break;
    case MessageKind::Question:
        drawDisc(painter, blue);
        drawQuestionMark(painter, Qt::white);
        break;
    case MessageKind::Information:
        drawDisc(painter, blue);
        drawDot(painter, Qt::white, {16, 9.4});
        drawLine(painter, Qt::white, {16, 15}, {16, 22.6});
        break;
    }
}

} // namespace

QPixmap messageIcon(MessageKind kind, int size, qreal devicePixelRatio) {
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / side, size / side);
    draw(painter, kind);
    return pixmap;
}

} // namespace ambrel
