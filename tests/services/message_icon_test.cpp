// The pictures of message boxes.
#include "services/MessageIcon.h"

#include <gtest/gtest.h>

#include <QImage>
#include <array>

namespace {

using ambrel::messageIcon;
using ambrel::MessageKind;

constexpr std::array kinds{MessageKind::Error, MessageKind::Information, MessageKind::Warning,
                           MessageKind::Question};
constexpr int size = 32;

/// Number of squares of 2 x 2 pixels with more than one colour: a picture that was only enlarged has none.
int fineSquares(const QImage& image) {
    int count = 0;
    for (int y = 0; y + 1 < image.height(); y += 2) {
        for (int x = 0; x + 1 < image.width(); x += 2) {
            const QRgb first = image.pixel(x, y);
            count += first != image.pixel(x + 1, y) || first != image.pixel(x, y + 1) ||
                     first != image.pixel(x + 1, y + 1);
        }
    }
    return count;
}

TEST(MessageIcon, IsSharpOnAScreenOfTwiceTheResolution) {
    for (const MessageKind kind : kinds) {
        const QPixmap icon = messageIcon(kind, size, 2);
        EXPECT_EQ(icon.size(), QSize(2 * size, 2 * size));
        EXPECT_EQ(icon.deviceIndependentSize(), QSizeF(size, size));
        EXPECT_GT(fineSquares(icon.toImage()), size);
    }
}

TEST(MessageIcon, EachKindHasItsOwn) {
    for (const MessageKind one : kinds) {
        for (const MessageKind other : kinds) {
            EXPECT_EQ(messageIcon(one, size, 1).toImage() == messageIcon(other, size, 1).toImage(),
                      one == other);
        }
    }
}

TEST(MessageIcon, HasNoBackgroundOfItsOwn) {
    for (const MessageKind kind : kinds) {
        EXPECT_EQ(messageIcon(kind, size, 1).toImage().pixelColor(0, 0).alpha(), 0);
    }
}

} // namespace
