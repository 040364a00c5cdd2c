// Runs a script on the program's windows, from the event loop.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <deque>
#include <optional>
#include <vector>

#include "host/script/ObjectLookup.h"
#include "host/script/ScriptParser.h"
#include "host/script/ScriptedMessages.h"
#include "host/script/StepActions.h"

class QWidget;

namespace host::script {

/// Does one action at a time, each from a turn of the event loop, so that a step that opens a modal window
/// is followed by the next one inside that window. Every other step finishes before the next one begins.
/// Answers the message boxes from its construction on.
class ScriptRunner : public QObject {
    Q_OBJECT
public:
    static constexpr int exitDone = 0;
    static constexpr int exitFailed = 3;

    /// `print` receives what the script prints, `complain` why it ended early.
    ScriptRunner(Printer print, Printer complain);

    /// Refuses a script with an error as a whole. `name` is the script's file, for the complaints.
    void start(QWidget* mainWindow, ParsedScript script, const QString& name);

    /// Null until the script has ended. A message box without an answer ends it even before its start.
    [[nodiscard]] std::optional<int> exitCode() const { return exitCode_; }

signals:
    /// Emitted once, with the exit code for the program.
    void finished(int exitCode);

private:
    /// What a running action must change before the next action may run inside it.
    struct Surroundings {
        const QWidget* modal = nullptr;
        const QWidget* popup = nullptr;
        bool operator==(const Surroundings&) const = default;
    };

    [[nodiscard]] static Surroundings surroundings();
    [[nodiscard]] bool isBusy() const;
    void schedule(int milliseconds);
    void turn();
    [[nodiscard]] bool takeStep();
    void run(const Action& action);
    void fail(int line, const QString& source, const QString& reason);
    void end(int exitCode);

    ObjectLookup lookup_;
    Printer print_, complain_;
    ScriptedMessages messages_;
    StepActions steps_;
    ParsedScript script_;
    QString name_;
    std::size_t nextStep_ = 0;
    std::deque<Action> actions_;        // what is left of the current step
    std::vector<Surroundings> running_; // one for each action under way, the innermost last
    QElapsedTimer waiting_;             // since the action first was not possible
    std::optional<int> exitCode_;
};

} // namespace host::script
