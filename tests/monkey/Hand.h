// Keyboard and mouse. Their events enter where the window system's do, so that modal windows, open menus and
// pauses of input treat them as a user's.
#pragma once

#include <QPoint>
#include <QString>
#include <Qt>
#include <deque>
#include <functional>

class QWidget;

namespace monkey {

/// Presses and releases happen one by one: what a press has opened gets the next.
class Hand {
public:
    void strike(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
    void type(const QString& text);
    /// Selects all of the focused box, by keys that have no meaning for completion.
    void selectAll();
    void click(QWidget& widget, const QPoint& place, Qt::MouseButton button = Qt::LeftButton);
    void doubleClick(QWidget& widget, const QPoint& place);

    [[nodiscard]] bool isBusy() const { return !queue_.empty(); }
    /// Does the next press or release.
    void move();

private:
    std::deque<std::function<void()>> queue_;
};

} // namespace monkey
