// A routine of the package as the host offers it for trying: its arguments, its results and the call itself.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <utility>
#include <vector>

class QWidget;

namespace dbase {
class Dataset;
}

namespace host::routines {

enum class ArgumentKind { Text, Number, Flag, Choice };

struct Argument {
    QString object; // objectName of its editor
    QString label;
    ArgumentKind kind = ArgumentKind::Text;
    QVariant initial;         // QString, int or bool by its kind
    QStringList choices = {}; // of a Choice
};

struct Result {
    QString object; // objectName of the box that shows it
    QString label;
};

/// The values that the user gave for the arguments, by the objectName of their editors.
class Values {
public:
    void set(const QString& object, QVariant value) { values_.insert(object, std::move(value)); }
    [[nodiscard]] QString text(const QString& object) const { return values_.value(object).toString(); }
    [[nodiscard]] int number(const QString& object) const { return values_.value(object).toInt(); }
    [[nodiscard]] bool flag(const QString& object) const { return values_.value(object).toBool(); }

private:
    QHash<QString, QVariant> values_;
};

/// What a call may need besides its arguments.
struct Surroundings {
    QWidget* owner;         // window that lists belong to
    dbase::Dataset& record; // the host's table, on the customer that is shown
};

struct Routine {
    QString object;  // objectName of its menu entry
    QString name;    // as the package calls it
    QString title;   // as the menu calls it
    QString summary; // a sentence or two
    std::vector<Argument> arguments;
    std::vector<Result> results;
    /// Returns the values of the results, in their order. Errors: those of the routine.
    std::function<QStringList(const Values&, const Surroundings&)> call;
};

[[nodiscard]] inline QString yesOrNo(bool value) {
    return value ? QStringLiteral("sí") : QStringLiteral("no");
}

} // namespace host::routines
