// A run over many municipalities, as the user sees it.
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

/// What came of a municipality.
enum class MunicipalityEnd { Done, NoAnswer, NotFiled, SeveralCodes, NotChosen, Unreadable, Failed };

/// What is done with each of them.
enum class ProvinceDeed { Filing, Saving };

/// While it lives, a bar stands in a label's place and says which municipality of how many it is, and how
/// much time is left. When it goes, the label is back and says what was done.
class ProvinceRun {
public:
    /// The label stands in a box layout and must outlive the run. `province` is empty where there are
    /// several.
    ProvinceRun(QLabel& label, ProvinceDeed deed, QString province, int municipalities);
    ~ProvinceRun();
    ProvinceRun(const ProvinceRun&) = delete;
    ProvinceRun& operator=(const ProvinceRun&) = delete;

    /// The next municipality, which has failed unless told() says something else.
    void begin();
    void told(MunicipalityEnd end) { end_ = end; }
    void addStreets(int stored) { streets_ += stored; }
    /// The user was asked or told something: how long that took says nothing about the municipalities to
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
