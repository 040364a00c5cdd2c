// A user who does anything at random.
#pragma once

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <array>
#include <chrono>
#include <memory>
#include <random>

#include "monkey/Hand.h"
#include "monkey/Judge.h"
#include "monkey/Watchdog.h"

class QDialog;
class QFileDialog;
class QMainWindow;

namespace monkey {

/// Uses the host's window, and every window that it opens, until the time is over; then closes all. Ends the
/// program with exit code 1 when an address is wrong, or a window in front cannot be closed.
class Monkey : public QObject {
public:
    struct Plan {
        std::string folder; // of the tables
        std::chrono::seconds time;
        unsigned seed;
    };

    explicit Monkey(const Plan& plan);
    ~Monkey() override;

    /// The window to use; it may be another one after the first has been closed.
    void use(QMainWindow& window);
    [[nodiscard]] bool isOver() const;
    /// Its figures, and each message that it was shown.
    [[nodiscard]] QString report() const;

private:
    struct Habit;

    void schedule();
    void turn();
    void choose();
    void goHome();
    void leave(QWidget& window);
    void inPopup(QWidget& popup);
    void inFileDialog(QFileDialog& dialog);
    void judge();
    void noteMessage();
    [[noreturn]] void fail(const std::string& reason);

    // --- What it does in the window in front, or in any if there is none.
    void typeText();
    void pasteText();
    void strikeAnyKey();
    void strikeShortcut();
    void clickControl();
    void clickAnywhere();
    void openMenuEntry();
    void enterAddress();
    void trySuggestions();
    void validateFile();
    void changeWindow();
    void resizeWindow();
    void rest();
    void closeWindow();

    [[nodiscard]] QWidget& windowInFront();
    [[nodiscard]] QString anyText();
    void fill(const char* box, const QString& text);
    void did(const QString& action);
    int roll(int sides) { return std::uniform_int_distribution<>(0, sides - 1)(random_); }
    template<class Choices>
    typename Choices::value_type pick(const Choices& choices) {
        return choices[static_cast<typename Choices::size_type>(roll(static_cast<int>(choices.size())))];
    }

    const Plan plan_;
    std::mt19937 random_;
    Watchdog watchdog_;
    Judge judge_;
    Hand hand_;
    QPointer<QMainWindow> window_;
    QElapsedTimer clock_, goingHome_; // the second is valid while all windows in front are being closed
    QPointer<QWidget> noted_;
    QMap<QString, int> messages_;
    int actions_ = 0, windowsInFront_ = 0, starts_ = 0, rest_ = 0;
};

} // namespace monkey
