// Fills in the boxes.
#include "country/TypedForm.h"

#include <QApplication>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "controller/ClasCodPostales.h"
#include "controller/ProvinceName.h"
#include "data/CodPostalesDM.h"
#include "form/ShownList.h"
#include "services/TagProperty.h"
#include "services/Text.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"

namespace country_tests {
namespace {

using ambrel::AddressBoxes;
using ambrel::fromWindows1252;
using ambrel::toWindows1252;

constexpr std::array filled = {AddressBoxes::Box::Municipality, AddressBoxes::Box::Province,
                               AddressBoxes::Box::StreetType,   AddressBoxes::Box::Street,
                               AddressBoxes::Box::Number,       AddressBoxes::Box::PostalCode};

} // namespace

TypedForm::TypedForm() {
    auto* const column = new QVBoxLayout(&form_);
    for (QLineEdit** box : {&boxes_.municipality, &boxes_.province, &boxes_.streetType, &boxes_.street,
                            &boxes_.number, &boxes_.postalCode}) {
        column->addWidget(*box = new QLineEdit(&form_));
    }
    address_ = std::make_unique<AddressBoxes>(boxes_);
    tagged_.open();
    ambrel::test::showActive(form_);
}

void TypedForm::fill(QLineEdit* box, const std::string& text, Keys keys) {
    box->setFocus(Qt::TabFocusReason);
    box->selectAll();
    if (keys == Keys::Typed) {
        QTest::keyClick(box, Qt::Key_Delete);
        ambrel::test::typeInto(*box, fromWindows1252(text));
    } else {
        box->insert(fromWindows1252(text));
    }
}

void TypedForm::clear() {
    for (const Box box : filled) {
        boxes_.at(box)->clear();
    }
    address_->takeStored();
}

// The province comes first: it is what tells municipalities of one name apart.
void TypedForm::fillPlace(const Question& question, const std::string& municipality, Keys keys) {
    clear();
    fill(boxes_.province, ambrel::provinceName(question.province, "DB"), keys);
    fill(boxes_.municipality, municipality, keys);
    fill(boxes_.streetType, question.type, keys);
}

Answer TypedForm::answer() {
    const auto text = [&](Box box) { return toWindows1252(boxes_.at(box)->text()).value(); };
    const auto mayBeEmpty = [](Box box) { return box == Box::StreetType || box == Box::Number; };
    Answer answer;
    answer.isSettled = std::ranges::all_of(filled, [&](Box box) {
        return address_->state(box) == AddressBoxes::State::Validated ||
               (mayBeEmpty(box) && text(box).empty());
    });
    answer.place = std::to_string(100000 + ambrel::tagOf(*boxes_.municipality)).substr(1);
    answer.type = text(Box::StreetType);
    answer.street = text(Box::Street);
    answer.postalCode = text(Box::PostalCode);
    if (answer.isSettled) { // what hosts read besides the texts must be the same municipality's
        const std::string key = std::to_string(100000000 + ambrel::tagOf(*boxes_.street)).substr(1);
        const bool isTagged = tagged_.seek({{"CODIGO1", key}}, dbase::SeekMode::Exact);
        const std::string ofTag = isTagged ? tagged_.field("COD_INE").text() : "nobody";
        const std::string ofCursor = address_->controller().DM->tbPostal.findField("COD_INE")->text();
        if (ofTag != answer.place || ofCursor != answer.place) {
            answer.place += ", Tag of " + ofTag + ", cursor of " + ofCursor;
        }
    }
    return answer;
}

Answer TypedForm::fillIn(const Question& question, const std::string& municipality, Keys keys) {
    fillPlace(question, municipality, keys);
    fill(boxes_.street, question.street, keys);
    fill(boxes_.number, question.number, keys);
    boxes_.postalCode->setFocus();
    return answer();
}

Answer TypedForm::takeSuggestion(const Question& question, const std::string& municipality,
                                 const std::string& misspelt) {
    fillPlace(question, municipality, Keys::Pasted);
    fill(boxes_.street, misspelt, Keys::Typed);
    if (!QTest::qWaitFor([] { return postal_tests::shownList() != nullptr; }, 2000)) {
        return {};
    }
    const QString wanted = fromWindows1252((question.type.empty() ? "" : question.type + ' ') +
                                           question.street + ", " + municipality + ',');
    const QStringList rows = postal_tests::shownRows();
    qsizetype right = 0;
    while (right < rows.size() && !rows[right].startsWith(wanted)) {
        ++right;
    }
    for (qsizetype down = 0; down <= right && right < rows.size(); ++down) {
        QTest::keyClick(boxes_.street, Qt::Key_Down);
    }
    QTest::keyClick(boxes_.street, right < rows.size() ? Qt::Key_Return : Qt::Key_Escape);
    if (right == rows.size()) {
        return {};
    }
    fill(boxes_.number, question.number, Keys::Typed);
    boxes_.postalCode->setFocus();
    return answer();
}

} // namespace country_tests
