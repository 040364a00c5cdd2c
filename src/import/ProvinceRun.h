// A run over many municipalities, as shown to the user.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <array>
#include <cstddef>
#include <memory>

#include "import/TimeLeft.h"

class QLabel;
class QProgressBar;

namespace ambrel {

/// The outcome for a municipality.
enum class MunicipalityEnd { Done, NoAnswer, NotFiled, SeveralCodes, NotChosen, Unreadable, Failed };

/// What is done with each municipality.
enum class ProvinceDeed { Filing, Saving };

/// During its lifetime a bar replaces a label and shows the current municipality, their total and the time
/// left. Afterwards the label is back and reports what was done.
class ProvinceRun {
public:
    /// The label is in a box layout and must outlive the run. `province` is empty if there are several.
    ProvinceRun(QLabel& label, ProvinceDeed deed, QString province, int municipalities);
    ~ProvinceRun();
    ProvinceRun(const ProvinceRun&) = delete;
    ProvinceRun& operator=(const ProvinceRun&) = delete;

    /// Starts the next municipality, which counts as failed unless setEnd() says otherwise.
    void begin();
    void setEnd(MunicipalityEnd end) { end_ = end; }
    void addStreets(int stored) { streets_ += stored; }
    /// Call after asking the user or showing a message: that time says nothing about the municipalities to
    /// come.
    void userAnswered() { clock_.invalidate(); }

private:
    void finishCurrent();
    void show();
    [[nodiscard]] QString report() const;

    QLabel& label_;
    std::unique_ptr<QProgressBar> bar_;
    ProvinceDeed deed_;
    QString province_;
    int total_, begun_ = 0, streets_ = 0;
    MunicipalityEnd end_ = MunicipalityEnd::Failed;
    std::array<int, static_cast<std::size_t>(MunicipalityEnd::Failed) + 1> ends_{}; // how many of each
    QElapsedTimer clock_;
    TimeLeft time_;
};

} // namespace ambrel
