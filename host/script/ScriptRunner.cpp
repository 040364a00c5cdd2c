// Runs the steps of a script from the event loop.
#include "host/script/ScriptRunner.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace host::script {
namespace {

constexpr int pollMilliseconds = 5;
constexpr int patienceMilliseconds = 3000;

/// True while a button that a key has clicked is down: it acts when it comes up, a moment later.
bool aButtonIsDown(const QWidget& window) {
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        if (button->isDown() && button->isVisible()) {
            return true;
        }
    }
    return false;
}

} // namespace

ScriptRunner::ScriptRunner(Printer print, Printer complain)
    : print_(std::move(print)), complain_(std::move(complain)),
      messages_([this](const QString& box, const QString& reason) {
          print_(box);
          // a box may also appear before the first step
          const Step step = nextStep_ == 0 ? Step{} : script_.steps[nextStep_ - 1];
          fail(step.line, step.source, reason);
      }),
      steps_(lookup_, messages_, print_) {}

void ScriptRunner::start(QWidget* mainWindow, ParsedScript script, const QString& name) {
    lookup_.setMainWindow(mainWindow);
    script_ = std::move(script);
    name_ = name;
    if (script_.error) {
        fail(script_.error->line, script_.error->source, script_.error->reason);
    } else {
        schedule(0);
    }
}

ScriptRunner::Surroundings ScriptRunner::surroundings() {
    return {QApplication::activeModalWidget(), QApplication::activePopupWidget()};
}

bool ScriptRunner::isBusy() const { return !running_.empty() && running_.back() == surroundings(); }

void ScriptRunner::schedule(int milliseconds) {
    QTimer::singleShot(milliseconds, this, [this] { turn(); });
}

void ScriptRunner::turn() {
    if (exitCode_) {
        return;
    }
    if (isBusy()) {
        schedule(pollMilliseconds);
        return;
    }
    if (actions_.empty()) {
        if (aButtonIsDown(*lookup_.activeWindow())) {
            schedule(pollMilliseconds);
            return;
        }
        if (!takeStep()) {
            end(exitDone);
            return;
        }
    }
    const Action action = std::move(actions_.front());
    actions_.pop_front();
    run(action);
}

bool ScriptRunner::takeStep() {
    if (nextStep_ == script_.steps.size()) {
        return false;
    }
    for (Action& action : steps_.of(script_.steps[nextStep_])) {
        actions_.push_back(std::move(action));
    }
    ++nextStep_;
    return true;
}

void ScriptRunner::run(const Action& action) {
    // Scheduled before the action, which may stay inside a modal window for many turns.
    schedule(0);
    const std::size_t depth = running_.size();
    running_.push_back(surroundings());
    const Outcome outcome = action();
    running_.resize(depth);
    if (exitCode_) {
        return;
    }
    const Step& step = script_.steps[nextStep_ - 1];
    switch (outcome.result) {
    case Outcome::Result::Done:
        waiting_.invalidate();
        return;
    case Outcome::Result::Failed:
        fail(step.line, step.source, outcome.reason);
        return;
    case Outcome::Result::NotYet:
        break;
    }
    if (!waiting_.isValid()) {
        waiting_.start();
    }
    if (waiting_.hasExpired(patienceMilliseconds)) {
        fail(step.line, step.source, outcome.reason);
    } else {
        actions_.push_front(action);
    }
}

void ScriptRunner::fail(int line, const QString& source, const QString& reason) {
    complain_(line == 0 ? reason
                        : QStringLiteral("%1:%2: %3: %4").arg(name_).arg(line).arg(source.trimmed(), reason));
    end(exitFailed);
}

void ScriptRunner::end(int exitCode) {
    if (exitCode_) {
        return;
    }
    exitCode_ = exitCode;
    emit finished(exitCode);
}

} // namespace host::script
