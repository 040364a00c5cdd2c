// Compares validated texts with what the plain rows say.
#include "monkey/Judge.h"

#include <sys/stat.h>

#include <QLineEdit>
#include <QRegularExpression>

#include "form/AddressBoxes.h"
#include "services/TagProperty.h"
#include "services/Text.h"

namespace monkey {
namespace {

using ambrel::AddressBoxes;
using Box = AddressBoxes::Box;
using State = AddressBoxes::State;

QLineEdit& boxOf(const QWidget& window, const char* name) {
    return *window.findChild<QLineEdit*>(QLatin1String(name));
}

QStringList textsOf(const QWidget& window) {
    QStringList texts;
    for (const char* const name : {"EMunicipio", "EProvincia", "ETipoVia", "EVia", "ENumero", "ECodPostal"}) {
        texts << boxOf(window, name).text();
    }
    return texts << QString::number(ambrel::tagOf(boxOf(window, "EMunicipio")));
}

std::string written(const QWidget& window, const char* name) {
    return ambrel::toNearestWindows1252(boxOf(window, name).text().simplified().toUpper());
}

/// Abbreviations count as they are written in the tables.
std::string typeOf(const QWidget& window) {
    return ambrel::toNearestWindows1252(boxOf(window, "ETipoVia").text().simplified());
}

/// Numbers that the oracle reads: digits first, or the words for none.
bool isPlainNumber(const QString& number) {
    static const QRegularExpression plain(QStringLiteral("^ *([1-9][0-9]{0,4}( [A-Z]*)?|S/N)? *$"));
    return plain.match(number.toUpper()).hasMatch();
}

} // namespace

std::string Judge::stampOfTables() const {
    std::string stamp;
    for (const char* const table : {"/MUNICIPI.DBF", "/POSTAL.DBF"}) {
        struct stat status {};
        if (::stat((folder_ + table).c_str(), &status) == 0) {
            stamp += std::to_string(status.st_mtim.tv_sec) + '.' + std::to_string(status.st_mtim.tv_nsec) +
                     ':' + std::to_string(status.st_size) + ' ';
        }
    }
    return stamp;
}

void Judge::see(const QWidget& window) {
    const std::string before = stamp_;
    stamp_ = stampOfTables();
    if (QStringList texts = textsOf(window); texts != texts_) {
        texts_ = std::move(texts);
        stampBefore_ = before;
    }
}

std::string Judge::fault(const QWidget& window) {
    const auto& address = *window.findChild<AddressBoxes*>();
    const std::string ineCode = QStringLiteral("%1")
                                    .arg(ambrel::tagOf(boxOf(window, "EMunicipio")), 5, 10, QLatin1Char('0'))
                                    .toStdString();
    if (address.state(Box::Municipality) == State::Validated &&
        !oracle_->namesOf(ineCode).contains(written(window, "EMunicipio"))) {
        return "the municipality is not " + ineCode;
    }
    if (address.state(Box::PostalCode) != State::Validated) {
        return {};
    }
    if (address.state(Box::Municipality) != State::Validated) {
        return "the code is validated, its municipality is not";
    }
    const std::string shown = boxOf(window, "ECodPostal").text().toStdString();
    const bool hasPlainNumber = isPlainNumber(boxOf(window, "ENumero").text());
    const auto codes = oracle_->codes(ineCode, written(window, "EVia"), typeOf(window),
                                      hasPlainNumber ? written(window, "ENumero") : std::string());
    if (!codes.contains(shown) || (hasPlainNumber && codes.size() != 1)) {
        std::string given;
        for (const std::string& code : codes) {
            given += ' ' + code;
        }
        return "the code is " + shown + ", the tables give" + (given.empty() ? " none" : given);
    }
    return {};
}

std::string Judge::verdict(const QWidget& window) {
    auto& address = *window.findChild<AddressBoxes*>();
    const auto isClaimed = [&] { return address.state(Box::Municipality) == State::Validated; };
    see(window);
    if (!isClaimed()) {
        return {};
    }
    if (stampBefore_ != stamp_) {
        address.takeStored(); // looks the same texts up again, in the tables of now
        stampBefore_ = stamp_;
        texts_ = textsOf(window);
    }
    if (stampOfOracle_ != stamp_) {
        oracle_ = std::make_unique<postal_tests::AddressOracle>();
        stampOfOracle_ = stamp_;
    }
    std::string found = fault(window);
    if (!found.empty()) { // two changes within the clock's resolution look like one
        oracle_ = std::make_unique<postal_tests::AddressOracle>();
        found = fault(window);
    }
    if (stampOfTables() != stamp_) { // changed meanwhile: the next time
        stampOfOracle_.clear();
        return {};
    }
    if (found.empty()) {
        rightCodes_ += address.state(Box::PostalCode) == State::Validated ? 1 : 0;
        return {};
    }
    return found + "; texts: " + texts_.join(QLatin1Char('|')).toStdString() +
           "; reason of the code: " + address.reason(Box::PostalCode).toStdString();
}

} // namespace monkey
