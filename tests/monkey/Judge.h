// Whether the address in the host's window deserves the marks that it has.
#pragma once

#include <QStringList>
#include <memory>
#include <string>

#include "data/AddressOracle.h"

class QWidget;

namespace monkey {

/// Another station may change the tables after an address was looked up: only a code that was looked up in
/// the tables as they are is judged.
class Judge {
public:
    explicit Judge(std::string folder) : folder_(std::move(folder)) {}

    /// Sees the address in a window; call it after each action.
    void see(const QWidget& window);
    /// What is wrong with the address; empty if nothing is.
    [[nodiscard]] std::string verdict(const QWidget& window);
    /// Codes that were found right.
    [[nodiscard]] int rightCodes() const { return rightCodes_; }

private:
    [[nodiscard]] std::string stampOfTables() const;
    [[nodiscard]] std::string fault(const QWidget& window);

    const std::string folder_;
    QStringList texts_;       // of the address seen last
    std::string stamp_;       // of the tables, when they were seen last
    std::string stampBefore_; // of the tables, before the address got these texts
    std::unique_ptr<postal_tests::AddressOracle> oracle_;
    std::string stampOfOracle_;
    int rightCodes_ = 0;
};

} // namespace monkey
